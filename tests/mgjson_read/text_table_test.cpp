// The flat table behind sample-set IDs and match names: numbers survive the table's
// growth, a text is refused the second time, and texts that collide in the table or are
// empty are told apart.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "mgjson_read/text_table.hpp"

namespace ns_sensor {
namespace {

TEST(TextTable, NumbersTextsInOrderAcrossGrowthAndRefusesRepeats) {
  std::vector<std::string> texts = {"", "a", "A", "s1", "s10"};
  for (int i = 0; i < 5000; ++i) texts.push_back("stream" + std::to_string(i));
  TextTable table;  // not reserved: it grows many times
  for (std::size_t i = 0; i < texts.size(); ++i) ASSERT_TRUE(table.Insert(texts[i])) << texts[i];
  for (const std::string &text : texts) EXPECT_FALSE(table.Insert(text)) << text;
  ASSERT_EQ(table.size(), texts.size());
  for (std::size_t i = 0; i < texts.size(); ++i) EXPECT_EQ(table.Find(texts[i]), i) << texts[i];
  for (const char *absent : {"s", "stream5000", "b", " "}) EXPECT_FALSE(table.Find(absent)) << absent;

  table.Clear();
  EXPECT_FALSE(table.Find("a"));
  EXPECT_TRUE(table.Insert("a"));
  EXPECT_EQ(table.Find("a"), 0u);
}

}  // namespace
}  // namespace ns_sensor
