// A file's time texts as seconds since its zero, and back into texts to search with.
#include <stdexcept>

#include "api/px_exception.hpp"
#include "mgjson_read/time_values.hpp"
#include "mgjson_read/time_values_internal.hpp"

namespace ns_sensor {
namespace {

constexpr std::uint64_t kLastTimecodeHour = 99;  // two digits

// Texts beyond what the forms can write. The largest text orders at or after every text a
// file can hold; the text "after all" orders after every one of them (its seconds field
// is past any real second), so a range starting there is empty.
std::string LargestSmpteText(const FrameRate &rate) {
  return FormatSmpte({kLastTimecodeHour, kMinutesPerHour - 1, kSecondsPerMinute - 1,
                      NominalFramesPerSecond(rate) - 1},
                     rate);
}

std::string SmpteTextAfterAll(const FrameRate &rate) {
  return FormatSmpte({kLastTimecodeHour, kMinutesPerHour - 1, kSecondsPerMinute + 1, 0}, rate);
}

std::string LastUtcText(const UtcRecord &origin, unsigned precision, bool afterAll) {
  const UtcRecord last{.year = kLastYear,
                       .month = 12,
                       .day = 31,
                       .hour = 23,
                       .minute = kMinutesPerHour - 1,
                       .second = afterAll ? kSecondsPerMinute + 1 : kSecondsPerMinute,  // 60: leap
                       .fraction = afterAll ? 0 : FractionUnitsPerSecond(precision) - 1,
                       .zone = origin.zone,
                       .hasOffset = origin.hasOffset,
                       .offsetHours = origin.offsetHours,
                       .offsetMinutes = origin.offsetMinutes};
  return FormatUtcTime(last, precision);
}

}  // namespace

RationalTime TextToSeconds(const TimeAxis &axis, std::string_view text) {
  if (axis.timecode) return SmpteToTime(text, axis.rate);
  UtcRecord time;
  if (ParseUtcTime(text, axis.precision, time) == TimeStatus::TooShort) {
    throw std::invalid_argument("UTC text too short");
  }
  const UtcSpan span = DistanceBetween(axis.origin, time, axis.precision);
  if (span.negative) return {0, 0};
  return SpanToRational(span, axis.precision);
}

std::string SecondsToSearchText(const TimeAxis &axis, RationalTime seconds, TimeRounding rounding) {
  if (seconds.denominator == 0) Raise(Msg::ZeroScaleValue, Quoted("time"));
  const bool later = rounding == TimeRounding::Later;
  if (axis.timecode) {
    const SmpteFields fields = FieldsOfFrame(FrameOfTime(seconds, axis.rate, later), axis.rate);
    if (fields.hours > kLastTimecodeHour) {
      return later ? SmpteTextAfterAll(axis.rate) : LargestSmpteText(axis.rate);
    }
    return FormatSmpte(fields, axis.rate);
  }
  const UtcRecord time = AddDuration(axis.origin, seconds, axis.precision, later);
  if (time.year > kLastYear) return LastUtcText(axis.origin, axis.precision, later);
  return FormatUtcTime(time, axis.precision);
}

int CompareTimeTexts(const TimeAxis &axis, std::string_view left, std::string_view right) {
  return axis.timecode ? CompareSMPTETime(left, right) : CompareUTCTime(left, right, axis.precision);
}

}  // namespace ns_sensor
