// The outline built from a parsed JSON document, read back from the object model: kinds,
// names, the match-name counter, dropped containers and the nesting limit.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <limits>
#include <string>
#include <vector>

#include "converters/json_document.hpp"
#include "converters/json_text.hpp"
#include "plugin_model/group_impl.hpp"
#include "plugin_model/model_test_support.hpp"
#include "plugin_model/static_interfaces.hpp"

namespace ns_sensor {
namespace {

using Lines = std::vector<std::string>;
using namespace PX_PLUGIN;

std::string NumberText(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.17g", value);
  return text;
}

// "display (match)" per group, "display (match) = value" per node, two spaces per level.
void Describe(const IMgjsonGroup_I &group, const std::string &indent, Lines &lines) {
  for (const GroupChild &child : group.Children()) {
    if (child.Group()) {
      const NameView names = child.Group()->Names();
      lines.push_back(indent + std::string(names.displayName) + " (" + std::string(names.matchName) + ")");
      Describe(*child.Group(), indent + "  ", lines);
      continue;
    }
    IMgjsonStaticData_v1 *node = child.StaticNode();
    std::string line;
    if (auto *number = dynamic_cast<IMgjsonStaticDataNum_I *>(node)) {
      const NumberPattern pattern = number->Pattern();
      const NumberRange range = number->Range();
      EXPECT_FALSE(pattern.isSigned);
      EXPECT_EQ(pattern.digitsInteger, -1);
      EXPECT_EQ(pattern.digitsDecimal, -1);
      for (const MinMax &minMax : {range.occurring, range.legal}) {
        EXPECT_EQ(minMax.min, std::numeric_limits<double>::max());
        EXPECT_EQ(minMax.max, -std::numeric_limits<double>::max());
      }
      line = std::string(number->Names().displayName) + " (" + std::string(number->Names().matchName) + ") = " + NumberText(number->Value());
    } else if (auto *text = dynamic_cast<IMgjsonStaticDataString_I *>(node)) {
      line = std::string(text->Names().displayName) + " (" + std::string(text->Names().matchName) + ") = '" + text->Value() + "'";
    } else if (auto *boolean = dynamic_cast<IMgjsonStaticDataBool_I *>(node)) {
      line = std::string(boolean->Names().displayName) + " (" + std::string(boolean->Names().matchName) + ") = " +
             (boolean->Value() ? "true" : "false");
    } else {
      ADD_FAILURE() << "a node of an unexpected kind";
    }
    lines.push_back(indent + line);
  }
}

struct Built {
  bool added = false;
  std::uint32_t matchNames = 0;
  Lines outline;
};

Built Build(std::string_view json, JsonTopValue top) {
  JsonDocument document;
  ParseJsonText(json, document);
  PX_PLUGIN::testing::TestDocument model;
  Built built;
  built.added = BuildJsonOutline(document, top, model.root, built.matchNames);
  Describe(*model.root->GetInternalGroup(), "", built.outline);
  return built;
}

Built BuildObject(std::string_view json) { return Build(json, JsonTopValue::Object); }
Built BuildArray(std::string_view json) { return Build(json, JsonTopValue::Array); }

TEST(JsonDocument, MembersAndElementsBecomeNamedNodes) {
  Built built = BuildObject(R"({"a": 1, "b": "x"})");
  EXPECT_TRUE(built.added);
  EXPECT_EQ(built.outline, (Lines{"a (matchName0) = 1", "b (matchName1) = 'x'"}));

  built = BuildArray("[1, 2]");
  EXPECT_EQ(built.outline, (Lines{"dataOutline 0 (matchName0) = 1", "dataOutline 1 (matchName1) = 2"}));

  built = BuildArray("[[true]]");
  EXPECT_EQ(built.outline, (Lines{"dataOutline 0 (matchName0)", "  dataOutline 0 0 (matchName1) = true"}));
  EXPECT_EQ(built.matchNames, 2u);
}

TEST(JsonDocument, KindsAndNamesOfMixedContainers) {
  const Built built = BuildObject(R"({
    "n": null, "t": true, "f": false, "s": "", "list": [null, {"k": [7, null, "v"]}, [], {}],
    "obj": {"inner": {"x": -2.5}}})");
  EXPECT_EQ(built.outline, (Lines{
                               "t (matchName0) = true",
                               "f (matchName1) = false",
                               "s (matchName2) = ''",
                               "list (matchName3)",
                               "  list 1 (matchName4)",
                               "    k (matchName5)",
                               "      k 0 (matchName6) = 7",
                               "      k 2 (matchName7) = 'v'",
                               "obj (matchName8)",
                               "  inner (matchName9)",
                               "    x (matchName10) = -2.5",
                           }));
}

TEST(JsonDocument, NumbersOfEveryWidthBecomeDoubles) {
  const Built built = BuildArray(
      "[0, -0, -0.0, 2147483647, -2147483648, 4294967295, 9223372036854775807, -9223372036854775808,"
      " 18446744073709551615, 9223372036854775808, 123456789012345678901234567890, 0.1, 1e308, 5e-324]");
  const double expected[] = {0.0,
                             0.0,  // an integer: its sign is lost in parsing
                             -0.0,
                             2147483647.0,
                             -2147483648.0,
                             4294967295.0,
                             9223372036854775807.0,
                             -9223372036854775808.0,
                             18446744073709551615.0,
                             9223372036854775808.0,
                             123456789012345678901234567890.0,
                             0.1,
                             1e308,
                             5e-324};
  ASSERT_EQ(built.outline.size(), std::size(expected));
  for (std::size_t i = 0; i < std::size(expected); ++i) {
    const std::string line = built.outline[i];
    EXPECT_EQ(line.substr(line.find(" = ") + 3), NumberText(expected[i])) << line;
  }
}

TEST(JsonDocument, NothingConvertibleAddsNothingButDroppedGroupsKeepTheirNames) {
  const struct {
    const char *json;
    JsonTopValue top;
    std::uint32_t matchNamesUsed;
  } cases[] = {
      {R"({"g": {"h": null}})", JsonTopValue::Object, 1},  // g was made and dropped
      {R"({"g": {}})", JsonTopValue::Object, 0},           // an empty object makes nothing
      {"{}", JsonTopValue::Object, 0},
      {"[]", JsonTopValue::Array, 0},
      {"[null, [], {}, [[]], [{}, null]]", JsonTopValue::Array, 2},
      {R"({"a": {"b": {"c": [null]}}})", JsonTopValue::Object, 3},
  };
  for (const auto &c : cases) {
    const Built built = Build(c.json, c.top);
    EXPECT_FALSE(built.added) << c.json;
    EXPECT_TRUE(built.outline.empty()) << c.json;
    EXPECT_EQ(built.matchNames, c.matchNamesUsed) << c.json;
  }
  // A dropped group's name is not given again.
  EXPECT_EQ(BuildObject(R"({"g": {"h": null}, "v": 1})").outline, Lines{"v (matchName1) = 1"});
}

TEST(JsonDocument, KeysAreFreeTextsEscapedForTheFile) {
  const Built built = BuildObject(R"({"say \"hi\"": "a\\b", "tab\there": "line\nbreak", "nul\u0000": "\u0001"})");
  EXPECT_EQ(built.outline, (Lines{
                               R"(say \"hi\" (matchName0) = 'a\\b')",
                               R"(tab\there (matchName1) = 'line\nbreak')",
                               "nul  (matchName2) = ' '",
                           }));
}

// depth containers nested inside the top object, the innermost holding `inner`.
std::string NestedObjects(std::size_t depth, std::string_view inner) {
  std::string json = "{";
  for (std::size_t i = 0; i < depth; ++i) json += "\"g\":{";
  json += inner;
  json.append(depth + 1, '}');
  return json;
}

TEST(JsonDocument, GroupsNestAsDeepAsTheObjectModelAllows) {
  Built built = BuildObject(NestedObjects(kMaxGroupNesting, "\"v\":1"));
  EXPECT_TRUE(built.added);
  EXPECT_EQ(built.outline.back(), std::string(2 * kMaxGroupNesting, ' ') + "v (matchName40) = 1");

  // One level more: the document cannot be converted.
  try {
    BuildObject(NestedObjects(kMaxGroupNesting + 1, "\"v\":1"));
    ADD_FAILURE() << "too deep a document was converted";
  } catch (const PX_Exception &failure) {
    EXPECT_EQ(failure.code(), 1506u);
  }

  // Deeper containers with nothing convertible are dropped as anywhere else, names used.
  built = BuildObject(NestedObjects(kMaxGroupNesting + 5, "\"v\":[null,{}]"));
  EXPECT_FALSE(built.added);
  EXPECT_EQ(built.matchNames, kMaxGroupNesting + 6);
  built = BuildObject(R"({"ok": 1, "deep": )" + NestedObjects(kMaxGroupNesting + 1, "") + R"(, "after": 2})");
  EXPECT_EQ(built.outline, (Lines{"ok (matchName0) = 1", "after (matchName" + std::to_string(kMaxGroupNesting + 2) +
                                                             ") = 2"}));
}

TEST(JsonDocument, HostileNestingIsWalkedWithoutRecursion) {
  constexpr std::size_t kDepth = 1000000;
  std::string empty(kDepth, '[');
  empty.append(kDepth, ']');
  Built built = BuildArray(empty);
  EXPECT_FALSE(built.added);
  EXPECT_EQ(built.matchNames, kDepth - 2);  // every array but the top one and the empty innermost

  std::string full(kDepth, '[');
  full += "1";
  full.append(kDepth, ']');
  EXPECT_THROW(BuildArray(full), PX_Exception);
}

TEST(JsonDocument, TopValueMustBeWhatTheCheckSaw) {
  EXPECT_THROW(BuildArray("{\"a\":1}"), PX_Exception);
  EXPECT_THROW(BuildObject("[1]"), PX_Exception);
  EXPECT_THROW(BuildObject("1"), PX_Exception);
}

}  // namespace
}  // namespace ns_sensor
