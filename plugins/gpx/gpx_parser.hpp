// Streaming GPX 1.0 / 1.1 reading over expat: the document's tracks, routes and waypoints
// handed to a visitor one point at a time, so memory does not grow with the file.
//
// Structure followed: gpx > trk > trkseg > trkpt, gpx > rte > rtept, gpx > wpt. A point's
// direct children <time>, <ele>, <speed>, <course> and <name> are read; every leaf element
// under its <extensions> is an extension value, known ones (point_fields.hpp) checked as
// numbers, unknown ones kept when they read as numbers. Everything else is skipped.
#pragma once

#include <cstdint>
#include <istream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "point_fields.hpp"
#include "utc_time.hpp"

namespace gpx {

// Extension values kept per point; more distinct ones are ignored.
constexpr std::size_t kMaxExtensionsPerPoint = 32;

struct ExtensionValue {
  const PointField *field = nullptr;  // null: a name the reader does not know
  std::string name;                   // local name as written
  double value = 0;
};

struct GpxPoint {
  double latitude = 0;
  double longitude = 0;
  std::optional<palvex_plugins::ParsedTime> time;
  std::optional<double> elevation;
  std::optional<double> speed;   // m/s, from <speed> or an extension
  std::optional<double> course;  // degrees from north, 0 to 360
  std::vector<ExtensionValue> extensions;
  std::string name;
  std::uint64_t line = 0;
};

enum class PathKind { kTrack, kRoute };

class GpxVisitor {
 public:
  virtual ~GpxVisitor() = default;
  // line: where the <trk> or <rte> starts.
  virtual void BeginPath(PathKind kind, std::uint64_t line) = 0;
  // Each <trkseg> of a track; a route is one segment.
  virtual void BeginSegment() = 0;
  virtual void PathPoint(const GpxPoint &point) = 0;
  // name: the path's <name>, empty when it has none.
  virtual void EndPath(std::string_view name) = 0;
  virtual void Waypoint(const GpxPoint &point) = 0;
};

// Reads the whole document. Throws PX_PLUGIN::PX_PluginException with the codes of
// gpx_errors.hpp; what the visitor throws passes through.
void ParseGpx(std::istream &in, GpxVisitor &visitor);

}  // namespace gpx
