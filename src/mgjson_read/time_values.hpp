// Sample times: SMPTE timecode and UTC texts, their exact rational values in seconds, and
// the comparisons the sample reader orders them with.
//
// Numbers inside time texts are read the way std::stoi reads them (leading blanks and a
// sign accepted, reading stops at the first byte that is not a digit), so a field that
// does not start with a number fails with std::invalid_argument and one too large with
// std::out_of_range (the boundary reports both as an unknown exception). A text too short
// to hold a field is never read past its end; what it gets is said at each function.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace ns_sensor {

// Seconds as an exact fraction. A denominator of 0 means "cannot be expressed".
struct RationalTime {
  std::uint32_t numerator = 0;
  std::uint32_t denominator = 1;

  friend bool operator==(const RationalTime &, const RationalTime &) = default;
};

// value / scale frames per second; drop frame is defined for 29.97 and 59.94 only.
struct FrameRate {
  std::uint32_t value = 0;
  std::uint32_t scale = 1;
  bool dropFrame = false;
};

// A UTC text taken apart. fraction counts units of 10^-p for the text's precision p.
struct UtcRecord {
  std::int32_t year = 1970;
  std::int32_t month = 1;
  std::int32_t day = 1;
  std::int32_t hour = 0;
  std::int32_t minute = 0;
  std::int32_t second = 0;
  std::uint32_t fraction = 0;
  char zone = 'Z';  // 'Z', or '+' / '-' before the offset
  bool hasOffset = false;
  std::int32_t offsetHours = 0;
  std::int32_t offsetMinutes = 0;

  friend bool operator==(const UtcRecord &, const UtcRecord &) = default;
};

enum class TimeStatus : int {
  Ok = 0,
  DoesNotFit = 1,  // a product does not fit 32 bits; the result is 0/0
  TooShort = 21,   // the text is too short for the fields it must hold
};

// Fraction digits the UTC arithmetic handles (10^9 still fits a 32-bit denominator).
// Comparisons accept any precision; the arithmetic refuses more with std::out_of_range.
inline constexpr unsigned kMaxUtcPrecision = 9;

// ---- Rational arithmetic --------------------------------------------------------------

// a × b. The product is formed when numerator and denominator each fit 32 bits (tested
// exactly, in 64 bits). Otherwise each numerator is reduced with the other factor's
// denominator, then each factor by its own divisor, and the product is tried once more.
// A zero denominator, or a product that still does not fit, gives 0/0 and DoesNotFit.
[[nodiscard]] TimeStatus MultiplyRational(RationalTime a, RationalTime b, RationalTime &product);

// ---- SMPTE timecode --------------------------------------------------------------------

// Nominal frames per second: value / scale rounded to the nearest whole number (29.97
// gives 30). Raises ZeroScaleValue for "frameRate" when the scale is 0 or the result is
// 0, since such a rate cannot number frames.
std::uint32_t NominalFramesPerSecond(const FrameRate &rate);

// True when frames are written with three digits (value / scale above 99).
bool UsesThreeDigitFrames(const FrameRate &rate);

// Bytes of a timecode text at this rate: 11, or 12 with three-digit frames.
std::size_t SmpteTextLength(const FrameRate &rate);

// The frame number (counted from 00:00:00:00) of a timecode text HH:MM:SS:FF. Separators
// are not examined. A text shorter than its fields raises std::invalid_argument, like an
// unreadable field; a negative field, minutes or seconds above 59, or a frame field not
// below the nominal rate raise std::out_of_range. Under drop frame, the labels skipped at
// the start of a minute read as the frames just before them.
std::int64_t SmpteToFrameNumber(std::string_view text, const FrameRate &rate);

// The timecode text of a frame number; hours wrap at 24.
std::string FrameNumberToSmpte(std::uint64_t frame, const FrameRate &rate);

// Seconds since 00:00:00:00 of a timecode text, as frames × scale / value. A time that
// cannot be expressed as a 32-bit fraction (very late times at 59.94) gives 0/0.
RationalTime SmpteToTime(std::string_view text, const FrameRate &rate);

// The timecode text of the frame a time falls in. The frame is the quotient of
// numerator × value by denominator × scale taken in 64 bits: the same frame the 32-bit
// product would give, but never lost to an overflow. A time with denominator 0 raises
// ZeroScaleValue for "time".
std::string TimeToSmpte(RationalTime time, const FrameRate &rate);

// Orders two timecode texts: hours, minutes and seconds as raw bytes, then the frame
// fields as numbers (three digits when the text has three bytes from position 9). Returns
// negative, zero or positive. A null or too short text raises InvalidInputTime.
int CompareSMPTETime(std::string_view left, std::string_view right);

// ---- UTC -------------------------------------------------------------------------------

// Bytes of a UTC text: 20 without a fraction, precision + 21 with one, 5 more with an
// offset. Without a fraction the zone character follows the seconds directly.
std::size_t UtcTextLength(unsigned precision, bool hasOffset);

// Reads YYYY-MM-DDTHH:MM:SS[.fraction] and the zone, with "+HH:MM" or "-HH:MM" after a
// sign. Returns TooShort (and leaves record alone) when the text is shorter than the
// fields it must hold: 20 bytes at least, then the fraction and zone, then the offset.
// Fields outside the calendar (month 13, 30 February, second above 60, a negative field)
// and a precision above kMaxUtcPrecision raise std::out_of_range.
TimeStatus ParseUtcTime(std::string_view text, unsigned precision, UtcRecord &record);

// The UTC text of a record; without a fraction when the precision is 0.
std::string FormatUtcTime(const UtcRecord &record, unsigned precision);

// record + duration, carried through days, months and years; the fraction of the
// duration below the precision is dropped. The zone and offset are carried along
// unchanged (the sum is not moved to GMT). A duration with denominator 0 raises
// ZeroScaleValue for "duration"; a record outside the calendar, std::out_of_range.
std::string AddToUtcTime(const UtcRecord &record, RationalTime duration, unsigned precision);

// The time between two records, whichever comes first, in seconds. Offsets are not
// applied, as in the comparison. When the exact value does not fit a 32-bit fraction,
// fraction digits are dropped from the end until it does; 0/0 when even whole seconds do
// not fit (more than 136 years).
RationalTime UtcDifference(const UtcRecord &a, const UtcRecord &b, unsigned precision);

// Orders two UTC texts by the raw bytes of year, month, day, hour, minute and second,
// then the precision's fraction bytes. Zones and offsets are deliberately not compared.
// Returns -1, 0 or 1. A null or too short text raises InvalidInputTime.
int CompareUTCTime(std::string_view left, std::string_view right, unsigned precision);

// ---- Time axis of a file ---------------------------------------------------------------

// What the time texts of one file mean, and where its zero lies: 00:00:00:00 for
// timecode, a given UTC time for UTC.
struct TimeAxis {
  bool timecode = false;
  FrameRate rate;          // timecode
  unsigned precision = 0;  // UTC fraction digits
  UtcRecord origin;        // UTC time counted as zero seconds
};

// Which text a time between two representable texts becomes.
enum class TimeRounding {
  Earlier,  // the last text not after the time: the end of a requested range
  Later,    // the first text not before the time: the start of a requested range
};

// Seconds since the axis's zero of one time text; 0/0 when they cannot be expressed
// (a UTC time before the origin, or a value too large). Unreadable texts raise as the
// readers above do; a UTC text too short for its fields raises std::invalid_argument.
RationalTime TextToSeconds(const TimeAxis &axis, std::string_view text);

// The time text that samples are compared with to find those at or after (Later) or at
// or before (Earlier) a requested time. Unlike TimeToSmpte it does not wrap at 24 hours,
// and a time beyond what the text form can write becomes its largest text (Earlier) or a
// text after every real one (Later), so the order of texts always agrees with the order
// of times. Denominator 0 raises ZeroScaleValue for "time".
std::string SecondsToSearchText(const TimeAxis &axis, RationalTime seconds, TimeRounding rounding);

// CompareSMPTETime or CompareUTCTime, as the axis says.
int CompareTimeTexts(const TimeAxis &axis, std::string_view left, std::string_view right);

}  // namespace ns_sensor
