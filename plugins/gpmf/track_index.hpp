// What the movie index says about the telemetry: the track's clock, where and when each
// payload is, and the recording-wide facts kept beside it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "byte_source.hpp"
#include "sample_tables.hpp"

namespace gpmf {

struct TelemetryIndex {
  std::uint32_t timescale = 0;         // telemetry track ticks per second
  PayloadList payloads;
  std::int64_t editShiftNanoseconds = 0;  // added to every payload time (edit list)
  std::int64_t movieNanoseconds = 0;       // the movie's duration: where a next chapter starts
  std::optional<std::uint64_t> creationTime;  // seconds since 1904, the camera's local clock
  std::vector<unsigned char> settings;        // the recording-wide KLV payload (udta), may be empty
  std::string firmware;                       // the udta firmware box's text, may be empty
  std::uint32_t telemetryTracks = 0;          // tracks that qualified; the first one is read
};

// Walks the top-level boxes (skipping the media data) and the index. Throws the plug-in's
// codes: kNoIndex, kNoTelemetryTrack, kZeroTimescale, kCorruptBox, kBadSampleTable, ...
TelemetryIndex ReadTelemetryIndex(ByteSource &source);

// Whether the first box of the file looks like an ISO media file's (cheap: one header).
bool LooksLikeIsoMedia(ByteSource &source);

}  // namespace gpmf
