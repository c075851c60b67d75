// Number texts of the MGJSON files the library writes. Every text reads back through the
// library's own reader as the same 16-significant-digit value:
// - JSON numbers (static values, ranges, counts): the shortest of fixed and scientific
//   with 16 significant digits, trailing zeros removed from the mantissa only; a text
//   with a negative exponent is written in plain decimal instead ("0.00001"), because the
//   reader refuses an exponent that starts with 0 and a widened sample cannot hold one.
// - Sample values: always plain decimal, so that widening to a pattern can pad them.
// A value whose 16-digit text would read back as infinite (next to the largest double)
// gets 17 digits. Texts never depend on the process's locale.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace PX_PLUGIN {

// The text of a number written as a JSON number. The value must be finite.
std::string JsonNumberText(double value);
// The same, written at out (returns the end): for the writer, which writes every number
// straight into its output. At most kLongestJsonNumberText bytes are written.
char *WriteJsonNumber(char *out, double value);
// "-0." and 323 zeros before 16 digits (the smallest doubles), with room.
inline constexpr std::size_t kLongestJsonNumberText = 352;

// Digits before and after the point of a number text (sign not counted).
struct NumberDigits {
  std::int32_t integer = 0;
  std::int32_t decimal = 0;
};

// The plain decimal text of a sample value (no exponent), with its digit counts. The
// value must be finite.
struct PlainNumber {
  std::string text;
  NumberDigits digits;
};
PlainNumber PlainNumberOf(double value);
std::string PlainNumberText(double value);

// The digit counts of a plain or JSON number text (a text with an exponent counts its
// mantissa).
NumberDigits DigitsOf(std::string_view text);

// A sample's value text widened to a pattern: zeros after the sign up to digitsInteger
// digits, a point and zeros up to digitsDecimal decimals, and "+" before a text without
// a sign when isSigned. Negative digit counts count as 0. Never shortens a text.
void WidenToPattern(std::string &text, bool isSigned, std::int32_t digitsInteger,
                    std::int32_t digitsDecimal);

// The same, written at out (returns the end): for the writer, which widens every sample
// straight into its output. At most WidenedSizeBound bytes are written.
char *WriteWidened(char *out, std::string_view text, bool isSigned, std::int32_t digitsInteger,
                   std::int32_t digitsDecimal);
std::size_t WidenedSizeBound(std::size_t textSize, std::int32_t digitsInteger, std::int32_t digitsDecimal);

}  // namespace PX_PLUGIN
