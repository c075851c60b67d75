#include "csv_values.hpp"

#include <array>
#include <cmath>

#include "plain_number.hpp"

namespace timed_csv {
namespace {

using palvex_plugins::Instant;
using palvex_plugins::kNanosecondsPerSecond;

// Kept as data: a column named one of these (any case) holds the times of its rows.
constexpr std::array<std::string_view, 13> kTimeColumnNames = {
    "time", "timestamp", "date", "datetime", "date_time", "utc", "t", "seconds", "elapsed",
    "time_utc", "utc_time", "gps_time", "unix_time"};

// Years 0001 to 9999 as seconds since 1970.
constexpr std::int64_t kFirstSecond = -62'135'596'800;
constexpr std::int64_t kLastSecond = 253'402'300'799;
constexpr std::int64_t kMillisecondsPerSecond = 1000;
constexpr std::uint32_t kNanosecondsPerMillisecond = 1'000'000;
constexpr std::uint32_t kMillisecondDigits = 3;
// Beyond this many integer digits a count is out of range anyway; it keeps int64 safe.
constexpr std::size_t kMaxIntegerDigits = 16;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

std::string_view Trim(std::string_view text, std::string_view junk) {
  const std::size_t first = text.find_first_not_of(junk);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(junk) - first + 1);
}

// "[+-]digits[.digits]", read exactly (no detour through binary floating point).
struct Decimal {
  bool negative = false;
  std::int64_t integer = 0;
  std::uint32_t nanos = 0;  // the fraction as billionths, digits past nine cut
  std::uint32_t fractionDigits = 0;
  bool hasPoint = false;
};

std::optional<Decimal> ReadDecimal(std::string_view text) {
  Decimal value;
  std::size_t at = 0;
  if (at < text.size() && (text[at] == '+' || text[at] == '-')) value.negative = text[at++] == '-';
  const std::size_t digitsFrom = at;
  for (; at < text.size() && IsDigit(text[at]); ++at) {
    if (at - digitsFrom >= kMaxIntegerDigits) return std::nullopt;
    value.integer = value.integer * 10 + (text[at] - '0');
  }
  std::size_t digits = at - digitsFrom;
  if (at < text.size() && text[at] == '.') {
    value.hasPoint = true;
    std::uint32_t scale = kNanosecondsPerSecond / 10;
    for (++at; at < text.size() && IsDigit(text[at]); ++at, ++digits) {
      value.nanos += static_cast<std::uint32_t>(text[at] - '0') * scale;
      scale /= 10;
      ++value.fractionDigits;
    }
  }
  if (digits == 0 || at != text.size()) return std::nullopt;
  return value;
}

// seconds + nanos (both of one sign) as an instant, inside the years a time text can say.
std::optional<Instant> MakeInstant(bool negative, std::int64_t seconds, std::uint32_t nanos) {
  Instant instant{negative ? -seconds : seconds, 0};
  if (nanos > 0) {
    if (negative) {
      instant.seconds -= 1;
      instant.nanoseconds = kNanosecondsPerSecond - nanos;
    } else {
      instant.nanoseconds = nanos;
    }
  }
  if (instant.seconds < kFirstSecond || instant.seconds > kLastSecond) return std::nullopt;
  return instant;
}

std::optional<CellTime> ReadClock(std::string_view text) {
  const std::size_t firstColon = text.find(':');
  if (firstColon == std::string_view::npos || firstColon == 0 || firstColon > 6) return std::nullopt;
  if (text.size() < firstColon + 6 || text[firstColon + 3] != ':') return std::nullopt;
  std::int64_t hours = 0;
  for (std::size_t i = 0; i < firstColon; ++i) {
    if (!IsDigit(text[i])) return std::nullopt;
    hours = hours * 10 + (text[i] - '0');
  }
  const auto twoDigits = [&](std::size_t at) -> int {
    if (!IsDigit(text[at]) || !IsDigit(text[at + 1])) return -1;
    return (text[at] - '0') * 10 + (text[at + 1] - '0');
  };
  const int minutes = twoDigits(firstColon + 1);
  if (minutes < 0 || minutes > 59) return std::nullopt;
  // Seconds as two digits, then an optional fraction: "5:07:09.25".
  const std::string_view secondsText = text.substr(firstColon + 4);
  if (!IsDigit(secondsText[0]) || !IsDigit(secondsText[1]) || (secondsText.size() > 2 && secondsText[2] != '.')) {
    return std::nullopt;
  }
  const std::optional<Decimal> seconds = ReadDecimal(secondsText);
  if (!seconds || seconds->integer > 59) return std::nullopt;
  const std::optional<Instant> instant =
      MakeInstant(false, hours * 3600 + minutes * 60 + seconds->integer, seconds->nanos);
  if (!instant) return std::nullopt;
  return CellTime{*instant, seconds->fractionDigits, true};
}

}  // namespace

bool IsTimeColumnName(std::string_view name) {
  name = Trim(name, " \t\"'");
  for (const std::string_view known : kTimeColumnNames) {
    if (known.size() != name.size()) continue;
    bool same = true;
    for (std::size_t i = 0; i < name.size() && same; ++i) same = Lower(name[i]) == known[i];
    if (same) return true;
  }
  return false;
}

std::optional<TimeForm> RecogniseTimeForm(std::string_view cell) {
  if (palvex_plugins::ParseIsoTime(cell)) return TimeForm::kIso;
  if (ReadClock(cell)) return TimeForm::kClock;
  const std::optional<Decimal> number = ReadDecimal(cell);
  if (!number) return std::nullopt;
  const TimeForm form = !number->hasPoint && static_cast<double>(number->integer) >= kEpochMillisecondsFrom
                            ? TimeForm::kMilliseconds
                            : TimeForm::kSeconds;
  if (!ReadTime(form, cell)) return std::nullopt;
  return form;
}

std::optional<CellTime> ReadTime(TimeForm form, std::string_view cell) {
  switch (form) {
    case TimeForm::kIso: {
      const auto parsed = palvex_plugins::ParseIsoTime(cell);
      if (!parsed) return std::nullopt;
      return CellTime{parsed->instant, parsed->fractionDigits, parsed->zoned};
    }
    case TimeForm::kClock:
      return ReadClock(cell);
    case TimeForm::kSeconds: {
      const std::optional<Decimal> number = ReadDecimal(cell);
      if (!number) return std::nullopt;
      const auto instant = MakeInstant(number->negative, number->integer, number->nanos);
      if (!instant) return std::nullopt;
      return CellTime{*instant, number->fractionDigits, true};
    }
    case TimeForm::kMilliseconds: {
      const std::optional<Decimal> number = ReadDecimal(cell);
      if (!number) return std::nullopt;
      // The fraction of a millisecond moves three places down.
      const std::uint32_t nanos = static_cast<std::uint32_t>(number->integer % kMillisecondsPerSecond) *
                                      kNanosecondsPerMillisecond +
                                  number->nanos / static_cast<std::uint32_t>(kMillisecondsPerSecond);
      const auto instant = MakeInstant(number->negative, number->integer / kMillisecondsPerSecond, nanos);
      if (!instant) return std::nullopt;
      return CellTime{*instant, number->fractionDigits + kMillisecondDigits, true};
    }
  }
  return std::nullopt;
}

std::optional<double> ReadNumber(std::string_view cell) { return palvex_plugins::ReadFiniteNumber(cell); }

}  // namespace timed_csv
