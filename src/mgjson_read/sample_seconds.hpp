// Seconds from the time origin of sample times that passed IsReadableTime, and their
// order: what the reader needs for every sample it delivers, so it must cost little.
// The results are those of TextToSeconds and of CompareSMPTETime / CompareUTCTime for
// such texts (the tests hold them to it); only the general field reading, which those
// functions need for any text, is left out.
#pragma once

#include <cstdint>
#include <string_view>

#include "mgjson_read/sample_timing.hpp"
#include "mgjson_read/time_values.hpp"

namespace ns_sensor {

class SampleSeconds {
 public:
  // For texts of `timing`, counted from the origin of `axis` (a UTC origin must be a
  // readable time of the same timing).
  SampleSeconds(const SampleTiming &timing, const TimeAxis &axis);

  // Seconds from the origin; denominator 0 when they cannot be expressed (before the
  // origin, or too large for a 32-bit fraction).
  RationalTime Of(std::string_view readableTime) const;

 private:
  RationalTime OfTimecode(std::string_view text) const;
  RationalTime OfUtc(std::string_view text) const;

  SampleTiming timing_;
  std::uint32_t framesPerSecond_ = 0;
  std::int64_t originSeconds_ = 0;   // UTC: whole seconds since 1970
  std::uint64_t originFraction_ = 0;
};

// The order of two texts that passed IsReadableTime: negative, zero or positive with the
// sign CompareSMPTETime or CompareUTCTime gives them.
int CompareReadableTimes(const SampleTiming &timing, std::string_view left, std::string_view right);

}  // namespace ns_sensor
