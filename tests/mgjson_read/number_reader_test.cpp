// The number grammar: values, its deliberate oddities, and agreement with RapidJSON's
// normal-precision reading where the two grammars coincide.
#include "mgjson_read/scanner.hpp"  // first: it configures RapidJSON

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <cmath>
#include <string>

#include "mgjson_read/mgjson_test_support.hpp"

namespace ns_sensor {
namespace {

using testing::Capture;
using testing::Fault;

double Read(const std::string &text) {
  const MgjsonScanner scanner(text.data(), text.data() + text.size());
  double value = 0.0;
  const char *end = scanner.ReadNumber(text.data(), PropertyPath("n"), value);
  EXPECT_EQ(end, text.data() + text.size()) << text;
  return value;
}

Fault ReadFault(const std::string &text) {
  const MgjsonScanner scanner(text.data(), text.data() + text.size());
  double value = 0.0;
  return Capture([&] { scanner.ReadNumber(text.data(), PropertyPath("n"), value); });
}

TEST(NumberReader, ReadsValues) {
  const struct {
    const char *text;
    double value;
  } cases[] = {
      {"-0", 0.0},
      {"4294967296", 4294967296.0},
      {"-2147483649", -2147483649.0},
      {"9007199254740993", 9007199254740992.0},
      {"18446744073709551616", 18446744073709551616.0},
      {"1E+5", 100000.0},
      {"1e15", 1e5},  // the 1 is the sign
      {"1e25", 1e5},
      {"1e-05", 1e-5},  // a 0 first digit still counts
      {"0.001e+311", 1e308},  // the limit grows with the fraction digits
      {"1e-399", 0.0},
      {"5e-99999999999999", 0.0},  // exponent digits beyond the limit are skipped
  };
  for (const auto &c : cases) EXPECT_EQ(Read(c.text), c.value) << c.text;
  EXPECT_TRUE(std::signbit(Read("-0.0")));
  // Below 1e-308 the value is divided by 1e308 first, then by the rest.
  EXPECT_NEAR(Read("1e-315") / 1e-315, 1.0, 1e-6);
}

TEST(NumberReader, ReadsLongFractionsToSeventeenDigits) {
  EXPECT_NEAR(Read("3.14159265358979323846264338327950288"), 3.141592653589793, 1e-15);
  EXPECT_EQ(Read("0." + std::string(400, '0') + "1"), 0.0);
  EXPECT_NEAR(Read("1" + std::string(308, '0')) / 1e308, 1.0, 1e-12);  // the largest integer read
}

TEST(NumberReader, RefusesNumbersBeyondTheDouble) {
  // The digit that would overflow is reported.
  const std::string integer = "1" + std::string(309, '0');
  EXPECT_EQ(ReadFault(integer), (Fault{32, "Number too big to be stored in double.", 309}));
  EXPECT_EQ(ReadFault("1e+3090"), (Fault{32, "Number too big to be stored in double.", 5}));
}

TEST(NumberReader, AgreesWithRapidJsonWhereTheGrammarsMeet) {
  const char *const texts[] = {
      "0",      "-1",        "4294967295", "-9223372036854775808", "18446744073709551615", "0.1",
      "2.5E-7", "-6.02e+23", "1e+308",     "4.9e-324",             "2.2250738585e-318",    "-273.15",
      "1.7976931348623157e+308",          "99999999999999999999",
  };
  for (const char *text : texts) {
    rapidjson::Document reference;
    reference.Parse(text);
    ASSERT_FALSE(reference.HasParseError()) << text;
    EXPECT_EQ(Read(text), reference.GetDouble()) << text;
  }
}

}  // namespace
}  // namespace ns_sensor
