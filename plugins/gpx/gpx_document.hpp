// A GPX file as an MGJSON document, in two streaming passes: the first learns what the
// time line needs (fraction digits, zones) and checks the whole file, the second fills
// the document. Neither keeps more than a point in memory.
#pragma once

#include <cstdint>
#include <istream>
#include <vector>

#include "palvex/plugin_kit.hpp"
#include "path_group.hpp"

namespace gpx {

// Each track and route is a group whose outline stays in memory until the file is
// written: a file of countless tiny tracks is refused rather than let grow without bound.
constexpr std::uint64_t kMaxPaths = 10'000;

struct GpxSurvey {
  std::uint32_t precision = 0;  // most fraction digits of any point's time
  bool gmt = false;             // some time carries "Z" or an offset
  std::uint64_t timedPathPoints = 0;
};

// The first pass. Throws PX_PLUGIN::PX_PluginException: the reader's codes, and
// kNoTimedPoints when no track or route point has a time, kTooManyPaths past kMaxPaths.
GpxSurvey SurveyGpx(std::istream &in);

// The second pass, over the same bytes: sets the root's time information, and adds one
// group per track and route with a timed point, then "Waypoints" when a waypoint has a
// time. The root is not committed. Returns the groups' summaries in document order.
std::vector<GroupSummary> BuildGpxDocument(std::istream &in, const GpxSurvey &survey,
                                           PX_PLUGIN::IMgjsonRoot_v1 *root);

}  // namespace gpx
