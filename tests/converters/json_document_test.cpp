// The outline built from a parsed JSON document, read back from the object model: the
// match-name counter, dropped containers and the nesting limit. Kinds, names and values
// are checked end to end by the round trip in json_conversion_test.cpp.
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

// "display (match)" per group, "display (match) = number" per node, two spaces per level.
// Every number is unsigned in pattern and unbounded in range: JSON says nothing of either.
void Describe(const IMgjsonGroup_I &group, const std::string &indent, Lines &lines) {
  for (const GroupChild &child : group.Children()) {
    if (child.Group()) {
      const NameView names = child.Group()->Names();
      lines.push_back(indent + std::string(names.displayName) + " (" + std::string(names.matchName) + ")");
      Describe(*child.Group(), indent + "  ", lines);
      continue;
    }
    auto *number = dynamic_cast<IMgjsonStaticDataNum_I *>(child.StaticNode());
    ASSERT_NE(number, nullptr) << "the tests here convert numbers only";
    const NumberPattern pattern = number->Pattern();
    EXPECT_FALSE(pattern.isSigned);
    EXPECT_EQ(pattern.digitsInteger, -1);
    EXPECT_EQ(pattern.digitsDecimal, -1);
    for (const MinMax &minMax : {number->Range().occurring, number->Range().legal}) {
      EXPECT_EQ(minMax.min, std::numeric_limits<double>::max());
      EXPECT_EQ(minMax.max, -std::numeric_limits<double>::max());
    }
    lines.push_back(indent + std::string(number->Names().displayName) + " (" + std::string(number->Names().matchName) +
                    ") = " + NumberText(number->Value()));
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
