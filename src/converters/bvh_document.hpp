// The document of a skeleton: one group per joint, holding the joint's rest offset as a
// static number array and its position and rotation channels as dynamic number arrays,
// with the groups of its children after them.
//
// Match names are "mn" followed by the joint's name with every byte other than an ASCII
// letter or digit left out, since match names may hold nothing else; display names keep the
// name as it stands. A joint whose match names are taken already (two joints that differ only
// in the bytes left out, or "Arm" beside a joint "ArmOFFSET") gets the lowest decimal
// counter from 2 up that makes all of its match names new.
#pragma once

#include <cstdint>
#include <vector>

#include "converters/bvh_hierarchy.hpp"
#include "palvex/plugin_helpers.hpp"

namespace ns_sensor {

// A dynamic node that receives three values of every frame.
struct ChannelTriple {
  PX_PLUGIN::DynamicNode node;
  std::int8_t rotationOrder;  // kNoChannels: a position triple
};

// Adds the skeleton's groups to root and returns the channel triples in the order in which
// the frames carry their values. Failed object model operations throw
// PX_PLUGIN::PX_PluginException.
std::vector<ChannelTriple> BuildSkeletonDocument(const SkeletonNode &skeleton, PX_PLUGIN::IMgjsonRoot_v1 *root);

}  // namespace ns_sensor
