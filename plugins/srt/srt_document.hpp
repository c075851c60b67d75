// The MGJSON document of a drone telemetry subtitle file, built through the library's
// object model: one dynamic stream per telemetry field, timed by each block's date line
// (local time of an unknown zone) or, without dates, by the block's start in the video
// (counted from 1970-01-01T00:00:00Z).
#pragma once

#include <istream>
#include <string_view>

#include "palvex/plugin_kit.hpp"

namespace srt {

// Reads the whole input and fills root (not committed). False when no block carries
// telemetry: nothing to write. Throws PX_PluginException with the codes of srt_errors.hpp
// and the object model's statuses.
bool BuildSrtDocument(std::istream &in, PX_PLUGIN::IMgjsonRoot_v1 *root);

// Whether the first bytes of a file are SRT blocks with telemetry we know (a position, an
// altitude, camera settings). head is the whole file when complete, else cut anywhere.
// Never throws.
bool LooksLikeDroneSrt(std::string_view head, bool complete);

}  // namespace srt
