#include "localisation/utf.hpp"

#include <gtest/gtest.h>

#include "api/px_exception.hpp"

namespace ns_sensor {
namespace {

struct EncodeCase {
  std::uint32_t codePoint;
  std::string bytes;
};

TEST(Utf, EncodesCodePointsInTheirShortestForm) {
  const EncodeCase cases[] = {
      {0x80, "\xC2\x80"},          {0xE9, "\xC3\xA9"},         {0x7FF, "\xDF\xBF"},
      {0x800, "\xE0\xA0\x80"},     {0x20AC, "\xE2\x82\xAC"},   {0xFFFF, "\xEF\xBF\xBF"},
      {0x10000, "\xF0\x90\x80\x80"}, {0x1F600, "\xF0\x9F\x98\x80"}, {0x10FFFF, "\xF4\x8F\xBF\xBF"},
  };
  for (const auto &c : cases) {
    char out[4] = {};
    ASSERT_EQ(EncodeCodePoint(c.codePoint, out, sizeof out), c.bytes.size()) << std::hex << c.codePoint;
    EXPECT_EQ(std::string(out, c.bytes.size()), c.bytes) << std::hex << c.codePoint;
  }
}

TEST(Utf, EncoderWritesNothingWithoutRoom) {
  char out[4] = {'x', 'x', 'x', 'x'};
  EXPECT_EQ(EncodeCodePoint(0x20AC, out, 2), 0u);
  EXPECT_EQ(std::string(out, 4), "xxxx");
}

// Which error each bad input raises; all are code 1.
struct BadCase {
  const char *name;
  std::u16string text;
  const char *message;
};

TEST(Utf, RejectsBadUtf16WithItsOwnMessage) {
  const BadCase cases[] = {
      {"leading low surrogate", u"\xDC00x", "Bad UTF-16 - leading low surrogate"},
      {"high surrogate then letter", u"a\xD83Dz", "Bad UTF-16 - missing low surrogate"},
      {"lone high surrogate at end", u"ab\xD83D", "Incomplete Unicode at end of string"},
  };
  for (const auto &c : cases) {
    try {
      Utf16ToUtf8(c.text);
      ADD_FAILURE() << c.name << ": no error";
    } catch (const PX_Exception &e) {
      EXPECT_EQ(e.code(), 1u) << c.name;
      EXPECT_STREQ(e.what(), c.message) << c.name;
    }
  }
  char out[4];
  EXPECT_THROW(EncodeCodePoint(0x110000, out, 4), PX_Exception);
  EXPECT_THROW(EncodeCodePoint(0xD800, out, 4), PX_Exception);
}

TEST(Utf, ConvertsAcrossChunksWithASurrogatePairOnTheBoundary) {
  // 16383 ASCII units fill all but one byte of the first chunk, so the pair that
  // follows cannot fit and must wait whole for the next chunk.
  std::u16string text(kUtf8ChunkBytes - 1, u'a');
  text += u"\xD83D\xDE00";
  text += std::u16string(20000, u'\x00E9');
  const std::string utf8 = Utf16ToUtf8(text);
  EXPECT_EQ(utf8.size(), kUtf8ChunkBytes - 1 + 4 + 40000);
  EXPECT_EQ(utf8.substr(kUtf8ChunkBytes - 1, 4), "\xF0\x9F\x98\x80");
  EXPECT_EQ(Utf8ToUtf16(utf8), text);

  // The chunk itself stops before the pair and leaves it unconsumed.
  std::string chunk(kUtf8ChunkBytes, '\0');
  const ChunkResult first = Utf16ChunkToUtf8(text.data(), text.size(), chunk.data());
  EXPECT_EQ(first.bytesProduced, kUtf8ChunkBytes - 1);
  EXPECT_EQ(first.unitsConsumed, kUtf8ChunkBytes - 1);
}

TEST(Utf, AsciiWideningGivesNothingForHighBytes) {
  EXPECT_EQ(AsciiToUtf16("abc"), u"abc");
  EXPECT_EQ(AsciiToUtf16("ab\xC3\xA9"), u"");
}

TEST(Utf, LenientDecoderReplacesWhatIsNotUtf8) {
  EXPECT_EQ(Utf8ToUtf16("caf\xC3\xA9"), u"caf\u00E9");
  EXPECT_EQ(Utf8ToUtf16("a\xFF" "b"), u"a\uFFFDb");
  EXPECT_EQ(Utf8ToUtf16("\xC0\xAF"), u"\uFFFD\uFFFD");          // overlong
  EXPECT_EQ(Utf8ToUtf16("\xED\xA0\x80"), u"\uFFFD\uFFFD\uFFFD");  // encoded surrogate
  EXPECT_EQ(Utf8ToUtf16("\xE2\x82"), u"\uFFFD\uFFFD");          // cut short
}

}  // namespace
}  // namespace ns_sensor
