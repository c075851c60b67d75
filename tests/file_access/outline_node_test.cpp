#include "file_access/outline_node.hpp"

#include <gtest/gtest.h>

namespace ns_sensor {
namespace {

TEST(OutlineNode, TypeCodesTestPrefixesForDataAndTheWholeTextForGroups) {
  struct Case {
    const char *objectType;
    PX_NodeType type;
  };
  const Case cases[] = {
      {"dataStatic", PX_NODE_STATIC},   {"dataStaticExtra", PX_NODE_STATIC},
      {"dataDynamic", PX_NODE_DYNAMIC}, {"dataDynamicX", PX_NODE_DYNAMIC},
      {"dataGroup", PX_NODE_GROUP},     {"dataGroupX", PX_NODE_OTHER},
      {"dataStati", PX_NODE_OTHER},     {"dataDynami", PX_NODE_OTHER},
      {"DataStatic", PX_NODE_OTHER},    {"", PX_NODE_OTHER},
  };
  for (const auto &c : cases) {
    EXPECT_EQ(NodeTypeOf(c.objectType), c.type) << c.objectType;
  }
}

TEST(OutlineNode, NodesWithoutAStringObjectTypeAreOther) {
  JsonDocument nodes;
  ASSERT_FALSE(nodes.Parse(R"([{"objectType": "dataGroup"}, {"objectType": 2}, {}, "dataStatic"])")
                   .HasParseError());
  EXPECT_EQ(NodeTypeOf(nodes[0]), PX_NODE_GROUP);
  for (rapidjson::SizeType i = 1; i < nodes.Size(); ++i) {
    EXPECT_EQ(NodeTypeOf(nodes[i]), PX_NODE_OTHER) << i;
  }
}

}  // namespace
}  // namespace ns_sensor
