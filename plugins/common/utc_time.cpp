#include "utc_time.hpp"

#include <cmath>

namespace palvex_plugins {
namespace {

constexpr std::int64_t kSecondsPerDay = 86'400;
constexpr std::int64_t kSecondsPerHour = 3'600;
constexpr std::int64_t kSecondsPerMinute = 60;
// The years a time text can say: 0001-01-01T00:00:00 to 9999-12-31T23:59:59.
constexpr std::int64_t kFirstSecond = -62'135'596'800;
constexpr std::int64_t kLastSecond = 253'402'300'799;

bool InRange(std::int64_t seconds) { return seconds >= kFirstSecond && seconds <= kLastSecond; }

// Reads exactly `count` digits at text[at...] into value; moves at past them.
bool Digits(std::string_view text, std::size_t &at, std::size_t count, unsigned &value) {
  if (text.size() - at < count) return false;
  value = 0;
  for (std::size_t i = 0; i < count; ++i, ++at) {
    const char c = text[at];
    if (c < '0' || c > '9') return false;
    value = value * 10 + static_cast<unsigned>(c - '0');
  }
  return true;
}

bool Expect(std::string_view text, std::size_t &at, char wanted) {
  if (at >= text.size() || text[at] != wanted) return false;
  ++at;
  return true;
}

unsigned DaysInMonth(std::int64_t year, unsigned month) {
  static constexpr unsigned kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return month == 2 && leap ? 29 : kDays[month - 1];
}

// The zone at text[at...]: "Z", "+HH:MM", "+HHMM" or "+HH" (or "-"); offset in seconds east.
bool Zone(std::string_view text, std::size_t &at, std::int64_t &offset) {
  if (at < text.size() && (text[at] == 'Z' || text[at] == 'z')) {
    ++at;
    offset = 0;
    return true;
  }
  if (at >= text.size() || (text[at] != '+' && text[at] != '-')) return false;
  const bool negative = text[at++] == '-';
  unsigned hours = 0, minutes = 0;
  if (!Digits(text, at, 2, hours) || hours > 23) return false;
  if (at < text.size()) {
    if (text[at] == ':') ++at;
    if (!Digits(text, at, 2, minutes) || minutes > 59) return false;
  }
  offset = (hours * kSecondsPerHour + minutes * kSecondsPerMinute) * (negative ? -1 : 1);
  return true;
}

}  // namespace

std::int64_t DaysFromCivil(std::int64_t year, unsigned month, unsigned day) {
  // Counted in eras of 400 years, with the year starting in March so that the leap day
  // comes last.
  year -= month <= 2;
  const std::int64_t era = (year >= 0 ? year : year - 399) / 400;
  const auto yearOfEra = static_cast<unsigned>(year - era * 400);
  const unsigned dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
  const unsigned dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  return era * 146'097 + static_cast<std::int64_t>(dayOfEra) - 719'468;
}

void CivilFromDays(std::int64_t days, std::int64_t &year, unsigned &month, unsigned &day) {
  days += 719'468;
  const std::int64_t era = (days >= 0 ? days : days - 146'096) / 146'097;
  const auto dayOfEra = static_cast<unsigned>(days - era * 146'097);
  const unsigned yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36'524 - dayOfEra / 146'096) / 365;
  const unsigned dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const unsigned shiftedMonth = (5 * dayOfYear + 2) / 153;
  day = dayOfYear - (153 * shiftedMonth + 2) / 5 + 1;
  month = shiftedMonth < 10 ? shiftedMonth + 3 : shiftedMonth - 9;
  year = static_cast<std::int64_t>(yearOfEra) + era * 400 + (month <= 2);
}

std::optional<ParsedTime> ParseIsoTime(std::string_view text) {
  std::size_t at = 0;
  unsigned year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
  if (!Digits(text, at, 4, year) || !Expect(text, at, '-') || !Digits(text, at, 2, month) ||
      !Expect(text, at, '-') || !Digits(text, at, 2, day)) {
    return std::nullopt;
  }
  if (at >= text.size() || (text[at] != 'T' && text[at] != 't' && text[at] != ' ')) return std::nullopt;
  ++at;
  if (!Digits(text, at, 2, hour) || !Expect(text, at, ':') || !Digits(text, at, 2, minute) ||
      !Expect(text, at, ':') || !Digits(text, at, 2, second)) {
    return std::nullopt;
  }
  if (year == 0 || month < 1 || month > 12 || day < 1 || day > DaysInMonth(year, month) || hour > 23 ||
      minute > 59 || second > 59) {
    return std::nullopt;
  }
  ParsedTime parsed;
  if (at < text.size() && (text[at] == '.' || text[at] == ',')) {
    ++at;
    std::uint32_t nanoseconds = 0;
    while (at < text.size() && text[at] >= '0' && text[at] <= '9') {
      if (parsed.fractionDigits == kMaxFractionDigits) return std::nullopt;
      nanoseconds = nanoseconds * 10 + static_cast<std::uint32_t>(text[at++] - '0');
      ++parsed.fractionDigits;
    }
    if (parsed.fractionDigits == 0) return std::nullopt;
    for (std::uint32_t d = parsed.fractionDigits; d < kMaxFractionDigits; ++d) nanoseconds *= 10;
    parsed.instant.nanoseconds = nanoseconds;
  }
  std::int64_t offset = 0;
  if (at < text.size()) {
    if (!Zone(text, at, offset) || at != text.size()) return std::nullopt;
    parsed.zoned = true;
  }
  parsed.instant.seconds = DaysFromCivil(year, month, day) * kSecondsPerDay + hour * kSecondsPerHour +
                           minute * kSecondsPerMinute + second - offset;
  if (!InRange(parsed.instant.seconds)) return std::nullopt;
  return parsed;
}

std::optional<Instant> InstantFromSeconds(double seconds) {
  if (!std::isfinite(seconds)) return std::nullopt;
  const double whole = std::floor(seconds);
  if (whole < static_cast<double>(kFirstSecond) || whole > static_cast<double>(kLastSecond)) {
    return std::nullopt;
  }
  auto nanoseconds = static_cast<std::int64_t>(std::llround((seconds - whole) * kNanosecondsPerSecond));
  auto wholeSeconds = static_cast<std::int64_t>(whole);
  if (nanoseconds >= kNanosecondsPerSecond) {
    nanoseconds -= kNanosecondsPerSecond;
    ++wholeSeconds;
  }
  if (!InRange(wholeSeconds)) return std::nullopt;
  return Instant{wholeSeconds, static_cast<std::uint32_t>(nanoseconds)};
}

std::optional<Instant> InstantFromMilliseconds(std::int64_t milliseconds) {
  std::int64_t seconds = milliseconds / 1000;
  std::int64_t rest = milliseconds % 1000;
  if (rest < 0) {
    rest += 1000;
    --seconds;
  }
  if (!InRange(seconds)) return std::nullopt;
  return Instant{seconds, static_cast<std::uint32_t>(rest * 1'000'000)};
}

std::optional<Instant> AddSeconds(const Instant &a, double seconds) {
  const std::optional<Instant> step = InstantFromSeconds(seconds);
  if (!step) return std::nullopt;
  Instant sum{a.seconds + step->seconds, a.nanoseconds + step->nanoseconds};
  if (sum.nanoseconds >= kNanosecondsPerSecond) {
    sum.nanoseconds -= kNanosecondsPerSecond;
    ++sum.seconds;
  }
  if (!InRange(sum.seconds)) return std::nullopt;
  return sum;
}

double SecondsBetween(const Instant &a, const Instant &b) {
  return static_cast<double>(a.seconds - b.seconds) +
         (static_cast<double>(a.nanoseconds) - static_cast<double>(b.nanoseconds)) / kNanosecondsPerSecond;
}

std::string FormatTime(const Instant &instant, std::uint32_t precision, bool gmt) {
  // Runs once per sample: digits are written by hand rather than through printf.
  if (precision > kMaxFractionDigits) precision = kMaxFractionDigits;
  const std::int64_t days = (instant.seconds >= 0 ? instant.seconds : instant.seconds - (kSecondsPerDay - 1)) /
                            kSecondsPerDay;
  const auto inDay = static_cast<unsigned>(instant.seconds - days * kSecondsPerDay);
  std::int64_t year = 0;
  unsigned month = 0, day = 0;
  CivilFromDays(days, year, month, day);
  char text[40];
  char *out = text;
  const auto put = [&out](std::uint64_t value, int width) {
    for (int i = width - 1; i >= 0; --i, value /= 10) out[i] = static_cast<char>('0' + value % 10);
    out += width;
  };
  put(static_cast<std::uint64_t>(year), 4);
  *out++ = '-';
  put(month, 2);
  *out++ = '-';
  put(day, 2);
  *out++ = 'T';
  put(inDay / kSecondsPerHour, 2);
  *out++ = ':';
  put(inDay % kSecondsPerHour / kSecondsPerMinute, 2);
  *out++ = ':';
  put(inDay % kSecondsPerMinute, 2);
  if (precision > 0) {
    *out++ = '.';
    std::uint64_t fraction = instant.nanoseconds % kNanosecondsPerSecond;
    for (std::uint32_t d = precision; d < kMaxFractionDigits; ++d) fraction /= 10;
    put(fraction, static_cast<int>(precision));
  }
  std::string result(text, out);
  result += gmt ? "Z" : "+00:00";
  return result;
}

}  // namespace palvex_plugins
