#include "file_access/data_path.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>

#include "api/px_exception.hpp"

namespace ns_sensor {
namespace {

// Five nodes at the top: static, dynamic, a group holding a nested group, an empty group,
// and a node of an unknown kind.
constexpr const char *kOutline = R"([
  {"objectType": "dataStatic", "displayName": "Title", "matchName": "title"},
  {"objectType": "dataDynamic", "displayName": "Speed", "matchName": "speed"},
  {"objectType": "dataGroup", "displayName": "GPS", "matchName": "gps", "children": [
    {"objectType": "dataDynamic", "displayName": "Latitude", "matchName": "lat"},
    {"objectType": "dataGroup", "displayName": "Inner", "matchName": "inner", "children": [
      {"objectType": "dataStatic", "displayName": "Deep", "matchName": "deep"}]},
    {"objectType": "dataStaticExtra", "displayName": "Note", "matchName": "note"}]},
  {"objectType": "dataGroup", "displayName": "Empty", "matchName": "empty", "children": []},
  {"objectType": "dataGroupX", "displayName": "Odd", "matchName": "odd"}
])";

class DataPathTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_FALSE(outline_.Parse(kOutline).HasParseError()); }
  JsonDocument outline_;
};

PX_DataPath RootOnly() { return {PX_PathItem{"", kNoIndex}}; }

PX_DataPath Parsed(const std::string &text) { return ParseDataPath(text); }

void ExpectRaised(const std::function<void()> &body, std::uint32_t code,
                  const std::string &message, const std::string &label) {
  try {
    body();
    ADD_FAILURE() << label << ": nothing raised";
  } catch (const PX_Exception &e) {
    EXPECT_EQ(e.code(), code) << label;
    EXPECT_EQ(e.what(), message) << label;
  }
}

TEST(ParseDataPath, ReadsBracketedItems) {
  struct Case {
    const char *text;
    std::vector<std::pair<std::string, std::int32_t>> items;  // after the root item
  };
  const Case cases[] = {
      {"[0]", {{"", 0}}},
      {R"([2]["speed"])", {{"", 2}, {"speed", -1}}},
      {"[0]junk[1]", {{"", 0}, {"", 1}}},
      {"[ \t+7][-3][12abc][2147483647]", {{"", 7}, {"", -3}, {"", 12}, {"", 2147483647}}},
      {R"([""])", {{"", -1}}},
      // A name without its closing quote runs to the end of the text, "]" included.
      {R"(["ab])", {{"ab]", -1}}},
  };
  for (const auto &c : cases) {
    const PX_DataPath path = ParseDataPath(c.text);
    ASSERT_EQ(path.size(), c.items.size() + 1) << c.text;
    EXPECT_EQ(path[0].name, kRootMatchName) << c.text;
    EXPECT_EQ(path[0].index, kNoIndex) << c.text;
    for (std::size_t i = 0; i < c.items.size(); ++i) {
      EXPECT_EQ(path[i + 1].name, c.items[i].first) << c.text << " item " << i;
      EXPECT_EQ(path[i + 1].index, c.items[i].second) << c.text << " item " << i;
    }
  }
}

TEST(ParseDataPath, RefusesMalformedText) {
  struct Case {
    const char *text;
    std::uint32_t code;
    const char *message;
  };
  const Case cases[] = {
      {"", 1, "Empty PX_DataPath string."},
      {"0", 33, R"(Missing "[" at or after index :0.)"},
      {"[0]tail", 33, R"(Missing "[" at or after index :3.)"},
      // The first "]" ends the item, even inside a quoted name; what follows has no "[".
      {R"(["a]b"])", 33, R"(Missing "[" at or after index :4.)"},
      // A missing closing bracket names the opening one, at its own position.
      {"[0", 45, R"(Missing "[" at or after index :0.)"},
      {"[0]x[1", 45, R"(Missing "[" at or after index :4.)"},
  };
  for (const auto &c : cases) {
    ExpectRaised([&] { ParseDataPath(c.text); }, c.code, c.message, c.text);
  }
}

TEST(ParseDataPath, UnconvertiblePositionsFailAsTheStandardConversionDoes) {
  for (const char *text : {"[abc]", "[]", "[+]"}) {
    EXPECT_THROW(ParseDataPath(text), std::invalid_argument) << text;
  }
  for (const char *text : {"[2147483648]", "[-2147483649]"}) {
    EXPECT_THROW(ParseDataPath(text), std::out_of_range) << text;
  }
}

TEST_F(DataPathTest, ResolvesByPositionAndByMatchName) {
  struct Case {
    const char *text;
    const char *matchName;
    std::vector<std::int32_t> positions;  // after resolution, after the root item
  };
  const Case cases[] = {
      {"[0]", "title", {0}},
      {R"([2]["lat"])", "lat", {2, 0}},
      {R"(["gps"][1]["deep"])", "deep", {2, 1, 0}},
      {"[2][2]", "note", {2, 2}},  // the last valid position is the count minus one
  };
  for (const auto &c : cases) {
    PX_DataPath path = ParseDataPath(c.text);
    const JsonValue &node = ResolveDataPath(outline_, path);
    EXPECT_STREQ(node["matchName"].GetString(), c.matchName) << c.text;
    ASSERT_EQ(path.size(), c.positions.size() + 1) << c.text;
    for (std::size_t i = 0; i < c.positions.size(); ++i) {
      EXPECT_EQ(path[i + 1].index, c.positions[i]) << c.text << " item " << i;
    }
  }

  PX_DataPath root = RootOnly();
  EXPECT_EQ(&ResolveDataPath(outline_, root), &outline_);
  EXPECT_EQ(root[0].name, kRootMatchName);

  // A position that also carries the node's own match name is accepted.
  PX_DataPath both{PX_PathItem{"dataOutline", kNoIndex}, PX_PathItem{"speed", 1}};
  EXPECT_STREQ(ResolveDataPath(outline_, both)["displayName"].GetString(), "Speed");
}

TEST_F(DataPathTest, RefusesPathsThatNameNoNode) {
  const char *const kMissingRoot =
      "Missing PX_DataPath ROOT_INDEX or ROOT_MATCHNAME. Path must start with ROOT_INDEX or "
      "ROOT_MATCHNAME";
  const char *const kNotGroup = " is not of type dataGroup. All intermediate nodes must be of type dataGroup.";
  struct Case {
    const char *label;
    PX_DataPath path;
    std::string message;
  };
  const Case cases[] = {
      {"no items", {}, kMissingRoot},
      {"root with a position", {PX_PathItem{"", 0}}, kMissingRoot},
      {"root with another name", {PX_PathItem{"gps", kNoIndex}}, kMissingRoot},
      {"[2][3]", Parsed("[2][3]"), "Invalid node index, 3 child nodes present for node at path item :1. Input index : 3."},
      {"[3][0]", Parsed("[3][0]"), "Invalid node index, 0 child nodes present for node at path item :1. Input index : 0."},
      {"[-1]", Parsed("[-1]"), "Either index or match name must be present, both are missing at path item 0."},
      {R"([2][""])", Parsed(R"([2][""])"), "Either index or match name must be present, both are missing at path item 1."},
      // Match names are searched among the current node's children only.
      {R"(["lat"])", Parsed(R"(["lat"])"), R"(No node found with match name : "lat".)"},
      // The message names the position of the node that is not a group.
      {"[0][0]", Parsed("[0][0]"), std::string("Node at path item:0") + kNotGroup},
      {R"(["gps"]["lat"][0])", Parsed(R"(["gps"]["lat"][0])"), std::string("Node at path item:0") + kNotGroup},
      {"position with another name",
       {PX_PathItem{"", kNoIndex}, PX_PathItem{"speed", 0}},
       R"("title":Match name found for child Node at index 0 for path item 0,Input match name:"speed".)"},
  };
  for (const auto &c : cases) {
    PX_DataPath path = c.path;
    ExpectRaised([&] { ResolveDataPath(outline_, path); }, 33, c.message, c.label);
  }
}

TEST_F(DataPathTest, GroupChildrenAreTheOutlineOrAGroupsChildren) {
  PX_DataPath root = RootOnly();
  EXPECT_EQ(&GroupChildrenAt(outline_, root), &outline_);
  PX_DataPath gps = ParseDataPath(R"(["gps"])");
  EXPECT_EQ(GroupChildrenAt(outline_, gps).Size(), 3u);
  EXPECT_EQ(gps[1].index, 2);
  PX_DataPath empty = ParseDataPath("[3]");
  EXPECT_EQ(GroupChildrenAt(outline_, empty).Size(), 0u);

  for (const char *text : {"[0]", "[4]", "[2][2]"}) {
    PX_DataPath path = ParseDataPath(text);
    ExpectRaised([&] { GroupChildrenAt(outline_, path); }, 33, "Leaf node is not a group node.", text);
  }
}

TEST_F(DataPathTest, ChildAtPositionReportsTypeAndNames) {
  struct Case {
    const char *text;
    PX_NodeType type;
    const char *displayName;
    const char *matchName;
  };
  const Case cases[] = {
      {"[0]", PX_NODE_STATIC, "Title", "title"},
      {"[1]", PX_NODE_DYNAMIC, "Speed", "speed"},
      {R"(["gps"][1])", PX_NODE_GROUP, "Inner", "inner"},
      {"[2][2]", PX_NODE_STATIC, "Note", "note"},
      {"[4]", PX_NODE_OTHER, "Odd", "odd"},
  };
  for (const auto &c : cases) {
    PX_DataPath path = ParseDataPath(c.text);
    const PX_OutlineChild child = ChildAtPosition(outline_, path);
    EXPECT_EQ(child.type, c.type) << c.text;
    EXPECT_EQ(child.displayName, c.displayName) << c.text;
    EXPECT_EQ(child.matchName, c.matchName) << c.text;
  }
}

TEST_F(DataPathTest, ChildAtPositionTakesTheLastPositionAsUnsigned) {
  struct Case {
    const char *text;
    const char *message;
  };
  const Case cases[] = {
      {"[2][3]", "Invalid node index, 3 child nodes present for node at path item :3. Input index : 3."},
      // A last item given by match name alone is not looked up.
      {R"([2]["lat"])", "Invalid node index, 3 child nodes present for node at path item :3. Input index : 4294967295."},
      // A parent that is not a group has no children.
      {"[0][0]", "Invalid node index, 0 child nodes present for node at path item :3. Input index : 0."},
  };
  for (const auto &c : cases) {
    PX_DataPath path = ParseDataPath(c.text);
    ExpectRaised([&] { ChildAtPosition(outline_, path); }, 33, c.message, c.text);
  }
  PX_DataPath root = RootOnly();
  EXPECT_THROW(ChildAtPosition(outline_, root), PX_Exception);
}

TEST_F(DataPathTest, DataNodeMustBeOfTheExpectedType) {
  PX_DataPath title = ParseDataPath("[0]");
  EXPECT_EQ(DataNodeAt(outline_, title, PX_NODE_STATIC).matchName, "title");
  PX_DataPath lat = ParseDataPath(R"(["gps"][0])");
  EXPECT_EQ(DataNodeAt(outline_, lat, PX_NODE_DYNAMIC).matchName, "lat");

  struct Case {
    const char *text;
    PX_NodeType expected;
    const char *message;
  };
  const Case cases[] = {
      {"[1]", PX_NODE_STATIC, "Static data node not found at input path, Found node type: Dynamic data node."},
      {"[0]", PX_NODE_DYNAMIC, "Dynamic data node not found at input path, Found node type: Static data node."},
      {"[2]", PX_NODE_DYNAMIC, "Dynamic data node not found at input path, Found node type: Group data node."},
      {"[4]", PX_NODE_STATIC, "Static data node not found at input path, Found node type: invalid node."},
  };
  for (const auto &c : cases) {
    PX_DataPath path = ParseDataPath(c.text);
    ExpectRaised([&] { DataNodeAt(outline_, path, c.expected); }, 33, c.message, c.text);
  }
}

// An outline that breaks the validator's rules still gets the path errors, never a
// RapidJSON assertion.
TEST(DataPathMalformedOutline, OddValuesReadAsNodesWithoutMembers) {
  JsonDocument outline;
  ASSERT_FALSE(outline.Parse(R"([1, "x", {"matchName": "m", "children": 5}])").HasParseError());
  PX_DataPath byName = ParseDataPath(R"(["m"])");
  EXPECT_EQ(&ResolveDataPath(outline, byName), &outline[2]);
  PX_DataPath throughNumber = ParseDataPath("[0][0]");
  EXPECT_THROW(ResolveDataPath(outline, throughNumber), PX_Exception);
  PX_DataPath childrenNotArray = ParseDataPath("[2]");
  EXPECT_THROW(GroupChildrenAt(outline, childrenNotArray), PX_Exception);
  PX_DataPath number = ParseDataPath("[0]");
  const PX_OutlineChild child = ChildAtPosition(outline, number);
  EXPECT_EQ(child.type, PX_NODE_OTHER);
  EXPECT_TRUE(child.matchName.empty());

  JsonDocument notAnArray;  // null
  PX_DataPath root = RootOnly();
  ExpectRaised([&] { GroupChildrenAt(notAnArray, root); }, 33, "Leaf node is not a group node.", "null outline");
  PX_DataPath first = ParseDataPath("[0]");
  ExpectRaised([&] { ResolveDataPath(notAnArray, first); }, 33,
               "Invalid node index, 0 child nodes present for node at path item :0. Input index : 0.",
               "null outline");
}

}  // namespace
}  // namespace ns_sensor
