// Parsing JSON input: what is refused with 1506 (and where), and that hostile nesting is
// parsed without exhausting the stack.
#include <gtest/gtest.h>

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
      {"[1,]", "1506@3"},
      {"{\"a\":1}x", "1506@7"},                    // trailing garbage
      {"{\"a\":1}{}", "1506@7"},
      {"[1] // note", "1506@4"},                   // no comments
      {"[NaN]", "1506@1"},
      {"[Infinity]", "1506@1"},
      {"[-Infinity]", "1506@2"},
      {"[1e400]", "1506@1"},                       // beyond a double
      {"[01]", "1506@2"},
      {"['a']", "1506@1"},
      {"{a:1}", "1506@1"},
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
