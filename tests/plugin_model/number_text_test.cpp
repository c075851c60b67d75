// Number texts: what the file holds for a number, and that it reads back as the number's
// 16-significant-digit value.
#include <gtest/gtest.h>

#include <charconv>
#include <cfloat>
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "plugin_model/number_text.hpp"

namespace PX_PLUGIN {
namespace {

struct NumberCase {
  double value;
  const char *json;
  const char *plain;
};

TEST(NumberText, JsonAndPlainTexts) {
  const NumberCase cases[] = {
      {2.5, "2.5", "2.5"},
      {3.0, "3", "3"},
      {0.1, "0.1", "0.1"},
      {-0.0, "-0", "-0"},
      {1e20, "1e+20", "100000000000000000000"},
      {1.5e20, "1.5e+20", "150000000000000000000"},
      {1e16, "1e+16", "10000000000000000"},
      {123456789012345678.0, "1.234567890123457e+17", "123456789012345700"},
      {0.0001, "0.0001", "0.0001"},
      {0.00001, "0.00001", "0.00001"},
      {-1.4e-14, "-0.000000000000014", "-0.000000000000014"},
      {1e-15, "0.000000000000001", "0.000000000000001"},
      {123.456, "123.456", "123.456"},
      {1.0 / 3.0, "0.3333333333333333", "0.3333333333333333"},
      // The shortest text that reads back exactly, where 16 digits would show the binary error.
      {8.54, "8.54", "8.54"},
      {-1234.56, "-1234.56", "-1234.56"},
      // A value that needs 17 digits keeps the 16-digit rounding.
      {0.1 + 0.2, "0.3", "0.3"},
      {DBL_MAX, "1.7976931348623157e+308", nullptr},
      {-DBL_MAX, "-1.7976931348623157e+308", nullptr},
  };
  for (const NumberCase &c : cases) {
    EXPECT_EQ(JsonNumberText(c.value), c.json) << c.value;
    if (c.plain != nullptr) {
      EXPECT_EQ(PlainNumberText(c.value), c.plain) << c.value;
    }
  }
}

// The value a text stands for, read without the process's locale.
double Read(const std::string &text) {
  double value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  EXPECT_EQ(result.ec, std::errc()) << text;
  EXPECT_EQ(result.ptr, text.data() + text.size()) << text;
  return value;
}

double SixteenDigits(double value) {
  char text[64];
  const auto result = std::to_chars(text, text + sizeof text, value, std::chars_format::scientific, 15);
  return Read(std::string(text, result.ptr));
}

TEST(NumberText, EveryTextReadsBackAsTheSixteenDigitValue) {
  std::mt19937_64 random(20240611);
  std::uniform_int_distribution<std::uint64_t> bits;
  for (int i = 0; i < 20000; ++i) {
    double value = 0;
    const std::uint64_t pattern = bits(random);
    std::memcpy(&value, &pattern, sizeof value);
    if (!std::isfinite(value)) continue;
    const std::string json = JsonNumberText(value);
    const PlainNumber number = PlainNumberOf(value);
    const std::string &plain = number.text;
    EXPECT_EQ(number.digits.integer, DigitsOf(plain).integer) << plain;
    EXPECT_EQ(number.digits.decimal, DigitsOf(plain).decimal) << plain;
    EXPECT_EQ(json.find("e-"), std::string::npos) << json;
    EXPECT_EQ(plain.find('e'), std::string::npos) << plain;
    if (std::fabs(value) < 1.7976931348623155e308) {
      EXPECT_EQ(Read(json), SixteenDigits(value)) << json;
      EXPECT_EQ(Read(plain), SixteenDigits(value)) << plain;
    } else {
      EXPECT_EQ(Read(json), value) << json;
    }
  }
}

// Values of a few decimals, the usual samples and ranges, take a shorter route to their
// digits than arbitrary doubles; below 1e15 the library's shortest fixed form must agree with it
// exactly, including next to the route's limits (2^50 after scaling, 9 decimals).
TEST(NumberText, ShortDecimalsMatchTheShortestFixedForm) {
  std::mt19937_64 random(7);
  std::uniform_int_distribution<std::int64_t> mantissa(-(std::int64_t{1} << 53), std::int64_t{1} << 53);
  std::uniform_int_distribution<int> decimals(0, 12);
  std::uniform_int_distribution<int> keep(1, 17);
  std::vector<double> values = {0.5, 0.05, 1e-9, 1.5e-9, 9.999999999, 0x1p50, 0x1p50 / 1e9, 0x1p50 / 1e9 + 1e-6,
                                1125899906842623.0, 1125899906842625.0, 112589990684262.45, 4503599627370495.5};
  for (int i = 0; i < 200000; ++i) {
    // Mantissas cut to a random number of digits, so that most values have short texts.
    std::int64_t digits = mantissa(random);
    for (int drop = 17 - keep(random); drop > 0; --drop) digits /= 10;
    values.push_back(static_cast<double>(digits) / std::pow(10.0, decimals(random)));
  }
  for (const double value : values) {
    for (const double signed_value : {value, -value}) {
      if (std::fabs(signed_value) >= 1e15) continue;
      char expected[64];
      const auto end = std::to_chars(expected, expected + sizeof expected, signed_value, std::chars_format::fixed);
      const std::string fixed(expected, end.ptr);
      const std::size_t significant = fixed.find_first_not_of("-0.") == std::string::npos
                                          ? 1
                                          : fixed.size() - fixed.find_first_not_of("-0.") -
                                                (fixed.find('.') == std::string::npos ? 0 : 1);
      if (significant > 16) continue;  // kept to 16 digits instead (above)
      const PlainNumber number = PlainNumberOf(signed_value);
      ASSERT_EQ(number.text, fixed) << signed_value;
      ASSERT_EQ(JsonNumberText(signed_value), fixed) << signed_value;
      EXPECT_EQ(number.digits.integer, DigitsOf(fixed).integer) << fixed;
      EXPECT_EQ(number.digits.decimal, DigitsOf(fixed).decimal) << fixed;
    }
  }
}

TEST(NumberText, DigitsBeforeAndAfterThePoint) {
  EXPECT_EQ(DigitsOf("-001.50").integer, 3);
  EXPECT_EQ(DigitsOf("-001.50").decimal, 2);
  EXPECT_EQ(DigitsOf("12").integer, 2);
  EXPECT_EQ(DigitsOf("12").decimal, 0);
  EXPECT_EQ(DigitsOf("1.5e+20").integer, 1);
  EXPECT_EQ(DigitsOf("1.5e+20").decimal, 1);
}

struct WideningCase {
  const char *text;
  bool isSigned;
  std::int32_t integer;
  std::int32_t decimal;
  const char *widened;
};

TEST(NumberText, WideningToAPattern) {
  const WideningCase cases[] = {
      {"5", true, 3, 2, "+005.00"},
      {"-1.5", true, 3, 2, "-001.50"},
      {"5", false, 3, 2, "005.00"},
      {"5", false, 1, 0, "5"},
      {"12.25", false, 1, 1, "12.25"},  // never shortened
      {"0.5", true, 0, 0, "+0.5"},
      {"-0", false, 2, 1, "-00.0"},
      {"7", false, -1, -1, "7"},
  };
  for (const WideningCase &c : cases) {
    std::string text = c.text;
    WidenToPattern(text, c.isSigned, c.integer, c.decimal);
    EXPECT_EQ(text, c.widened) << c.text;
  }
}

}  // namespace
}  // namespace PX_PLUGIN
