// Pieces shared by the timecode, UTC and time-axis files; not for other callers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "mgjson_read/time_values.hpp"

namespace ns_sensor {

inline constexpr int kSecondsPerMinute = 60;
inline constexpr int kMinutesPerHour = 60;
inline constexpr int kSecondsPerHour = 3600;

// The decimal number in `width` bytes at `at`, read by std::stoi. The caller has checked
// that the bytes exist.
int ReadTimeField(std::string_view text, std::size_t at, std::size_t width);

// ---- Timecode ----

struct SmpteFields {
  std::uint64_t hours;  // not wrapped
  std::uint32_t minutes;
  std::uint32_t seconds;
  std::uint32_t frames;
};

// The label of a frame number, hours left unwrapped.
SmpteFields FieldsOfFrame(std::uint64_t frame, const FrameRate &rate);
std::string FormatSmpte(const SmpteFields &fields, const FrameRate &rate);

// The frame a time falls in (roundUp: the first frame not before it), counted exactly.
std::uint64_t FrameOfTime(RationalTime time, const FrameRate &rate, bool roundUp);

// ---- UTC ----

inline constexpr std::int32_t kLastYear = 9999;  // four digits

// Raises std::out_of_range for a precision above kMaxUtcPrecision.
std::uint32_t FractionUnitsPerSecond(unsigned precision);

// record + duration (roundUp: the fraction below the precision raises the last digit
// instead of being dropped). Fields are normalised; the year may pass kLastYear.
UtcRecord AddDuration(const UtcRecord &record, RationalTime duration, unsigned precision,
                      bool roundUp);

// later - earlier as whole seconds and a fraction in [0, 10^precision).
struct UtcSpan {
  bool negative;  // later comes before earlier; the span is then their distance
  std::uint64_t seconds;
  std::uint64_t fraction;
};
UtcSpan DistanceBetween(const UtcRecord &earlier, const UtcRecord &later, unsigned precision);

// A span in seconds as a 32-bit fraction, dropping fraction digits until it fits.
RationalTime SpanToRational(const UtcSpan &span, unsigned precision);

}  // namespace ns_sensor
