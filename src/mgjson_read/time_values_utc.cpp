// UTC texts YYYY-MM-DDTHH:MM:SS[.fraction] followed by Z or a signed HH:MM offset.
#include <chrono>
#include <cstdio>
#include <limits>
#include <numeric>
#include <stdexcept>
#include <utility>

#include "api/px_exception.hpp"
#include "mgjson_read/time_values.hpp"
#include "mgjson_read/time_values_internal.hpp"

namespace ns_sensor {
namespace {

namespace chrono = std::chrono;

constexpr std::uint64_t kMax32 = std::numeric_limits<std::uint32_t>::max();

// Field positions; the fraction, when there is one, follows a point at 19.
constexpr std::size_t kYearAt = 0;
constexpr std::size_t kYearDigits = 4;
constexpr std::size_t kMonthAt = 5;
constexpr std::size_t kDayAt = 8;
constexpr std::size_t kHourAt = 11;
constexpr std::size_t kMinuteAt = 14;
constexpr std::size_t kSecondAt = 17;
constexpr std::size_t kFractionAt = 20;
constexpr std::size_t kFieldDigits = 2;
constexpr std::size_t kOffsetHoursAfterZone = 1;
constexpr std::size_t kOffsetMinutesAfterZone = 4;
constexpr std::size_t kOffsetBytes = 5;  // HH:MM after the sign

constexpr int kMonthsPerYear = 12;
constexpr int kHoursPerDay = 24;
constexpr int kSecondsPerDay = 86400;
constexpr int kLastSecond = 60;  // a leap second may be written
constexpr std::uint32_t kPowersOfTen[] = {1,         10,         100,       1000,
                                          10000,     100000,     1000000,   10000000,
                                          100000000, 1000000000};

// Without a fraction there is no point either, so the zone follows the seconds directly.
std::size_t ZoneAt(unsigned precision) { return precision == 0 ? kFractionAt - 1 : kFractionAt + precision; }

bool IsOffsetSign(char zone) { return zone == '+' || zone == '-'; }

chrono::year_month_day DateFields(const UtcRecord &r) {
  return chrono::year{r.year} / chrono::month{static_cast<unsigned>(r.month)} /
         chrono::day{static_cast<unsigned>(r.day)};
}

// Only for records that passed CheckCalendar.
chrono::sys_days DateOf(const UtcRecord &r) { return chrono::sys_days{DateFields(r)}; }

// The arithmetic needs real calendar fields: 30 February has no day number, and a
// negative field would turn the carries around.
void CheckCalendar(const UtcRecord &r, unsigned precision) {
  constexpr int kLongestMonth = 31;
  const bool fieldsInRange =
      r.year >= 0 && r.year <= kLastYear && r.month >= 1 && r.month <= kMonthsPerYear && r.day >= 1 &&
      r.day <= kLongestMonth && r.hour >= 0 && r.hour < kHoursPerDay && r.minute >= 0 &&
      r.minute < kMinutesPerHour && r.second >= 0 && r.second <= kLastSecond &&
      r.fraction < FractionUnitsPerSecond(precision) && r.offsetHours >= 0 &&
      r.offsetHours < kHoursPerDay && r.offsetMinutes >= 0 && r.offsetMinutes < kMinutesPerHour;
  if (!fieldsInRange || !DateFields(r).ok()) throw std::out_of_range("UTC field outside the calendar");
}

// Seconds since 1970 of the record's whole seconds (a leap second counts as the next).
std::int64_t WholeSeconds(const UtcRecord &r) {
  return std::int64_t{DateOf(r).time_since_epoch().count()} * kSecondsPerDay +
         std::int64_t{r.hour} * kSecondsPerHour + r.minute * kSecondsPerMinute + r.second;
}

}  // namespace

std::uint32_t FractionUnitsPerSecond(unsigned precision) {
  if (precision > kMaxUtcPrecision) throw std::out_of_range("UTC precision above nanoseconds");
  return kPowersOfTen[precision];
}

std::size_t UtcTextLength(unsigned precision, bool hasOffset) {
  return ZoneAt(precision) + 1 + (hasOffset ? kOffsetBytes : 0);
}

TimeStatus ParseUtcTime(std::string_view text, unsigned precision, UtcRecord &record) {
  (void)FractionUnitsPerSecond(precision);
  if (text.size() < UtcTextLength(precision, false)) return TimeStatus::TooShort;
  UtcRecord read;
  read.year = ReadTimeField(text, kYearAt, kYearDigits);
  read.month = ReadTimeField(text, kMonthAt, kFieldDigits);
  read.day = ReadTimeField(text, kDayAt, kFieldDigits);
  read.hour = ReadTimeField(text, kHourAt, kFieldDigits);
  read.minute = ReadTimeField(text, kMinuteAt, kFieldDigits);
  read.second = ReadTimeField(text, kSecondAt, kFieldDigits);
  if (precision > 0) {
    const int fraction = ReadTimeField(text, kFractionAt, precision);
    if (fraction < 0) throw std::out_of_range("negative UTC fraction");
    read.fraction = static_cast<std::uint32_t>(fraction);
  }
  const std::size_t zoneAt = ZoneAt(precision);
  read.zone = text[zoneAt];
  if (IsOffsetSign(read.zone)) {
    if (text.size() < UtcTextLength(precision, true)) return TimeStatus::TooShort;
    read.hasOffset = true;
    read.offsetHours = ReadTimeField(text, zoneAt + kOffsetHoursAfterZone, kFieldDigits);
    read.offsetMinutes = ReadTimeField(text, zoneAt + kOffsetMinutesAfterZone, kFieldDigits);
  }
  CheckCalendar(read, precision);
  record = read;
  return TimeStatus::Ok;
}

std::string FormatUtcTime(const UtcRecord &r, unsigned precision) {
  char text[100];
  int length = std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d", r.year, r.month,
                             r.day, r.hour, r.minute, r.second);
  if (precision > 0) {
    length += std::snprintf(text + length, sizeof text - length, ".%0*u",
                            static_cast<int>(precision), r.fraction);
  }
  length += std::snprintf(text + length, sizeof text - length, "%c", r.zone);
  if (r.hasOffset) {
    length += std::snprintf(text + length, sizeof text - length, "%02d:%02d", r.offsetHours,
                            r.offsetMinutes);
  }
  return std::string(text, static_cast<std::size_t>(length));
}

UtcRecord AddDuration(const UtcRecord &record, RationalTime duration, unsigned precision,
                      bool roundUp) {
  if (duration.denominator == 0) Raise(Msg::ZeroScaleValue, Quoted("duration"));
  const std::uint64_t unitsPerSecond = FractionUnitsPerSecond(precision);
  CheckCalendar(record, precision);
  // 64 bits throughout: (n mod d) × 10^p alone can pass 32 bits.
  const std::uint64_t whole = duration.numerator / duration.denominator;
  const std::uint64_t remainder = std::uint64_t{duration.numerator % duration.denominator} * unitsPerSecond;
  std::uint64_t part = remainder / duration.denominator;
  if (roundUp && remainder % duration.denominator != 0) ++part;

  UtcRecord sum = record;
  const std::uint64_t fraction = part + record.fraction;
  sum.fraction = static_cast<std::uint32_t>(fraction % unitsPerSecond);
  const std::uint64_t seconds = whole + fraction / unitsPerSecond + record.second;
  sum.second = static_cast<std::int32_t>(seconds % kSecondsPerMinute);
  const std::uint64_t minutes = record.minute + seconds / kSecondsPerMinute;
  sum.minute = static_cast<std::int32_t>(minutes % kMinutesPerHour);
  const std::uint64_t hours = record.hour + minutes / kMinutesPerHour;
  sum.hour = static_cast<std::int32_t>(hours % kHoursPerDay);
  // At most 2^32 seconds were added: some 50,000 days, well inside the calendar's range.
  const chrono::year_month_day date{DateOf(record) + chrono::days{hours / kHoursPerDay}};
  sum.year = static_cast<int>(date.year());
  sum.month = static_cast<std::int32_t>(static_cast<unsigned>(date.month()));
  sum.day = static_cast<std::int32_t>(static_cast<unsigned>(date.day()));
  return sum;
}

std::string AddToUtcTime(const UtcRecord &record, RationalTime duration, unsigned precision) {
  return FormatUtcTime(AddDuration(record, duration, precision, false), precision);
}

UtcSpan DistanceBetween(const UtcRecord &earlier, const UtcRecord &later, unsigned precision) {
  const std::int64_t unitsPerSecond = FractionUnitsPerSecond(precision);
  CheckCalendar(earlier, precision);
  CheckCalendar(later, precision);
  std::int64_t seconds = WholeSeconds(later) - WholeSeconds(earlier);
  std::int64_t fraction = std::int64_t{later.fraction} - earlier.fraction;
  if (fraction < 0) {
    fraction += unitsPerSecond;
    --seconds;
  }
  if (seconds >= 0) return {false, static_cast<std::uint64_t>(seconds), static_cast<std::uint64_t>(fraction)};
  // Negate the pair, keeping the fraction in [0, unitsPerSecond).
  if (fraction == 0) return {true, static_cast<std::uint64_t>(-seconds), 0};
  return {true, static_cast<std::uint64_t>(-seconds - 1), static_cast<std::uint64_t>(unitsPerSecond - fraction)};
}

RationalTime SpanToRational(const UtcSpan &span, unsigned precision) {
  for (unsigned digits = precision;; --digits) {
    const std::uint64_t units = kPowersOfTen[digits];
    const std::uint64_t fraction = span.fraction / kPowersOfTen[precision - digits];
    if (span.seconds <= (std::numeric_limits<std::uint64_t>::max() - fraction) / units) {
      const std::uint64_t numerator = span.seconds * units + fraction;
      const std::uint64_t divisor = std::gcd(numerator, units);
      if (numerator / divisor <= kMax32) {
        return {static_cast<std::uint32_t>(numerator / divisor), static_cast<std::uint32_t>(units / divisor)};
      }
    }
    if (digits == 0) return {0, 0};
  }
}

RationalTime UtcDifference(const UtcRecord &a, const UtcRecord &b, unsigned precision) {
  return SpanToRational(DistanceBetween(a, b, precision), precision);
}

int CompareUTCTime(std::string_view left, std::string_view right, unsigned precision) {
  const std::size_t shortest = precision == 0 ? kSecondAt + kFieldDigits : kFractionAt + precision;
  if (left.data() == nullptr || right.data() == nullptr || left.size() < shortest ||
      right.size() < shortest) {
    Raise(Msg::InvalidInputTime, "CompareUTCTime");
  }
  const std::pair<std::size_t, std::size_t> fields[] = {
      {kYearAt, kYearDigits},  {kMonthAt, kFieldDigits},  {kDayAt, kFieldDigits},
      {kHourAt, kFieldDigits}, {kMinuteAt, kFieldDigits}, {kSecondAt, kFieldDigits}};
  for (const auto &[at, width] : fields) {
    const int order = left.substr(at, width).compare(right.substr(at, width));
    if (order != 0) return order < 0 ? -1 : 1;
  }
  if (precision == 0) return 0;
  const int order = left.substr(kFractionAt, precision).compare(right.substr(kFractionAt, precision));
  return order < 0 ? -1 : order > 0 ? 1 : 0;
}

}  // namespace ns_sensor
