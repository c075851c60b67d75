// Lines, words and numbers of a motion capture file.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "converters/bvh_reader.hpp"

namespace ns_sensor {
namespace {

std::vector<std::string> AllLines(std::string_view text) {
  BvhLines lines(text);
  std::vector<std::string> all;
  std::string_view line;
  while (lines.Next(line)) all.emplace_back(line);
  return all;
}

TEST(BvhReader, LinesEndAtLineFeedCarriageReturnOrBoth) {
  using Lines = std::vector<std::string>;
  EXPECT_EQ(AllLines("a\nb\r\nc\rd"), (Lines{"a", "b", "c", "d"}));
  EXPECT_EQ(AllLines("a\n"), (Lines{"a"}));
  EXPECT_EQ(AllLines("a\r\n\r\nb\n\n"), (Lines{"a", "", "b", ""}));
  EXPECT_EQ(AllLines("\n"), (Lines{""}));
  EXPECT_TRUE(AllLines("").empty());
  EXPECT_EQ(AllLines(std::string("a\0b\n", 4)), (Lines{std::string("a\0b", 3)}));
}

TEST(BvhReader, WordsAreSeparatedByAnyWhiteSpace) {
  BvhWords words(" \tOFFSET\v1.5 \f -2\r");
  EXPECT_EQ(words.Next(), "OFFSET");
  EXPECT_EQ(words.Next(), "1.5");
  EXPECT_EQ(words.Rest(), " \f -2\r");
  EXPECT_EQ(words.Next(), "-2");
  EXPECT_EQ(words.Next(), "");
  EXPECT_EQ(words.Next(), "");
  EXPECT_EQ(FirstWord("   "), "");
}

TEST(BvhReader, NumbersAreWholeFiniteWords) {
  const struct {
    const char *word;
    bool read;
    double value;
  } cases[] = {
      {"0", true, 0.0},         {"-12.25", true, -12.25}, {"+3", true, 3.0},  {".5", true, 0.5},
      {"1e3", true, 1000.0},    {"5.", true, 5.0},        {"", false, 0},     {"+", false, 0},
      {"+-1", false, 0},        {"1.5x", false, 0},       {"x", false, 0},    {"nan", false, 0},
      {"inf", false, 0},        {"-infinity", false, 0},  {"1e999", false, 0}, {"0x10", false, 0},
      {"1,5", false, 0},
  };
  for (const auto &c : cases) {
    double value = -1.0;
    EXPECT_EQ(ReadNumber(c.word, value), c.read) << c.word;
    if (c.read) {
      EXPECT_EQ(value, c.value) << c.word;
    }
  }
}

}  // namespace
}  // namespace ns_sensor
