// The MOTION frames of a motion capture file, one line each, added as samples to the
// channel triples of its document.
#pragma once

#include <vector>

#include "converters/bvh_document.hpp"
#include "converters/bvh_reader.hpp"

namespace ns_sensor {

// Reads every remaining line of lines as a frame: exactly three numbers per triple, taken
// in triple order and added at the frame's number (0, 1, 2, ...; blank lines are no frames)
// as a converted position or rotation. Raises BvhMalformed (1509) for a frame with another
// count of values or a word that is not a finite number. Failed object model operations
// throw PX_PLUGIN::PX_PluginException.
void AddMotionFrames(BvhLines &lines, const std::vector<ChannelTriple> &triples);

}  // namespace ns_sensor
