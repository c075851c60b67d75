// One group of the document: a track, a route, or the file's waypoints. Points arrive in
// file order and their values go straight into the library's sample stores; the group
// joins the document when the path ends, with its summary as static nodes.
//
// Tracks and routes: Latitude, Longitude, Elevation, Speed, Heading, Distance and one
// stream per extension. Speed and heading come from the file where a point has them, else
// from the step since the previous point of the same segment. Distance adds up the steps
// within segments (it does not jump across the gap between two segments).
// Waypoints: Name, Latitude, Longitude, Elevation.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "gpx_parser.hpp"
#include "great_circle.hpp"
#include "match_names.hpp"
#include "timed_stream.hpp"

namespace gpx {

// Extension streams kept per group; further distinct names are ignored.
constexpr std::size_t kMaxExtensionStreams = 32;

enum class GroupKind { kTrack, kRoute, kWaypoints };

// What a finished group holds, for the document's caller.
struct GroupSummary {
  std::string displayName;
  std::uint64_t timedPoints = 0;
  std::uint64_t untimedPoints = 0;
  std::uint64_t outOfOrder = 0;
  double distance = 0;  // metres
};

class PathGroup {
 public:
  PathGroup(PX_PLUGIN::IMgjsonRoot_v1 *root, palvex_plugins::TimeLine &times,
            palvex_plugins::MatchNames &names, GroupKind kind);
  ~PathGroup();

  void BeginSegment();
  // A point with a time.
  void Add(const GpxPoint &point);
  void CountUntimed() { ++summary_.untimedPoints; }
  // Adds the group to the root as displayName, and completes its streams so that their
  // samples leave memory. A group without a timed point stays out. Call once.
  GroupSummary Finish(std::string_view displayName);

 private:
  struct Series;

  Series &Stream(std::unique_ptr<Series> &slot, std::string_view displayName, std::string_view matchName,
                 std::optional<std::pair<double, double>> legal = std::nullopt);
  Series *ExtensionStream(const ExtensionValue &value);
  void AddMotion(const GpxPoint &point, const palvex_plugins::Instant &at);
  void AddStatics(PX_PLUGIN::IMgjsonGroup_v1 *group, std::string_view displayName);

  PX_PLUGIN::IMgjsonRoot_v1 *root_;
  palvex_plugins::TimeLine &times_;
  palvex_plugins::MatchNames &names_;
  GroupKind kind_;
  std::unique_ptr<Series> name_, latitude_, longitude_, elevation_, speed_, heading_, distance_;
  std::vector<std::pair<std::string, std::unique_ptr<Series>>> extensions_;
  std::optional<GeoPosition> previous_;  // the segment's previous point
  palvex_plugins::Instant previousTime_;
  palvex_plugins::Instant first_, last_;  // earliest and latest time
  GroupSummary summary_;
};

}  // namespace gpx
