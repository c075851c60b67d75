#include "localisation/dictionary.hpp"

#include <gtest/gtest.h>

#include <cstring>

#include "localisation/utf.hpp"
#include "platform/module_resources.hpp"

namespace ns_sensor {
namespace {

std::string Lookup(std::string_view literal) { return Utf16ToUtf8(LookupMessage(literal)); }

// Restores the default English dictionary whatever a test loaded.
class DictionaryTest : public ::testing::Test {
 protected:
  void TearDown() override { LoadDictionary("en_US"); }
};

TEST_F(DictionaryTest, EnglishYieldsTheDefaultText) {
  ASSERT_TRUE(LoadDictionary("en_US"));
  EXPECT_EQ(Lookup("$$$/PXError/BadUTF=Bad UTF-32 - out of range."), "Bad UTF-32 - out of range.");
  // A key no dictionary holds yields its default text.
  EXPECT_EQ(Lookup("$$$/PXError/Nowhere/ToBeFound=Plain default ^1."), "Plain default ^1.");
}

TEST_F(DictionaryTest, KeysWithSeveralDefaultTextsKeepEachTextInEnglish) {
  ASSERT_TRUE(LoadDictionary("en_US"));
  EXPECT_EQ(Lookup("$$$/PXError/File_IO/Rename=^1, Rename failure."), "^1, Rename failure.");
  EXPECT_EQ(Lookup("$$$/PXError/File_IO/Rename=^1, GetWidePath failure."), "^1, GetWidePath failure.");
}

TEST_F(DictionaryTest, LocaleNamesMatchWithoutRegardToCase) {
  EXPECT_TRUE(LoadDictionary("DE_de"));
  EXPECT_EQ(Lookup("$$$/PXError/FileNotExist=File not exist at input path:^1."),
            "Unter dem Eingabepfad ist keine Datei vorhanden: ^1.");
}

TEST_F(DictionaryTest, UnknownLocaleLeavesDefaultTexts) {
  EXPECT_FALSE(LoadDictionary("xx_XX"));
  EXPECT_FALSE(DictionaryLoaded());
  EXPECT_EQ(Lookup("$$$/PXError/FileNotExist=File not exist at input path:^1."),
            "File not exist at input path:^1.");
}

TEST_F(DictionaryTest, FallbacksForTextsThatAreNotKeys) {
  struct Case {
    bool loaded;
    const char *literal;
    const char *expected;
  };
  const Case cases[] = {
      {true, "plain text without a key", "plain text without a key"},
      {true, "$$$/PXError/Unknown/Empty=", "$$$/PXError/Unknown/Empty="},  // empty default: the whole key
      {false, "$$$/PXError/Unknown/Empty=", ""},
      {false, "$$$/PXError/Unknown/NoEquals", "$$$/PXError/Unknown/NoEquals"},
      {false, "$$$/PXError/FileMapper/EmptyFile=Empty Input file.", "Empty Input file."},
  };
  for (const auto &c : cases) {
    if (c.loaded) {
      ASSERT_TRUE(LoadDictionary("en_US"));
    } else {
      UnloadDictionary();
    }
    EXPECT_EQ(Lookup(c.literal), c.expected) << c.literal;
  }
}

TEST_F(DictionaryTest, ParserAcceptsBothLineEndingsAndSkipsJunk) {
  const std::u16string text = u"\uFEFF\"$$$/A=one\"\r\nnot quoted\n\"no equals\"\n\"$$$/B=t=w=o\"";
  std::vector<std::byte> bytes;
  for (const char16_t unit : text) {
    bytes.push_back(static_cast<std::byte>(unit & 0xFF));
    bytes.push_back(static_cast<std::byte>(unit >> 8));
  }
  const auto parsed = ParsedDictionary::Parse(bytes);
  EXPECT_EQ(parsed->size(), 2u);
  ASSERT_NE(parsed->Find("$$$/A"), nullptr);
  EXPECT_EQ(*parsed->Find("$$$/A"), u"one");
  EXPECT_EQ(*parsed->Find("$$$/B"), u"t=w=o");
}

TEST_F(DictionaryTest, UnloadThenLoadAgain) {
  ASSERT_TRUE(LoadDictionary("fr_FR"));
  UnloadDictionary();
  EXPECT_FALSE(DictionaryLoaded());
  EXPECT_EQ(Lookup("$$$/PXError/NoFileOpened=No file is opened by Palvex."), "No file is opened by Palvex.");
  ASSERT_TRUE(LoadDictionary("fr_FR"));
  EXPECT_NE(Lookup("$$$/PXError/NoFileOpened=No file is opened by Palvex."), "No file is opened by Palvex.");
}

}  // namespace
}  // namespace ns_sensor
