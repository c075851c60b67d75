#include "plugin_model/number_text.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

namespace PX_PLUGIN {
namespace {

constexpr int kSignificantDigits = 16;
// For values whose 16-digit text would round past the largest double.
constexpr int kSignificantDigitsNearLimit = 17;
// Enough for "-d.<16 digits>e-308" and for any general form.
constexpr std::size_t kScratchBytes = 64;

// A plain text has the JSON text's bound: both are longest for the smallest doubles.
constexpr std::size_t kLongestPlainText = kLongestJsonNumberText;

using Scratch = std::array<char, kScratchBytes>;

std::string_view Print(Scratch &scratch, double value, std::chars_format format, int precision) {
  const auto result = std::to_chars(scratch.data(), scratch.data() + scratch.size(), value, format, precision);
  return {scratch.data(), static_cast<std::size_t>(result.ptr - scratch.data())};
}

// The two largest doubles round to 1.797693134862316e+308 at 16 digits, which is past
// the largest double and would read back as infinite.
constexpr double kSmallestOverflowingAt16Digits = 1.7976931348623155e308;

int SignificantDigitsFor(double value) {
  return std::fabs(value) >= kSmallestOverflowingAt16Digits ? kSignificantDigitsNearLimit
                                                             : kSignificantDigits;
}

// The value in scientific form with its significant digits.
std::string_view ScientificText(Scratch &scratch, double value) {
  return Print(scratch, value, std::chars_format::scientific, SignificantDigitsFor(value) - 1);
}

// Plain decimal from a scientific text "-d.ddde+XX": the same significant digits, the
// trailing zeros of the fraction dropped, written at out (at most kLongestPlainText bytes;
// returns the end). This runs for every sample.
char *WritePlainFromScientific(char *out, std::string_view scientific, NumberDigits &counts) {
  const bool negative = scientific.front() == '-';
  if (negative) scientific.remove_prefix(1);
  const std::size_t e = scientific.find('e');
  std::array<char, kSignificantDigitsNearLimit> digits;
  std::size_t digitCount = 0;
  for (const char c : scientific.substr(0, e)) {
    if (c != '.') digits[digitCount++] = c;
  }
  while (digitCount > 1 && digits[digitCount - 1] == '0') --digitCount;
  int exponent = 0;
  const std::string_view exponentText = scientific.substr(e + 1);
  const std::size_t skip = exponentText.front() == '+' ? 1 : 0;
  std::from_chars(exponentText.data() + skip, exponentText.data() + exponentText.size(), exponent);

  if (negative) *out++ = '-';
  if (exponent < 0) {
    *out++ = '0';
    *out++ = '.';
    out = std::fill_n(out, -exponent - 1, '0');
    out = std::copy_n(digits.data(), digitCount, out);
    counts = {1, static_cast<std::int32_t>(digitCount) - exponent - 1};
  } else {
    const auto integerDigits = static_cast<std::size_t>(exponent) + 1;
    if (digitCount <= integerDigits) {
      out = std::copy_n(digits.data(), digitCount, out);
      out = std::fill_n(out, integerDigits - digitCount, '0');
      counts = {static_cast<std::int32_t>(integerDigits), 0};
    } else {
      out = std::copy_n(digits.data(), integerDigits, out);
      *out++ = '.';
      out = std::copy_n(digits.data() + integerDigits, digitCount - integerDigits, out);
      counts = {static_cast<std::int32_t>(integerDigits), static_cast<std::int32_t>(digitCount - integerDigits)};
    }
  }
  return out;
}

PlainNumber PlainFromScientific(std::string_view scientific) {
  std::array<char, kLongestPlainText> text;
  NumberDigits counts;
  char *const end = WritePlainFromScientific(text.data(), scientific, counts);
  return {std::string(text.data(), end), counts};
}

// The shortest scientific text that reads back as exactly this value, when it needs at most
// 16 significant digits: 8.54 is then "8.54e+00", where 16 digits would say
// 8.539999999999999. Values that need 17 keep the 16-digit rounding.
std::optional<std::string_view> ShortestScientific(Scratch &scratch, double value) {
  const auto result = std::to_chars(scratch.data(), scratch.data() + scratch.size(), value,
                                    std::chars_format::scientific);
  const std::string_view text(scratch.data(), static_cast<std::size_t>(result.ptr - scratch.data()));
  int digits = 0;
  for (const char c : text.substr(0, text.find('e'))) digits += c >= '0' && c <= '9' ? 1 : 0;
  if (digits > kSignificantDigits) return std::nullopt;
  return text;
}

// The decimal exponent of a scientific text "d.ddde+XX".
int ExponentOf(std::string_view scientific) {
  std::string_view exponent = scientific.substr(scientific.find('e') + 1);
  if (exponent.front() == '+') exponent.remove_prefix(1);
  int value = 0;
  std::from_chars(exponent.data(), exponent.data() + exponent.size(), value);
  return value;
}

// Most sample values have a few decimals (a reading of 12.25, a coordinate of 7
// decimals). For them the shortest exact digits come from one integer n with
// n / 10^k == value for the least k, without the general conversion and without
// reparsing its scientific text. While value × 10^k stays below 2^50, every decimal that
// reads back as this double lies, times 10^k, within 1/8 of value × 10^k, so at most one
// integer can qualify at each k, rounding the product finds it, and the least k that has
// one gives the shortest digits (at most 16 of them), which are then exactly the general
// conversion's.
constexpr int kQuickDecimals = 9;
constexpr double kQuickScaledLimit = 0x1p50;
constexpr double kExactPowersOfTen[kQuickDecimals + 1] = {1e0, 1e1, 1e2, 1e3, 1e4,
                                                           1e5, 1e6, 1e7, 1e8, 1e9};

struct ScaledDecimal {
  std::uint64_t digits = 0;  // the value × 10^decimals
  int decimals = 0;
};

std::optional<ScaledDecimal> QuickDecimal(double magnitude) {
  for (int k = 0; k <= kQuickDecimals; ++k) {
    const double scaled = magnitude * kExactPowersOfTen[k];
    if (!(scaled < kQuickScaledLimit)) return std::nullopt;
    // Signed: below 2^50 it converts both ways in one instruction, unsigned does not.
    const auto nearest = static_cast<std::int64_t>(scaled + 0.5);
    // Both are exact doubles, so the quotient is the double the decimal text reads as.
    if (static_cast<double>(nearest) / kExactPowersOfTen[k] == magnitude) {
      return ScaledDecimal{static_cast<std::uint64_t>(nearest), k};
    }
  }
  return std::nullopt;
}

// Longest text QuickDecimal's result makes: a sign, 16 digits and a point.
constexpr std::size_t kLongestQuickText = 18;

// The text is written once, from its last digit to its sign, ending at end; returns its
// first byte.
char *ScaledTextBefore(char *const end, bool negative, ScaledDecimal number, NumberDigits &counts) {
  char *first = end;
  for (int i = 0; i < number.decimals; ++i) {
    *--first = static_cast<char>('0' + number.digits % 10);
    number.digits /= 10;
  }
  if (number.decimals != 0) *--first = '.';
  char *const point = first;
  do {
    *--first = static_cast<char>('0' + number.digits % 10);
    number.digits /= 10;
  } while (number.digits != 0);
  counts = {static_cast<std::int32_t>(point - first), number.decimals};
  if (negative) *--first = '-';
  return first;
}

PlainNumber PlainFromScaled(bool negative, ScaledDecimal number) {
  std::array<char, kLongestQuickText> text;
  char *const end = text.data() + text.size();
  NumberDigits counts;
  char *const first = ScaledTextBefore(end, negative, number, counts);
  return {std::string(first, end), counts};
}

// The range a converter leaves unset is +-the largest double, the one value whose text
// needs the slowest route; it is written for every number node.
constexpr std::string_view kLargestDoubleText = "1.7976931348623157e+308";

char *Put(char *out, std::string_view text) { return std::copy(text.begin(), text.end(), out); }

}  // namespace

char *WriteJsonNumber(char *out, double value) {
  if (std::fabs(value) == std::numeric_limits<double>::max()) {
    if (value < 0) *out++ = '-';
    return Put(out, kLargestDoubleText);
  }
  // Below 2^50 the exponent is under 16, so the JSON text is the plain text.
  if (const std::optional<ScaledDecimal> quick = QuickDecimal(std::fabs(value))) {
    std::array<char, kLongestQuickText> text;
    char *const end = text.data() + text.size();
    NumberDigits counts;
    return Put(out, {ScaledTextBefore(end, std::signbit(value), *quick, counts), end});
  }
  Scratch scratch;
  NumberDigits counts;
  if (const std::optional<std::string_view> shortest = ShortestScientific(scratch, value)) {
    if (ExponentOf(*shortest) >= kSignificantDigits) return Put(out, *shortest);
    return WritePlainFromScientific(out, *shortest, counts);
  }
  const std::string_view general =
      Print(scratch, value, std::chars_format::general, SignificantDigitsFor(value));
  if (general.find("e-") != std::string_view::npos) {
    Scratch scientific;
    return WritePlainFromScientific(out, ScientificText(scientific, value), counts);
  }
  const std::size_t point = general.find('.');
  if (point == std::string_view::npos) return Put(out, general);
  // Trailing zeros go from the mantissa only: "1.5e+20" must not lose the 0 of its exponent.
  const std::size_t mantissaEnd = std::min(general.find('e'), general.size());
  std::size_t keep = mantissaEnd;
  while (keep > point + 1 && general[keep - 1] == '0') --keep;
  if (keep == point + 1) keep = point;
  out = Put(out, general.substr(0, keep));
  return Put(out, general.substr(mantissaEnd));
}

std::string JsonNumberText(double value) {
  std::array<char, kLongestJsonNumberText> text;
  return std::string(text.data(), WriteJsonNumber(text.data(), value));
}

PlainNumber PlainNumberOf(double value) {
  if (const std::optional<ScaledDecimal> quick = QuickDecimal(std::fabs(value))) {
    return PlainFromScaled(std::signbit(value), *quick);
  }
  Scratch scratch;
  if (const std::optional<std::string_view> shortest = ShortestScientific(scratch, value)) {
    return PlainFromScientific(*shortest);
  }
  return PlainFromScientific(ScientificText(scratch, value));
}

std::string PlainNumberText(double value) { return PlainNumberOf(value).text; }

NumberDigits DigitsOf(std::string_view text) {
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) text.remove_prefix(1);
  text = text.substr(0, text.find_first_of("eE"));
  const std::size_t point = text.find('.');
  if (point == std::string_view::npos) return {static_cast<std::int32_t>(text.size()), 0};
  return {static_cast<std::int32_t>(point), static_cast<std::int32_t>(text.size() - point - 1)};
}

namespace {

std::size_t AtLeastZero(std::int32_t count) { return static_cast<std::size_t>(std::max(count, 0)); }

}  // namespace

std::size_t WidenedSizeBound(std::size_t textSize, std::int32_t digitsInteger, std::int32_t digitsDecimal) {
  constexpr std::size_t kSignAndPoint = 2;
  return textSize + AtLeastZero(digitsInteger) + AtLeastZero(digitsDecimal) + kSignAndPoint;
}

char *WriteWidened(char *out, std::string_view text, bool isSigned, std::int32_t digitsInteger,
                   std::int32_t digitsDecimal) {
  const bool negative = !text.empty() && text.front() == '-';
  const std::string_view body = text.substr(negative ? 1 : 0);
  // A loop, not find: the texts are a few bytes long and this runs for every sample.
  std::size_t point = 0;
  while (point < body.size() && body[point] != '.') ++point;
  const bool hasPoint = point < body.size();
  const std::size_t decimal = hasPoint ? body.size() - point - 1 : 0;
  const std::size_t wantInteger = AtLeastZero(digitsInteger);
  const std::size_t wantDecimal = AtLeastZero(digitsDecimal);
  if (negative) {
    *out++ = '-';
  } else if (isSigned) {
    *out++ = '+';
  }
  if (wantInteger > point) out = std::fill_n(out, wantInteger - point, '0');
  out = std::copy(body.begin(), body.end(), out);
  if (!hasPoint && wantDecimal != 0) *out++ = '.';
  if (wantDecimal > decimal) out = std::fill_n(out, wantDecimal - decimal, '0');
  return out;
}

void WidenToPattern(std::string &text, bool isSigned, std::int32_t digitsInteger,
                    std::int32_t digitsDecimal) {
  std::string widened(WidenedSizeBound(text.size(), digitsInteger, digitsDecimal), '\0');
  char *const end = WriteWidened(widened.data(), text, isSigned, digitsInteger, digitsDecimal);
  widened.resize(static_cast<std::size_t>(end - widened.data()));
  text = std::move(widened);
}

}  // namespace PX_PLUGIN
