#include "mgjson_read/sample_seconds.hpp"

#include <bit>
#include <chrono>
#include <cstring>
#include <limits>

namespace ns_sensor {
namespace {

constexpr std::uint64_t kMax32 = std::numeric_limits<std::uint32_t>::max();
constexpr std::uint64_t kMax64 = std::numeric_limits<std::uint64_t>::max();
constexpr std::uint64_t kPowersOfTen[] = {1,         10,         100,       1000,
                                          10000,     100000,     1000000,   10000000,
                                          100000000, 1000000000};
constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::int64_t kSecondsPerHour = 3600;
constexpr std::int64_t kSecondsPerMinute = 60;

// Where the numbers of the two forms stand: {offset, digits}.
struct Field {
  std::size_t at;
  std::size_t digits;
};
constexpr Field kSmpteFields[] = {{0, 2}, {3, 2}, {6, 2}};
constexpr std::size_t kSmpteFramesAt = 9;
constexpr Field kUtcFields[] = {{0, 4}, {5, 2}, {8, 2}, {11, 2}, {14, 2}, {17, 2}};
constexpr std::size_t kUtcFractionAt = 20;

// The digits are known to be digits.
std::uint64_t Number(std::string_view text, std::size_t at, std::size_t digits) {
  std::uint64_t value = 0;
  for (std::size_t i = at; i < at + digits; ++i) value = value * 10 + static_cast<std::uint64_t>(text[i] - '0');
  return value;
}

std::int64_t WholeSeconds(std::int64_t year, std::int64_t month, std::int64_t day, std::int64_t hour,
                          std::int64_t minute, std::int64_t second) {
  const std::chrono::sys_days date{std::chrono::year{static_cast<int>(year)} /
                                   std::chrono::month{static_cast<unsigned>(month)} /
                                   std::chrono::day{static_cast<unsigned>(day)}};
  return std::int64_t{date.time_since_epoch().count()} * kSecondsPerDay + hour * kSecondsPerHour +
         minute * kSecondsPerMinute + second;
}

// gcd(n, 10^digits) for n > 0: the twos and fives the two share.
std::uint64_t CommonDivisorWithPowerOfTen(std::uint64_t n, unsigned digits) {
  const unsigned twos = std::min<unsigned>(static_cast<unsigned>(std::countr_zero(n)), digits);
  unsigned fives = 0;
  while (fives < digits && n % 5 == 0) {
    n /= 5;
    ++fives;
  }
  std::uint64_t divisor = std::uint64_t{1} << twos;
  for (unsigned i = 0; i < fives; ++i) divisor *= 5;
  return divisor;
}

// seconds + fraction / 10^precision as a reduced 32-bit fraction, dropping fraction digits
// from the end until it fits; 0/0 when even whole seconds do not.
RationalTime SpanAsFraction(std::uint64_t seconds, std::uint64_t fraction, unsigned precision) {
  for (unsigned digits = precision;; --digits) {
    const std::uint64_t units = kPowersOfTen[digits];
    const std::uint64_t kept = fraction / kPowersOfTen[precision - digits];
    if (seconds <= (kMax64 - kept) / units) {
      const std::uint64_t numerator = seconds * units + kept;
      if (numerator == 0) return {0, 1};
      const std::uint64_t divisor = CommonDivisorWithPowerOfTen(numerator, digits);
      if (numerator / divisor <= kMax32) {
        return {static_cast<std::uint32_t>(numerator / divisor), static_cast<std::uint32_t>(units / divisor)};
      }
    }
    if (digits == 0) return {0, 0};
  }
}

int CompareFields(std::string_view left, std::string_view right, std::size_t at, std::size_t digits) {
  return std::memcmp(left.data() + at, right.data() + at, digits);
}

}  // namespace

SampleSeconds::SampleSeconds(const SampleTiming &timing, const TimeAxis &axis) : timing_(timing) {
  if (timing.timecode) {
    framesPerSecond_ = NominalFramesPerSecond(timing.rate);
    return;
  }
  const UtcRecord &origin = axis.origin;
  originSeconds_ = WholeSeconds(origin.year, origin.month, origin.day, origin.hour, origin.minute, origin.second);
  originFraction_ = origin.fraction;
}

RationalTime SampleSeconds::Of(std::string_view readableTime) const {
  return timing_.timecode ? OfTimecode(readableTime) : OfUtc(readableTime);
}

RationalTime SampleSeconds::OfTimecode(std::string_view text) const {
  const std::uint64_t fps = framesPerSecond_;
  const std::uint64_t labels =
      ((Number(text, 0, 2) * 60 + Number(text, 3, 2)) * 60 + Number(text, 6, 2)) * fps +
      Number(text, kSmpteFramesAt, text.size() - kSmpteFramesAt);
  std::uint64_t frame = labels;
  if (timing_.rate.dropFrame) {
    // Two labels (four at 59.94) are skipped at the start of every minute but each tenth.
    const std::uint64_t factor = fps == 60 ? 2 : 1;
    const std::uint64_t tenMinutes = 18000 * factor;
    const std::uint64_t minute = 1800 * factor;
    frame -= ((labels % tenMinutes) / minute + (labels / tenMinutes) * 9) * factor * 2;
  }
  if (frame > kMax32) return {0, 0};
  RationalTime time;
  (void)MultiplyRational({static_cast<std::uint32_t>(frame), 1}, {timing_.rate.scale, timing_.rate.value}, time);
  return time;
}

RationalTime SampleSeconds::OfUtc(std::string_view text) const {
  const unsigned precision = timing_.precision;
  std::int64_t seconds = WholeSeconds(
      static_cast<std::int64_t>(Number(text, 0, 4)), static_cast<std::int64_t>(Number(text, 5, 2)),
      static_cast<std::int64_t>(Number(text, 8, 2)), static_cast<std::int64_t>(Number(text, 11, 2)),
      static_cast<std::int64_t>(Number(text, 14, 2)), static_cast<std::int64_t>(Number(text, 17, 2))) -
                         originSeconds_;
  std::int64_t fraction = static_cast<std::int64_t>(precision == 0 ? 0 : Number(text, kUtcFractionAt, precision)) -
                          static_cast<std::int64_t>(originFraction_);
  if (fraction < 0) {
    fraction += static_cast<std::int64_t>(kPowersOfTen[precision]);
    --seconds;
  }
  if (seconds < 0) return {0, 0};
  return SpanAsFraction(static_cast<std::uint64_t>(seconds), static_cast<std::uint64_t>(fraction), precision);
}

int CompareReadableTimes(const SampleTiming &timing, std::string_view left, std::string_view right) {
  if (timing.timecode) {
    for (const Field &field : kSmpteFields) {
      if (const int order = CompareFields(left, right, field.at, field.digits)) return order;
    }
    // Both texts have the file's length, so their frame fields have as many digits.
    return CompareFields(left, right, kSmpteFramesAt, left.size() - kSmpteFramesAt);
  }
  for (const Field &field : kUtcFields) {
    if (const int order = CompareFields(left, right, field.at, field.digits)) return order;
  }
  return CompareFields(left, right, kUtcFractionAt, timing.precision);
}

}  // namespace ns_sensor
