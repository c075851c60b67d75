// The scanner's grammar, messages and offsets. Every case is read twice, building values
// and only checking the grammar (as dataDynamicSamples is read): both must agree.
#include "mgjson_read/scanner.hpp"

#include <gtest/gtest.h>

#include <string>

#include "mgjson_read/mgjson_test_support.hpp"

namespace ns_sensor {
namespace {

using testing::Capture;
using testing::Fault;

// Reads `text` as one object at depth 0 with the path "root", from a file that starts at
// the object; without a base, offsets are not reported.
Fault ScanObject(std::string_view text, JsonDocument *document, bool withBase = true) {
  const MgjsonScanner scanner(withBase ? text.data() : nullptr, text.data() + text.size());
  return Capture([&] {
    const char *end = scanner.ParseObject(text.data(), PropertyPath("root"), document, 0);
    EXPECT_EQ(end, text.data() + text.size()) << text;
  });
}

// Both readings of `text`; returns the fault of the building one.
Fault ScanBothWays(std::string_view text, JsonDocument &document) {
  const Fault built = ScanObject(text, &document);
  const Fault checked = ScanObject(text, nullptr);
  EXPECT_EQ(built, checked) << text;
  return built;
}

struct FaultCase {
  std::string text;
  Fault expected;
};

TEST(Scanner, RefusesWhatTheGrammarDoesNotAllow) {
  const std::string type = "Invalid \"root::a\" type, expected type:";
  const std::string comma = "Unable to find Comma or Closing bracket after property:";
  const std::string valueQuotes = "Unable to find enclosing quotes for property value:\"root::a\".";
  const std::string keyQuotes = "Unable to find enclosing quotes for Mgjson key.";
  const FaultCase cases[] = {
      // Numbers: the byte after "e" is the sign; a negative exponent stops at a 0.
      {R"({"a":1e5})", {32, "Miss exponent in number", 8}},
      {R"({"a":1e-10})", {32, comma + "\"root::a\".", 9}},
      {R"({"a":1e})", {32, "Miss exponent in number", 8}},  // "}" was taken as the sign
      {R"({"a":1e+309})", {32, "Number too big to be stored in double.", 10}},
      {R"({"a":-x})", {32, type + "JSON Number.", 6}},
      {R"({"a":null})", {32, type + "JSON Number.", 5}},
      {R"({"a":.5})", {32, type + "JSON Number.", 5}},
      {R"({"a":1.})", {32, "Missing fraction part in number", 7}},
      {R"({"a":0123})", {32, comma + "\"root::a\".", 6}},
      // Strings.
      {"{\"a\":\"x\ty\"}", {32, valueQuotes, 7}},
      {"{\"a\":\"x\\\x01\"}", {32, valueQuotes, 8}},
      {R"({"a":"abc)", {32, valueQuotes, 9}},
      {R"({"a":"x\)", {32, valueQuotes, 8}},
      {R"({a:1})", {32, keyQuotes, 1}},
      {"{\"a\x1f\":1}", {32, keyQuotes, 3}},
      // Booleans, objects, arrays.
      {R"({"a":tru})", {32, type + "JSON Boolean.", 5}},
      {R"({})", {32, keyQuotes, 1}},
      {R"({"a":{}})", {32, keyQuotes, 6}},
      {R"({"a":[]})", {32, "Invalid \"root::a[0]\" type, expected type:JSON Number.", 6}},
      {R"({"a" 1})", {32, "Unable to find Colon(:) in between key and value for property:\"a\".", 5}},
      {R"({"a":1 "b":2})", {32, comma + "\"root::a\".", 7}},
      {R"({"a":[1 2]})", {32, comma + "\"root::a[0]\".", 8}},
      {R"({"a":[{"b":[1,x]}]})", {32, "Invalid \"root::a[0]::b[1]\" type, expected type:JSON Number.", 14}},
      // Truncated input: the fault is at the end.
      {R"({"a":1)", {32, comma + "\"root::a\".", 6}},
      {R"({"a")", {32, "Unable to find Colon(:) in between key and value for property:\"a\".", 4}},
      {R"({"a":)", {32, type + "JSON Number.", 5}},
      {R"({"a":[1,)", {32, "Invalid \"root::a[1]\" type, expected type:JSON Number.", 8}},
      {R"({"a":[)", {32, "Invalid \"root::a\" type, expected type:JSON Array.", 6}},
      {R"({ )", {32, "Invalid \"root\" type, expected type:JSON Object.", 2}},
      {R"([1])", {32, "Invalid \"root\" type, expected type:JSON Object.", 0}},
      {"", {32, "Invalid \"root\" type, expected type:JSON Object.", 0}},
  };
  for (const FaultCase &c : cases) {
    JsonDocument document;
    EXPECT_EQ(ScanBothWays(c.text, document), c.expected) << c.text;
  }
}

TEST(Scanner, ReadsStringsWithTheNarrowEscapeSet) {
  const struct {
    std::string text;
    std::string value;
  } cases[] = {
      {R"({"a":"a\/b"})", "a/b"},
      {R"({"a":"\u00e9"})", "u00e9"},
      {R"({"a":"q\"\\\b\f\n\r\t"})", "q\"\\\b\f\n\r\t"},
      {"{\"a\":\"\xC3\xA9\x7F\"}", "\xC3\xA9\x7F"},  // bytes from 0x7F up pass as they are
      {R"({"a":""})", ""},
      {R"({"a":"\x"})", "x"},
  };
  for (const auto &c : cases) {
    JsonDocument document;
    ASSERT_EQ(ScanBothWays(c.text, document), Fault{}) << c.text;
    EXPECT_EQ(std::string(document["a"].GetString(), document["a"].GetStringLength()), c.value)
        << c.text;
  }
}

TEST(Scanner, KeepsMembersInFileOrderWithDuplicates) {
  JsonDocument document;
  ASSERT_EQ(ScanBothWays(R"({"b":1, "a" : [true,false,"s",{"x":2}] ,"b":3})", document),
            Fault{});
  ASSERT_EQ(document.MemberCount(), 3u);
  const char *names[] = {"b", "a", "b"};
  for (rapidjson::SizeType i = 0; i < 3; ++i) {
    EXPECT_STREQ((document.MemberBegin() + i)->name.GetString(), names[i]);
  }
  EXPECT_EQ(document.MemberBegin()->value.GetDouble(), 1.0);
  const JsonValue &items = document.MemberBegin()[1].value;
  ASSERT_EQ(items.Size(), 4u);
  EXPECT_TRUE(items[0].IsTrue());
  EXPECT_TRUE(items[1].IsFalse());
  EXPECT_STREQ(items[2].GetString(), "s");
  EXPECT_EQ(items[3]["x"].GetDouble(), 2.0);
}

TEST(Scanner, AcceptsOneHundredLevelsOfNestingAndNoMore) {
  const auto nested = [](int levels) {
    return R"({"a":)" + std::string(levels, '[') + "1" + std::string(levels, ']') + "}";
  };
  JsonDocument accepted;
  EXPECT_EQ(ScanBothWays(nested(100), accepted), Fault{});
  JsonDocument refused;
  EXPECT_EQ(ScanBothWays(nested(101), refused),
            (Fault{32, "PX does not support MGJSON dataGroup with nesting more than 100", -1}));
  // Objects count as levels too: here the innermost is 101 levels below the outermost.
  std::string objects = "1";
  for (int i = 0; i < 102; ++i) objects = R"({"o":)" + objects + "}";
  JsonDocument refusedObjects;
  EXPECT_EQ(ScanBothWays(objects, refusedObjects).code, 32u);
}

TEST(Scanner, ReportsNoOffsetWithoutAFileStart) {
  JsonDocument document;
  EXPECT_EQ(ScanObject(R"({"a":1e5})", &document, /*withBase=*/false),
            (Fault{32, "Miss exponent in number", -1}));
}

TEST(Scanner, RefusesABooleanThatEndsTheInput) {
  const PropertyPath path("flag");
  for (const std::string text : {"true", "false"}) {
    const MgjsonScanner scanner(text.data(), text.data() + text.size());
    bool value = false;
    EXPECT_EQ(Capture([&] { scanner.ReadBoolean(text.data(), path, value); }),
              (Fault{32, "Invalid \"flag\" type, expected type:JSON Boolean.", 0}));
    const std::string followed = text + " ";
    const MgjsonScanner roomy(followed.data(), followed.data() + followed.size());
    EXPECT_EQ(roomy.ReadBoolean(followed.data(), path, value), followed.data() + text.size());
    EXPECT_EQ(value, text == "true");
  }
}

TEST(Scanner, SkipsOnlyTheFourWhitespaceBytes) {
  const std::string text = " \t\r\n\f";
  const MgjsonScanner scanner(text.data(), text.data() + text.size());
  EXPECT_EQ(scanner.SkipWhitespace(text.data()), text.data() + 4);
  EXPECT_EQ(scanner.SkipWhitespace(nullptr), nullptr);
}

TEST(Scanner, CountsTheItemsOfAnArray) {
  const std::string text = R"([{"a":1}, [2], "3"])";
  const MgjsonScanner scanner(text.data(), text.data() + text.size());
  std::size_t items = 0;
  scanner.ParseArray(text.data(), PropertyPath("list"), nullptr, 0, &items);
  EXPECT_EQ(items, 3u);
}

}  // namespace
}  // namespace ns_sensor
