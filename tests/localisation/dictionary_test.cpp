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

// What a literal gives with a dictionary loaded ("" unloads; an unknown locale loads none).
TEST_F(DictionaryTest, LookupsByLocale) {
  const struct {
    const char *locale;
    const char *literal;
    const char *expected;
  } cases[] = {
      {"en_US", "$$$/PXError/BadUTF=Bad UTF-32 - out of range.", "Bad UTF-32 - out of range."},
      {"en_US", "$$$/PXError/Nowhere/ToBeFound=Plain default ^1.", "Plain default ^1."},  // in no dictionary
      // A key with several default texts keeps each text in English.
      {"en_US", "$$$/PXError/File_IO/Rename=^1, Rename failure.", "^1, Rename failure."},
      {"en_US", "$$$/PXError/File_IO/Rename=^1, GetWidePath failure.", "^1, GetWidePath failure."},
      {"DE_de", "$$$/PXError/FileNotExist=File not exist at input path:^1.",  // case does not matter
       "Unter dem Eingabepfad ist keine Datei vorhanden: ^1."},
      {"xx_XX", "$$$/PXError/FileNotExist=File not exist at input path:^1.", "File not exist at input path:^1."},
      // Texts that are not keys.
      {"en_US", "plain text without a key", "plain text without a key"},
      {"en_US", "$$$/PXError/Unknown/Empty=", "$$$/PXError/Unknown/Empty="},  // empty default: the whole key
      {"", "$$$/PXError/Unknown/Empty=", ""},
      {"", "$$$/PXError/Unknown/NoEquals", "$$$/PXError/Unknown/NoEquals"},
      {"", "$$$/PXError/FileMapper/EmptyFile=Empty Input file.", "Empty Input file."},
      // Unloaded and loaded again.
      {"fr_FR", "$$$/PXError/NoFileOpened=No file is opened by Palvex.", "Aucun fichier n'est ouvert par Palvex."},
      {"", "$$$/PXError/NoFileOpened=No file is opened by Palvex.", "No file is opened by Palvex."},
      {"fr_FR", "$$$/PXError/NoFileOpened=No file is opened by Palvex.", "Aucun fichier n'est ouvert par Palvex."},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(std::string(c.locale) + " " + c.literal);
    if (*c.locale == '\0') {
      UnloadDictionary();
    } else {
      EXPECT_EQ(LoadDictionary(c.locale), std::string_view(c.locale) != "xx_XX");
    }
    EXPECT_EQ(DictionaryLoaded(), *c.locale != '\0' && std::string_view(c.locale) != "xx_XX");
    EXPECT_EQ(Lookup(c.literal), c.expected);
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

}  // namespace
}  // namespace ns_sensor
