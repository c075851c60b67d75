// The JSON start check: which first bytes make a file the JSON converter's, and the top
// value it leaves for the conversion.
#include <gtest/gtest.h>

#include <string>

#include "converters/json_start_check.hpp"
#include "platform/file_test_support.hpp"

namespace ns_sensor {
namespace {

using palvex::testing::ScratchFolder;

TEST(JsonStartCheck, FirstByteAfterWhiteSpaceDecides) {
  const struct {
    std::string bytes;
    bool accepted;
    JsonTopValue top;
  } cases[] = {
      {"[]", true, JsonTopValue::Array},
      {"{}", true, JsonTopValue::Object},
      {" \t\r\n[1]", true, JsonTopValue::Array},
      {"\n\n{x", true, JsonTopValue::Object},  // the rest is the parser's business
      // The bracket must not be the last byte; a byte order mark, form feed or vertical tab
      // is no white space here.
      {"[", false, {}},  {"{", false, {}},   {"   {", false, {}}, {"", false, {}},         {" ", false, {}},
      {"1", false, {}},  {"\"a\"", false, {}}, {"x[]", false, {}},  {"\xEF\xBB\xBF{}", false, {}},
      {"\f{}", false, {}}, {"\v[]", false, {}},  {std::string("\0{}", 3), false, {}},
  };
  for (const auto &c : cases) {
    JsonTopValue top = c.top == JsonTopValue::Array ? JsonTopValue::Object : JsonTopValue::Array;
    EXPECT_EQ(StartsAsJsonContainer(c.bytes, top), c.accepted) << c.bytes;
    if (c.accepted) {
      EXPECT_EQ(top, c.top) << c.bytes;
    }
  }
}

TEST(JsonStartCheck, FileCheckRemembersTheTopValue) {
  ScratchFolder folder;
  const ConversionRequest array{folder.WriteFile("a.json", " [1]"), "json", ""};
  const ConversionRequest object{folder.WriteFile("o.json", "{\"a\":1}"), "json", ""};
  ASSERT_TRUE(CheckJsonStart(array));
  EXPECT_EQ(LastCheckedJsonTopValue(), JsonTopValue::Array);
  ASSERT_TRUE(CheckJsonStart(object));
  EXPECT_EQ(LastCheckedJsonTopValue(), JsonTopValue::Object);

  // A refusal leaves the last answer alone.
  ASSERT_TRUE(CheckJsonStart(array));
  EXPECT_FALSE(CheckJsonStart({folder.WriteFile("n.json", "null"), "json", ""}));
  EXPECT_FALSE(CheckJsonStart({folder.WriteFile("e.json", ""), "json", ""}));
  EXPECT_FALSE(CheckJsonStart({folder.Path("missing.json"), "json", ""}));
  EXPECT_FALSE(CheckJsonStart({folder.root().string(), "json", ""}));
  EXPECT_EQ(LastCheckedJsonTopValue(), JsonTopValue::Array);
}

}  // namespace
}  // namespace ns_sensor
