// The plug-in's own failure codes, handed to the library in the error record. detail1 is
// the byte offset in the file where the fault was found (-1 when none), detail2 the
// chapter it was found in (1 for the file given, 2 for the next chapter, ...).
#pragma once

#include <cstdint>

#include "palvex/plugin_kit.hpp"

namespace gpmf {

enum ErrorCode : std::uint32_t {
  kUnsupportedHost = 3500,   // the library's tables are older than version 1
  kCannotRead = 3501,        // the file cannot be opened or read
  kCorruptBox = 3502,        // a box size below its header, past its parent or past the end
  kNoIndex = 3503,           // no movie index (moov) box
  kNoTelemetryTrack = 3504,  // no track with a 'meta' handler and a 'gpmd' sample entry
  kBadSampleTable = 3505,    // a sample table that contradicts itself or its box
  kZeroTimescale = 3506,     // a track or movie clock of zero ticks per second
  kPayloadOutside = 3507,    // the first telemetry payload lies outside the file
  kCorruptPayload = 3508,    // a KLV that runs past its payload or nest, or a bad structure size
  kTooLarge = 3509,          // a table or payload larger than the reader accepts
};

[[noreturn]] inline void Fail(ErrorCode code, std::int64_t offset = -1) {
  throw PX_PLUGIN::PX_PluginException(code, offset, -1);
}

}  // namespace gpmf
