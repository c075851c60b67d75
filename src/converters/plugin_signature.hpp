// The "check_format" test of a plug-in converter: fixed bytes at fixed offsets.
#pragma once

#include <span>
#include <string_view>

#include "converters/plugin_manifest.hpp"

namespace ns_sensor {

// Whether the file at inputPath carries every signature, in order: false at the first
// mismatch, when fewer bytes than a signature's length can be read at its offset, and
// when the file cannot be opened. The file is closed in every case.
bool MatchesSignatures(std::string_view inputPath, std::span<const FormatSignature> signatures);

}  // namespace ns_sensor
