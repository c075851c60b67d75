#include "great_circle.hpp"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace gpx {
namespace {

constexpr double kRadiansPerDegree = std::numbers::pi / 180.0;

}  // namespace

double DistanceMetres(const GeoPosition &from, const GeoPosition &to) {
  const double lat1 = from.latitude * kRadiansPerDegree;
  const double lat2 = to.latitude * kRadiansPerDegree;
  const double halfDLat = (lat2 - lat1) / 2;
  const double halfDLon = (to.longitude - from.longitude) * kRadiansPerDegree / 2;
  const double h = std::sin(halfDLat) * std::sin(halfDLat) +
                   std::cos(lat1) * std::cos(lat2) * std::sin(halfDLon) * std::sin(halfDLon);
  // Rounding can push h a hair past 1 for antipodes.
  return 2 * kEarthMeanRadius * std::asin(std::sqrt(std::clamp(h, 0.0, 1.0)));
}

double HeadingDegrees(const GeoPosition &from, const GeoPosition &to) {
  const double lat1 = from.latitude * kRadiansPerDegree;
  const double lat2 = to.latitude * kRadiansPerDegree;
  const double dLon = (to.longitude - from.longitude) * kRadiansPerDegree;
  const double y = std::sin(dLon) * std::cos(lat2);
  const double x = std::cos(lat1) * std::sin(lat2) - std::sin(lat1) * std::cos(lat2) * std::cos(dLon);
  double degrees = std::atan2(y, x) / kRadiansPerDegree;
  if (degrees < 0) degrees += 360.0;
  return degrees >= 360.0 ? 0.0 : degrees;  // -1e-17 + 360 rounds to 360
}

}  // namespace gpx
