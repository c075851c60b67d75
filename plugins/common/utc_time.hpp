// Times as the telemetry plug-ins meet them (ISO 8601 texts, epoch counts, offsets from a
// start) and as the library takes them: "YYYY-MM-DDTHH:MM:SS[.fraction]" with "Z" or "+00:00".
#ifndef PALVEX_PLUGINS_UTC_TIME_HPP
#define PALVEX_PLUGINS_UTC_TIME_HPP

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace palvex_plugins {

constexpr std::uint32_t kNanosecondsPerSecond = 1'000'000'000;
constexpr std::uint32_t kMaxFractionDigits = 9;

// An instant counted from 1970-01-01T00:00:00 of the time line the document uses (UTC, or
// the unknown local zone of a file whose times carry none). nanoseconds < 1e9.
struct Instant {
  std::int64_t seconds = 0;
  std::uint32_t nanoseconds = 0;

  friend bool operator==(const Instant &, const Instant &) = default;
  friend auto operator<=>(const Instant &, const Instant &) = default;
};

// What an ISO 8601 text said: the instant (moved to UTC when the text had a zone), how
// many fraction digits it carried, and whether it had a zone ("Z" or an offset).
struct ParsedTime {
  Instant instant;
  std::uint32_t fractionDigits = 0;
  bool zoned = false;
};

// "YYYY-MM-DD[T| ]HH:MM:SS[.fraction][Z|z|+HH:MM|+HHMM|+HH|-...]", years 0001 to 9999, at most
// nine fraction digits (a comma works as the point too); leap seconds (":60") are refused.
// Nothing may follow. Fails on any other text.
std::optional<ParsedTime> ParseIsoTime(std::string_view text);

// Days from 1970-01-01 to a proleptic Gregorian date, and back.
std::int64_t DaysFromCivil(std::int64_t year, unsigned month, unsigned day);
void CivilFromDays(std::int64_t days, std::int64_t &year, unsigned &month, unsigned &day);

// An instant from a count of seconds / milliseconds since 1970-01-01T00:00:00 (negative
// counts allowed); nullopt outside years 0001-9999 or for a value that is not finite.
std::optional<Instant> InstantFromSeconds(double seconds);
std::optional<Instant> InstantFromMilliseconds(std::int64_t milliseconds);

// a + seconds (may be negative); nullopt outside years 0001-9999.
std::optional<Instant> AddSeconds(const Instant &a, double seconds);
// a - b in seconds.
double SecondsBetween(const Instant &a, const Instant &b);

// The text the library takes: "YYYY-MM-DDTHH:MM:SS" with `precision` fraction digits
// (0-9; digits below it are cut, not rounded) and "Z" when gmt, else "+00:00".
std::string FormatTime(const Instant &instant, std::uint32_t precision, bool gmt);

}  // namespace palvex_plugins

#endif  // PALVEX_PLUGINS_UTC_TIME_HPP
