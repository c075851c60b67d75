// Lines, fields and encodings of delimited text.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "converters/csv_reader.hpp"

namespace ns_sensor {
namespace {

std::vector<std::string> Lines(std::string_view bytes, std::size_t pieceSize = 65536) {
  MemoryText text(bytes, pieceSize);
  LineReader reader(text);
  std::vector<std::string> lines;
  std::string line;
  while (reader.Next(line)) lines.push_back(line);
  return lines;
}

using Strings = std::vector<std::string>;

TEST(LineReader, BreaksQuotesAndEnds) {
  const struct {
    const char *label;
    std::string input;
    Strings lines;
  } cases[] = {
      {"line feeds", "a\nb\n", {"a", "b"}},
      {"no break at the end", "a\nb", {"a", "b"}},
      {"LF CR is one break", "a\n\rb", {"a", "b"}},
      {"CR LF leaves an empty line", "a\r\nb", {"a", "", "b"}},
      {"CR alone", "a\rb", {"a", "b"}},
      {"breaks inside quotes are kept", "\"x\ny\",1\n2", {"\"x\ny\",1", "2"}},
      {"doubled quotes keep the section open", "\"a\"\"\nb\"\nc", {"\"a\"\"\nb\"", "c"}},
      {"unclosed quote runs to the end", "a,\"b\nc\n", {"a,\"b\nc\n"}},
      {"empty text", "", {}},
      {"only a break", "\n", {""}},
      {"NUL bytes are ordinary", std::string("a\0b\n", 4), {std::string("a\0b", 3)}},
  };
  for (const auto &c : cases) {
    EXPECT_EQ(Lines(c.input), c.lines) << c.label;
    EXPECT_EQ(Lines(c.input, 1), c.lines) << c.label << ", one byte per piece";
  }
}

TEST(SplitFields, QuotesDelimitersAndEmptyFields) {
  const struct {
    std::string line;
    char delimiter;
    Strings fields;
  } cases[] = {
      {"a,,b", ',', {"a", "", "b"}},
      {",a", ',', {"", "a"}},
      {"a,b,", ',', {"a", "b"}},
      {"", ',', {}},
      {" a , b ", ',', {" a ", " b "}},
      {"\"a,b\",c", ',', {"a,b", "c"}},
      {"\"say \"\"hi\"\"\"", ',', {"say \"hi\""}},
      {"\"ab\"cd,e", ',', {"abcd", "e"}},
      {"\"unclosed,x", ',', {"unclosed,x"}},
      {"1,5\t2", '\t', {"1,5", "2"}},
      {"\"a\tb\"\tc", '\t', {"a\tb", "c"}},
  };
  for (const auto &c : cases) EXPECT_EQ(SplitFields(c.line, c.delimiter), c.fields) << c.line;
}

TEST(TextEncoding, MarksAreDetectedAndLeftOut) {
  EXPECT_EQ(DetectEncoding("\xEF\xBB\xBFx"), TextEncoding::Utf8Marked);
  EXPECT_EQ(DetectEncoding("\xFE\xFFx"), TextEncoding::Utf16Big);
  EXPECT_EQ(DetectEncoding("\xFF\xFEx"), TextEncoding::Utf16Little);
  EXPECT_EQ(DetectEncoding("\xEF\xBB"), TextEncoding::Bytes);
  EXPECT_EQ(Lines("\xEF\xBB\xBFname\n1\n"), (Strings{"name", "1"}));
  EXPECT_EQ(Lines("\xEF\xBB\xBF"), Strings{});
}

// "Tä,😀\n" in both byte orders, with a mark.
TEST(TextEncoding, Utf16InBothByteOrdersBecomesUtf8) {
  const std::u16string text = u"T\u00e4,\U0001F600\n1";
  std::string little = "\xFF\xFE", big = "\xFE\xFF";
  for (const char16_t unit : text) {
    little += static_cast<char>(unit & 0xFF);
    little += static_cast<char>(unit >> 8);
    big += static_cast<char>(unit >> 8);
    big += static_cast<char>(unit & 0xFF);
  }
  const Strings expected = {"T\xC3\xA4,\xF0\x9F\x98\x80", "1"};
  EXPECT_EQ(Lines(little), expected);
  EXPECT_EQ(Lines(big), expected);
}

TEST(TextEncoding, BrokenUtf16BecomesReplacementCharacters) {
  std::string decoded;
  Utf16Decoder decoder(false);
  decoder.Decode(std::string("\x00\xDC" "a\x00" "\x3D", 5), decoded);  // lone low surrogate, "a", odd byte
  decoder.Finish(decoded);
  EXPECT_EQ(decoded, "\xEF\xBF\xBD" "a" "\xEF\xBF\xBD");

  // A pair split across two pieces is joined.
  std::string joined;
  Utf16Decoder split(true);
  split.Decode(std::string("\xD8", 1), joined);
  split.Decode(std::string("\x3D\xDE", 2), joined);
  split.Decode(std::string("\x00", 1), joined);
  split.Finish(joined);
  EXPECT_EQ(joined, "\xF0\x9F\x98\x80");
}

}  // namespace
}  // namespace ns_sensor
