// Compaction of the sample text: white space between tokens goes, everything inside
// strings stays, the text arrives in bounded chunks, and the items are found.
#include "mgjson_read/sample_compactor.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ns_sensor {
namespace {

struct Compacted {
  std::string text;
  std::vector<std::size_t> chunkSizes;
  CompactedArray layout;
};

Compacted Compact(const std::string &array, std::uint64_t fileOffset = 0) {
  Compacted result;
  result.layout = CompactJsonArray(array, fileOffset, [&](std::string_view chunk) {
    result.text += chunk;
    result.chunkSizes.push_back(chunk.size());
  });
  return result;
}

TEST(SampleCompactor, DropsWhiteSpaceBetweenTokensOnly) {
  const struct {
    std::string array;
    std::string compacted;
  } cases[] = {
      {"[ 1 ,\t2\r\n, 3 ]", "[1,2,3]"},
      {R"([ { "a b" : " x\ty " , "c" : [ true , false ] } ])", R"([{"a b":" x\ty ","c":[true,false]}])"},
      {R"([ "a \" b" , "c \\" , "d\\\" e" ])", R"(["a \" b","c \\","d\\\" e"])"},
      {R"([{"s":"]}[{ "}, -1.5e+3 ])", R"([{"s":"]}[{ "},-1.5e+3])"},
  };
  for (const auto &c : cases) {
    const Compacted result = Compact(c.array);
    EXPECT_EQ(result.text, c.compacted) << c.array;
    EXPECT_EQ(result.layout.size, c.compacted.size());
  }
}

TEST(SampleCompactor, FindsWhereEachItemBegins) {
  const std::string array = "[\n  {\"a\":[1, 2]},\n  \"x,y\" ,  {\"b\":{\"c\":3}}\n]";
  const Compacted result = Compact(array, 100);
  ASSERT_EQ(result.text, R"([{"a":[1,2]},"x,y",{"b":{"c":3}}])");
  const std::vector<std::uint64_t> offsets = {1, 13, 19};
  const std::vector<std::uint64_t> fileOffsets = {100 + array.find("{\"a"), 100 + array.find("\"x"),
                                                  100 + array.find("{\"b")};
  ASSERT_EQ(result.layout.items.size(), 3u);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(result.layout.items[i].offset, offsets[i]) << i;
    EXPECT_EQ(result.layout.items[i].fileOffset, fileOffsets[i]) << i;
  }
}

TEST(SampleCompactor, HandsTheTextOnInBoundedChunks) {
  // Over three chunks of compacted text, with white space and long strings on the way.
  std::string array = "[";
  std::string expected = "[";
  for (int i = 0; array.size() < 3 * kCompactionChunkBytes + 1000; ++i) {
    const std::string item = "{\"time\":\"" + std::to_string(i) + "\",\"value\":\"" + std::string(i % 300, 'v') + "\"}";
    array += (i ? " ,\n    " : "\n    ") + item;
    expected += (i ? "," : "") + item;
  }
  array += "\n]";
  expected += "]";
  const Compacted result = Compact(array);
  EXPECT_EQ(result.text, expected);
  ASSERT_GE(result.chunkSizes.size(), 3u);
  for (const std::size_t size : result.chunkSizes) EXPECT_LE(size, kCompactionChunkBytes);
  EXPECT_EQ(result.chunkSizes.front(), kCompactionChunkBytes);
}

}  // namespace
}  // namespace ns_sensor
