// The message table and the ten dictionaries agree with each other.
#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <set>
#include <sstream>

#include "api/messages.hpp"
#include "localisation/utf.hpp"
#include "platform/module_resources.hpp"

namespace ns_sensor {
namespace {

const char *const kTranslatedLocales[] = {"de_DE", "es_ES", "fr_FR", "it_IT", "ja_JP",
                                          "ko_KR", "pt_BR", "ru_RU", "zh_CN"};

// Keys whose literals are ours, for codes raised without a text: outside the dictionaries.
bool IsOwnCodeOnlyKey(std::string_view key) {
  for (std::string_view prefix : {"$$$/PXError/Converter/", "$$$/PXError/ObjectModel/", "$$$/PXError/Writer/"}) {
    if (key.substr(0, prefix.size()) == prefix) return true;
  }
  return false;
}

struct RawDictionary {
  std::vector<std::string> lines;  // UTF-8, without line ends
  std::string lineEnd;             // "\n" or "\r\n", when every line uses the same
  bool byteOrderMark = false;
  bool endsWithLineBreak = false;
  std::map<std::string, std::string> entries;  // key -> text
};

RawDictionary ReadRaw(const std::string &locale) {
  const auto bytes = palvex::platform::FindModuleResource("DICT", "PX_" + locale);
  std::u16string text;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    text.push_back(static_cast<char16_t>(static_cast<unsigned>(bytes[i]) | static_cast<unsigned>(bytes[i + 1]) << 8));
  }
  RawDictionary raw;
  raw.byteOrderMark = !text.empty() && text[0] == u'\uFEFF';
  const std::string utf8 = Utf16ToUtf8(std::u16string_view(text).substr(raw.byteOrderMark ? 1 : 0));
  raw.endsWithLineBreak = !utf8.empty() && utf8.back() == '\n';
  std::set<std::string> ends;
  std::istringstream in(utf8);
  for (std::string line; std::getline(in, line);) {
    const bool crlf = !line.empty() && line.back() == '\r';
    if (crlf) line.pop_back();
    ends.insert(crlf ? "\r\n" : "\n");
    raw.lines.push_back(line);
    const auto eq = line.find('=');
    if (line.size() >= 2 && line.front() == '"' && line.back() == '"' && eq != std::string::npos) {
      raw.entries[line.substr(1, eq - 1)] = line.substr(eq + 1, line.size() - eq - 2);
    }
  }
  if (ends.size() == 1) raw.lineEnd = *ends.begin();
  return raw;
}

std::multiset<std::string> Marks(const std::string &text) {
  std::multiset<std::string> marks;
  static const std::regex mark("\\^[1-4]");
  for (auto it = std::sregex_iterator(text.begin(), text.end(), mark); it != std::sregex_iterator(); ++it) {
    marks.insert(it->str());
  }
  return marks;
}

// Key -> the default texts the table raises it with.
std::map<std::string, std::set<std::string>> TableKeys() {
  std::map<std::string, std::set<std::string>> keys;
  for (const MessageRow &row : AllMessages()) {
    keys[std::string(MessageKey(row.literal))].insert(std::string(DefaultText(row.literal)));
  }
  return keys;
}

TEST(MessageTable, EveryLiteralIsAKeyWithADefaultText) {
  for (const MessageRow &row : AllMessages()) {
    EXPECT_TRUE(row.literal.starts_with("$$$/PXError")) << row.literal;
    EXPECT_NE(row.literal.find('='), std::string_view::npos) << row.literal;
    EXPECT_FALSE(DefaultText(row.literal).empty()) << row.literal;
    EXPECT_NE(row.code, 0u) << row.literal;
    EXPECT_EQ(&Message(row.id), &row);
  }
}

TEST(MessageTable, DictionaryFilesHaveTheResourceFormat) {
  const RawDictionary english = ReadRaw("EN_US");
  EXPECT_TRUE(english.byteOrderMark);
  EXPECT_TRUE(english.endsWithLineBreak);
  EXPECT_EQ(english.lineEnd, "\n");
  EXPECT_EQ(english.lines.size(), 106u);
  EXPECT_EQ(english.entries.size(), 106u);
  for (const char *locale : kTranslatedLocales) {
    const RawDictionary raw = ReadRaw(locale);
    EXPECT_TRUE(raw.byteOrderMark) << locale;
    EXPECT_TRUE(raw.endsWithLineBreak) << locale;
    EXPECT_EQ(raw.lineEnd, "\r\n") << locale;
    EXPECT_EQ(raw.lines.size(), 119u) << locale;
    EXPECT_EQ(raw.entries.size(), 119u) << locale;
  }
}

TEST(MessageTable, EnglishTextsAreTheDefaultTexts) {
  const auto keys = TableKeys();
  for (const auto &[key, text] : ReadRaw("EN_US").entries) {
    const auto found = keys.find(key);
    ASSERT_NE(found, keys.end()) << key;
    ASSERT_EQ(found->second.size(), 1u) << key << " has several default texts and must stay out of English";
    EXPECT_EQ(*found->second.begin(), text) << key;
  }
}

TEST(MessageTable, TranslationsCoverEveryKeyAndKeepTheMarks) {
  const auto keys = TableKeys();
  std::set<std::string> dictionaryKeys;
  for (const auto &[key, texts] : keys) {
    if (!IsOwnCodeOnlyKey(key)) dictionaryKeys.insert(key);
  }
  ASSERT_EQ(dictionaryKeys.size(), 119u);
  for (const char *locale : kTranslatedLocales) {
    const RawDictionary raw = ReadRaw(locale);
    std::set<std::string> present;
    for (const auto &[key, text] : raw.entries) {
      present.insert(key);
      const auto found = keys.find(key);
      ASSERT_NE(found, keys.end()) << locale << ": unknown key " << key;
      for (const std::string &english : found->second) {
        EXPECT_EQ(Marks(text), Marks(english)) << locale << " " << key << ": " << text;
        EXPECT_NE(text, english) << locale << " " << key << " is not translated";
      }
    }
    EXPECT_EQ(present, dictionaryKeys) << locale;
  }
}

}  // namespace
}  // namespace ns_sensor
