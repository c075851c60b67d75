#include "telemetry_clock.hpp"

#include <algorithm>

namespace gpmf {

namespace {
constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::int64_t kGpsFirstYear = 2000;
}  // namespace

std::int64_t TicksToNanoseconds(std::uint64_t ticks, std::uint32_t ticksPerSecond) {
  // Bounded far above any recording (about 290 years) so the products below stay in range.
  constexpr std::uint64_t kMaxSeconds = 9'000'000'000;
  const std::uint64_t whole = std::min<std::uint64_t>(ticks / ticksPerSecond, kMaxSeconds);
  const std::uint64_t part = (ticks % ticksPerSecond) * kNanosecondsPerSecond / ticksPerSecond;
  return static_cast<std::int64_t>(whole * kNanosecondsPerSecond + part);
}

std::optional<std::int64_t> ParseGpsTime(std::string_view text) {
  if (text.size() != 16 || text[12] != '.') return std::nullopt;
  int digits[15];
  for (std::size_t i = 0, d = 0; i < text.size(); ++i) {
    if (i == 12) continue;
    if (text[i] < '0' || text[i] > '9') return std::nullopt;
    digits[d++] = text[i] - '0';
  }
  const auto pair = [&](int at) { return digits[at] * 10 + digits[at + 1]; };
  const int month = pair(2), day = pair(4), hour = pair(6), minute = pair(8), second = pair(10);
  const int millisecond = digits[12] * 100 + digits[13] * 10 + digits[14];
  if (month < 1 || month > 12 || day < 1 || day > 31 || hour > 23 || minute > 59 || second > 59) return std::nullopt;
  const std::int64_t days =
      palvex_plugins::DaysFromCivil(kGpsFirstYear + pair(0), static_cast<unsigned>(month), static_cast<unsigned>(day));
  const std::int64_t seconds = days * kSecondsPerDay + hour * 3600 + minute * 60 + second;
  return seconds * kNanosecondsPerSecond + std::int64_t{millisecond} * 1'000'000;
}

std::optional<std::int64_t> MedianOffset(std::vector<std::int64_t> offsets) {
  if (offsets.empty()) return std::nullopt;
  const auto middle = offsets.begin() + static_cast<std::ptrdiff_t>((offsets.size() - 1) / 2);
  std::nth_element(offsets.begin(), middle, offsets.end());
  return *middle;
}

palvex_plugins::Instant InstantAt(std::int64_t nanoseconds) {
  if (nanoseconds < 0) return {};
  return {nanoseconds / kNanosecondsPerSecond, static_cast<std::uint32_t>(nanoseconds % kNanosecondsPerSecond)};
}

}  // namespace gpmf
