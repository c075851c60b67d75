// Parsing JSON input: what is refused with 1506 (and where), and that hostile nesting is
// parsed without exhausting the stack.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "api/px_exception.hpp"
#include "converters/json_text.hpp"

namespace ns_sensor {
namespace {

// "ok", or "code@detail1" of the refusal.
std::string Outcome(std::string_view bytes) {
  JsonDocument document;
  try {
    ParseJsonText(bytes, document);
    return "ok";
  } catch (const PX_Exception &failure) {
    return std::to_string(failure.code()) + "@" + std::to_string(failure.detail1());
  }
}

TEST(JsonText, InvalidTextIsRefusedWhereItGoesWrong) {
  const struct {
    std::string bytes;
    std::string outcome;
  } cases[] = {
      {"{\"a\":1}", "ok"},
      {" [1, 2]\r\n\t ", "ok"},
      {"{\"a\":1", "1506@6"},                      // truncated
      {"{\"a\":1}x", "1506@7"},                    // trailing garbage
      {"[1] // note", "1506@4"},                   // no comments
      {"[NaN]", "1506@1"},
      {"[Infinity]", "1506@1"},
      {"[1e400]", "1506@1"},                       // beyond a double
      {"[\"\x01\"]", "1506@2"},                    // raw control byte
      {"[\"\xFF\"]", "1506@2"},                    // invalid UTF-8
      {"[\"\xC0\xAF\"]", "1506@2"},                // overlong
      {"[\"\xED\xA0\x80\"]", "1506@2"},            // encoded surrogate
      {"[\"\\uD800\"]", "1506@2"},                 // lone high surrogate
      {"[\"\\uD800\\u0041\"]", "1506@2"},
      {"[\"\\uDC00\"]", "1506@9"},                 // lone low surrogate (after its string)
      {"{\"\\uDFFF\":1}", "1506@9"},               // ... in a key
      {"[\"\\uD83D\\uDE00\"]", "ok"},              // a pair is fine
      {"[\"\\u0000\"]", "ok"},
      {"[\"\\uED00\\uFFFF\"]", "ok"},              // no surrogate, though ED starts both
      {"[1e-400, -0, 123456789012345678901234567890]", "ok"},
  };
  for (const auto &c : cases) EXPECT_EQ(Outcome(c.bytes), c.outcome) << c.bytes;
}

// Numbers are read exactly and keep their integer width; a zero with a large negative
// exponent once came out as an arbitrary tiny number.
TEST(JsonText, NumbersReadExactly) {
  JsonDocument document;
  ParseJsonText("[0e-32, -0.000e-40, 0.1, 1e-400, -2147483648, -2147483649, 4294967295, 4294967296, "
                "18446744073709551615, 18446744073709551616, 1.7976931348623157e308]",
                document);
  const auto &items = document.GetArray();
  ASSERT_EQ(items.Size(), 11u);
  EXPECT_EQ(items[0].GetDouble(), 0.0);
  EXPECT_TRUE(std::signbit(items[1].GetDouble()) && items[1].GetDouble() == 0.0);
  EXPECT_EQ(items[2].GetDouble(), 0.1);
  EXPECT_EQ(items[3].GetDouble(), 0.0);
  EXPECT_TRUE(items[4].IsInt());
  EXPECT_EQ(items[4].GetInt(), -2147483647 - 1);
  EXPECT_TRUE(items[5].IsInt64() && !items[5].IsInt());
  EXPECT_TRUE(items[6].IsUint());
  EXPECT_TRUE(items[7].IsUint64() && !items[7].IsUint());
  EXPECT_EQ(items[8].GetUint64(), 18446744073709551615u);
  EXPECT_EQ(items[9].GetDouble(), 18446744073709551616.0);
  EXPECT_EQ(items[10].GetDouble(), 1.7976931348623157e308);
}

TEST(JsonText, HostileNestingCostsHeapNotStack) {
  constexpr std::size_t kDepth = 1000000;
  std::string nested(kDepth, '[');
  nested.append(kDepth, ']');
  EXPECT_EQ(Outcome(nested), "ok");
  nested.pop_back();
  EXPECT_EQ(Outcome(nested), "1506@" + std::to_string(2 * kDepth - 1));

  std::string objects;
  for (std::size_t i = 0; i < kDepth; ++i) objects += "{\"\":";
  objects += "1";
  objects.append(kDepth, '}');
  EXPECT_EQ(Outcome(objects), "ok");
}

}  // namespace
}  // namespace ns_sensor
