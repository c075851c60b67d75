// The time texts of samples, made from what a converter gives (a frame number, or a UTC
// base text and an offset) with the reader's own time routines, so that every text is
// one the reader accepts and orders correctly. Also the checks of the time information.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "mgjson_read/time_values.hpp"
#include "plugin_model/model_records.hpp"

namespace PX_PLUGIN {

// Timecode information as the reader accepts it: nominal rate 1 to 999, drop frame at
// 29.97 and 59.94 only. Raises 2029 otherwise.
TimecodeInfo CheckedTimecodeInfo(bool dropFrame, std::uint32_t value, std::uint32_t scale);

// UTC information with 0 to 9 fraction digits; raises 2029 otherwise.
UtcInfo CheckedUtcInfo(std::uint32_t precisionLength, bool isGmt);

// The last UTC base a node used, read once for the samples that share it.
struct UtcBaseCache {
  std::string text;
  ns_sensor::UtcRecord record;  // at the document's precision
  bool valid = false;
};

// The last timecode text a node made: the next frame within the same second only moves
// the frame field on, so most texts are made without working out the whole label.
struct FrameTextCache {
  std::uint64_t frame = 0;
  std::uint32_t frameField = 0;
  std::string text;
  bool valid = false;
};

// Makes the time texts of one document; built once its time information is fixed.
class SampleTimeText {
 public:
  explicit SampleTimeText(const TimeInformation &time);

  // The timecode text of a frame. Raises 2030 when the document is not timecode, 2029
  // for a frame at or beyond 24 hours (its text would wrap round to 00:00:00:00).
  std::string AtFrame(std::uint64_t frame, FrameTextCache &cache) const;

  // The UTC text of base + numerator / denominator seconds at the document's precision.
  // Raises 2030 when the document is not UTC, when the base has more fraction digits than
  // the document's precision, or when its zone form ("Z" or an offset) is not the
  // document's; 2029 for an unreadable base, a zero denominator or a year past 9999.
  std::string AtUtc(std::string_view base, std::uint32_t numerator, std::uint32_t denominator,
                    UtcBaseCache &cache) const;

 private:
  void ReadBase(std::string_view base, UtcBaseCache &cache) const;

  TimeInformation time_;
  ns_sensor::FrameRate rate_;
  std::uint32_t nominalFps_ = 0;
  std::uint64_t framesPerDay_ = 0;
};

}  // namespace PX_PLUGIN
