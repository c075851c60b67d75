#include "mgjson_read/sample_timing.hpp"

#include <chrono>

namespace ns_sensor {
namespace {

// Field positions of the two forms.
constexpr std::size_t kSmpteMinutesAt = 3;
constexpr std::size_t kSmpteSecondsAt = 6;
constexpr std::size_t kSmpteFramesAt = 9;
constexpr std::size_t kUtcMonthAt = 5;
constexpr std::size_t kUtcDayAt = 8;
constexpr std::size_t kUtcHourAt = 11;
constexpr std::size_t kUtcMinuteAt = 14;
constexpr std::size_t kUtcSecondAt = 17;
constexpr std::size_t kUtcFractionAt = 20;
constexpr std::size_t kUtcOffsetBytes = 5;  // HH:MM after the sign

constexpr int kMinutesPerHour = 60;
constexpr int kSecondsPerMinute = 60;
constexpr int kHoursPerDay = 24;
constexpr int kLastSecond = 60;  // a leap second

// The decimal number in `width` bytes at `at`; false unless every byte is a digit.
bool ReadDigits(std::string_view text, std::size_t at, std::size_t width, std::uint32_t &value) {
  if (at + width > text.size()) return false;
  value = 0;
  for (std::size_t i = at; i < at + width; ++i) {
    const unsigned digit = static_cast<unsigned char>(text[i]) - static_cast<unsigned>('0');
    if (digit > 9) return false;
    value = value * 10 + digit;
  }
  return true;
}

bool IsReadableTimecode(const SampleTiming &timing, std::string_view text) {
  std::uint32_t hours = 0;
  std::uint32_t minutes = 0;
  std::uint32_t seconds = 0;
  std::uint32_t frames = 0;
  return ReadDigits(text, 0, 2, hours) && ReadDigits(text, kSmpteMinutesAt, 2, minutes) &&
         ReadDigits(text, kSmpteSecondsAt, 2, seconds) &&
         ReadDigits(text, kSmpteFramesAt, text.size() - kSmpteFramesAt, frames) &&
         minutes < kMinutesPerHour && seconds < kSecondsPerMinute &&
         frames < NominalFramesPerSecond(timing.rate);
}

bool IsReadableUtc(const SampleTiming &timing, std::string_view text) {
  std::uint32_t year = 0;
  std::uint32_t month = 0;
  std::uint32_t day = 0;
  std::uint32_t hour = 0;
  std::uint32_t minute = 0;
  std::uint32_t second = 0;
  std::uint32_t unused = 0;
  const bool fields = ReadDigits(text, 0, 4, year) && ReadDigits(text, kUtcMonthAt, 2, month) &&
                      ReadDigits(text, kUtcDayAt, 2, day) && ReadDigits(text, kUtcHourAt, 2, hour) &&
                      ReadDigits(text, kUtcMinuteAt, 2, minute) &&
                      ReadDigits(text, kUtcSecondAt, 2, second);
  if (!fields || hour >= kHoursPerDay || minute >= kMinutesPerHour || second > kLastSecond) return false;
  if (month < 1 || month > 12 || day < 1 || day > 31) return false;
  const std::chrono::year_month_day date{std::chrono::year{static_cast<int>(year)},
                                         std::chrono::month{month}, std::chrono::day{day}};
  if (!date.ok()) return false;
  // Without a fraction there is no point either: the zone follows the seconds.
  const std::size_t zoneAt = timing.precision == 0 ? kUtcFractionAt - 1 : kUtcFractionAt + timing.precision;
  for (std::size_t i = kUtcFractionAt; i < zoneAt; ++i) {
    if (!ReadDigits(text, i, 1, unused)) return false;
  }
  if (zoneAt >= text.size()) return false;
  const char zone = text[zoneAt];
  if (timing.utcIsGmt) return zone == 'Z' && text.size() == zoneAt + 1;
  std::uint32_t offsetHours = 0;
  std::uint32_t offsetMinutes = 0;
  return (zone == '+' || zone == '-') && text.size() == zoneAt + 1 + kUtcOffsetBytes &&
         ReadDigits(text, zoneAt + 1, 2, offsetHours) && ReadDigits(text, zoneAt + 4, 2, offsetMinutes) &&
         offsetHours < kHoursPerDay && offsetMinutes < kMinutesPerHour;
}

}  // namespace

bool IsReadableTime(const SampleTiming &timing, std::string_view text) {
  if (!timing.known || text.size() != timing.textLength) return false;
  return timing.timecode ? IsReadableTimecode(timing, text) : IsReadableUtc(timing, text);
}

int CompareTimes(const SampleTiming &timing, std::string_view left, std::string_view right) {
  return timing.timecode ? CompareSMPTETime(left, right) : CompareUTCTime(left, right, timing.precision);
}

}  // namespace ns_sensor
