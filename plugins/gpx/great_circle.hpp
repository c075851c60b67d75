// Distance and heading between two points on a sphere of the Earth's mean radius: close
// enough to the ellipsoid (within 0.5 %) for speeds and headings between nearby points.
#pragma once

namespace gpx {

constexpr double kEarthMeanRadius = 6'371'008.8;  // metres

struct GeoPosition {
  double latitude = 0;   // degrees
  double longitude = 0;  // degrees
};

// Great-circle distance in metres (haversine, sound for short steps).
double DistanceMetres(const GeoPosition &from, const GeoPosition &to);

// Initial heading from `from` towards `to`, degrees clockwise from north in [0, 360).
double HeadingDegrees(const GeoPosition &from, const GeoPosition &to);

}  // namespace gpx
