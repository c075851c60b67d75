// The skeleton of a motion capture file: its HIERARCHY section read into a tree of joints,
// one node per ROOT, JOINT and End Site.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "converters/bvh_reader.hpp"

namespace ns_sensor {

// No channels of a kind.
inline constexpr std::int8_t kNoChannels = -1;

// The six orders of three channels, by code: which axis (0 X, 1 Y, 2 Z) each of the three
// values of a channel triple belongs to, in file order.
inline constexpr std::array<std::array<std::uint8_t, 3>, 6> kChannelAxes = {{
    {0, 1, 2},  // 0: X Y Z
    {0, 2, 1},  // 1: X Z Y
    {1, 2, 0},  // 2: Y Z X
    {1, 0, 2},  // 3: Y X Z
    {2, 0, 1},  // 4: Z X Y
    {2, 1, 0},  // 5: Z Y X
}};

struct SkeletonNode {
  std::string name;        // an End Site is named after its joint, followed by "End"
  std::string parentName;  // empty for the root
  std::array<double, 3> offset = {0.0, 0.0, 0.0};  // as written after OFFSET
  std::int8_t rotationOrder = kNoChannels;        // a code of kChannelAxes
  std::int8_t positionOrder = kNoChannels;
  std::vector<std::shared_ptr<SkeletonNode>> children;
};

// True when the text begins like a motion capture file: the first word of the first line
// is "HIERARCHY" and the first word of the second line is "ROOT".
bool HasBvhHeader(std::string_view text);

// Reads the header and the joints from lines, which is left after the root's closing
// brace. Raises BvhNotHierarchy (1001) for a wrong header, BvhMalformed (1509) for a joint
// that is not well formed or not closed, and BvhTooDeep (1509) for a skeleton nested
// deeper than a document can hold.
std::shared_ptr<SkeletonNode> ReadSkeleton(BvhLines &lines);

// The code of the first order whose three channel names stand one after the other among
// words ("Xrotation", ... with suffix "rotation"), or kNoChannels.
std::int8_t FindChannelOrder(std::string_view words, std::string_view suffix);

}  // namespace ns_sensor
