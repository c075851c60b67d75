#include "plugin_model/value_statistics.hpp"

#include <algorithm>
#include <cmath>
#include <limits>


namespace PX_PLUGIN {
namespace {

constexpr std::uint64_t kDecimalBase = 10;

std::uint32_t ClampToU32(std::uint64_t value) {
  return static_cast<std::uint32_t>(std::min<std::uint64_t>(value, std::numeric_limits<std::uint32_t>::max()));
}

}  // namespace

std::uint32_t DecimalDigitCount(std::uint64_t value) {
  std::uint32_t digits = 1;
  while (value >= kDecimalBase) {
    value /= kDecimalBase;
    ++digits;
  }
  return digits;
}

void NumberStatistics::Add(double value, NumberDigits digits) {
  // A negative zero prints with its sign, so it counts as negative like any "-" text.
  pattern_.isSigned = pattern_.isSigned || std::signbit(value);
  pattern_.digitsInteger = std::max(pattern_.digitsInteger, digits.integer);
  pattern_.digitsDecimal = std::max(pattern_.digitsDecimal, digits.decimal);
  extent_ = count_ == 0 ? MinMax{value, value}
                        : MinMax{std::min(extent_.min, value), std::max(extent_.max, value)};
  ++count_;
}

NumberPattern NumberStatistics::Widen(const NumberPattern &least) const {
  return {least.isSigned || pattern_.isSigned, std::max(least.digitsInteger, pattern_.digitsInteger),
          std::max(least.digitsDecimal, pattern_.digitsDecimal)};
}

void TextStatistics::Add(std::uint64_t length) { longest_ = std::max(longest_, length); }

PaddedStringProperties TextStatistics::Widen(const PaddedStringProperties &least) const {
  const std::uint32_t maxLength = std::max(least.maxLength, ClampToU32(longest_));
  return {maxLength, std::max(least.maxDigitsInLength, DecimalDigitCount(longest_)), least.eventMarker};
}

}  // namespace PX_PLUGIN
