// Times of the telemetry: media time in nanoseconds from the start of the recording, and
// the one offset that moves it to UTC when the camera had a GPS fix.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "utc_time.hpp"

namespace gpmf {

constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;

// Ticks at ticksPerSecond (not 0) as nanoseconds; exact to the nanosecond, no overflow for
// any time a recording can last.
std::int64_t TicksToNanoseconds(std::uint64_t ticks, std::uint32_t ticksPerSecond);

// The GPS time text "yymmddhhmmss.sss" (UTC, years 2000-2099) as nanoseconds since
// 1970-01-01; nothing when it is not exactly that (a camera without a lock writes zeros
// or garbage).
std::optional<std::int64_t> ParseGpsTime(std::string_view text);

// The offset from media time to UTC: the median of the offsets each fixed payload gives
// (the lower middle one of an even count), which keeps the time line steady where single
// GPS times jump. Nothing when there are none.
std::optional<std::int64_t> MedianOffset(std::vector<std::int64_t> offsets);

// Nanoseconds since 1970-01-01T00:00:00 as an instant (negative counts end at 0).
palvex_plugins::Instant InstantAt(std::int64_t nanoseconds);

}  // namespace gpmf
