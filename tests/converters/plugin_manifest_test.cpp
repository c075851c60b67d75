// Reading a plug-in manifest: what each key gives, which name the locale picks, and the
// exact error for every key of the wrong kind.
#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "converters/plugin_manifest.hpp"
#include "platform/file_test_support.hpp"

namespace ns_sensor {
namespace {

using palvex::testing::ExpectedFailure;
using palvex::testing::RaisesExactly;

constexpr ExpectedFailure kParseFailed{1503, "Manifest Parsing Failed."};
constexpr ExpectedFailure kMandatory{1503, "Mandatory property not present."};
constexpr ExpectedFailure kConverterNotArray{1504, "Invalid : \"converter\" type, expected type : JSON Array."};

// A manifest with one converter: the identifier and a name are given, `members` adds or
// (coming first, as the first of duplicate keys counts) replaces keys.
std::string OneConverter(const std::string &members) {
  return "{\"converter\":[{" + members + (members.empty() ? "" : ",") +
         "\"identifier\":\"com.example.x\",\"name\":[{\"localeID\":\"en_US\",\"value\":\"X\"}],\"version\":1}]}";
}

ConverterDescription ReadOne(const std::string &members) {
  const auto converters = ReadPluginManifest(OneConverter(members), "en_US");
  EXPECT_EQ(converters.size(), 1u);
  return converters.empty() ? ConverterDescription{} : converters.front();
}

TEST(PluginManifest, ReadsEveryKeyOfEveryConverterInOrder) {
  const std::string manifest = R"({"converter":[
    {"identifier":"com.example.telemetry","name":[{"localeID":"en_US","value":"Telemetry"}],"version":3,
     "force_converter":true,"extensions":["TLM","log"],
     "check_format":[{"byte_seq":"0x4D47","length":2,"offset":0},{"byte_seq":"RIDE","length":4,"offset":16}]},
    {"identifier":"com.example.other","name":[{"localeID":"en_US","value":"Other"}],"version":1}
  ]})";
  const auto converters = ReadPluginManifest(manifest, "en_US");
  ASSERT_EQ(converters.size(), 2u);
  const ConverterDescription &first = converters[0];
  EXPECT_EQ(first.identifier, "com.example.telemetry");
  EXPECT_EQ(first.name, "Telemetry");
  EXPECT_EQ(first.version, 3);
  EXPECT_TRUE(first.forced);
  EXPECT_EQ(first.extensions, (std::vector<std::string>{"tlm", "log"}));
  std::vector<std::string> signatures;
  for (const auto &s : first.signatures) {
    signatures.push_back(s.byteSeq + "/" + std::to_string(s.length) + "@" + std::to_string(s.offset));
  }
  EXPECT_EQ(signatures, (std::vector<std::string>{"0x4D47/2@0", "RIDE/4@16"}));
  const ConverterDescription &second = converters[1];
  EXPECT_EQ(second.identifier, "com.example.other");
  EXPECT_FALSE(second.forced);
  EXPECT_TRUE(second.signatures.empty());
  EXPECT_TRUE(second.extensions.empty());

  EXPECT_TRUE(ReadPluginManifest(R"({"converter":[]})", "en_US").empty());
}

TEST(PluginManifest, OptionalKeysOfAnotherTypeAreIgnored) {
  for (const std::string members :
       {R"("force_converter":"yes")", R"("force_converter":1)", R"("check_format":{"byte_seq":"x"})",
        R"("check_format":"0x00")", R"("extensions":"csv")", R"("extensions":{"a":"csv"})"}) {
    const ConverterDescription read = ReadOne(members);
    EXPECT_FALSE(read.forced) << members;
    EXPECT_TRUE(read.signatures.empty()) << members;
    EXPECT_TRUE(read.extensions.empty()) << members;
  }
}

TEST(PluginManifest, NameFollowsTheLocaleElseTheFirstEnglishEntry) {
  const struct {
    const char *names;
    const char *locale;
    const char *expected;
  } cases[] = {
      {R"([{"localeID":"en_US","value":"E"},{"localeID":"de_DE","value":"D"}])", "de_DE", "D"},
      {R"([{"localeID":"de_DE","value":"D"},{"localeID":"en_US","value":"E"}])", "fr_FR", "E"},
      {R"([{"localeID":"en_US_POSIX","value":"P"},{"localeID":"en_US","value":"E"}])", "ja_JP", "P"},
      {R"([{"localeID":"de_DE","value":"D1"},{"localeID":"de_DE","value":"D2"}])", "de_DE", "D1"},
      {R"([{"localeID":"de_de","value":"d"},{"localeID":"en_US","value":"E"}])", "de_DE", "E"},  // exact, letter case too
      {R"([{"localeID":"en_GB","value":"G"},{"localeID":"EN_US","value":"U"},{"localeID":"en_US","value":"E"}])", "fr_FR", "E"},
      {R"([{"localeID":"en_USA","value":"A"}])", "fr_FR", "A"},  // five characters are compared
  };
  for (const auto &c : cases) {
    const std::string manifest =
        std::string(R"({"converter":[{"identifier":"i","version":1,"name":)") + c.names + "}]}";
    const auto converters = ReadPluginManifest(manifest, c.locale);
    ASSERT_EQ(converters.size(), 1u);
    EXPECT_EQ(converters[0].name, c.expected) << c.names << " in " << c.locale;
  }
}

TEST(PluginManifest, EachWrongKeyRaisesItsError) {
  const auto raises = [](const std::string &manifest, const ExpectedFailure &failure) {
    return RaisesExactly([&] { ReadPluginManifest(manifest, "en_US"); }, failure);
  };
  // The text itself.
  for (const char *text : {"", "{", R"({"converter":[]} {})", "{\"converter\":[],\"x\":\"\xC3\x28\"}",
                           R"({"converter":[{"version":1e999}]})"}) {
    EXPECT_TRUE(raises(text, kParseFailed)) << text;
  }
  for (const char *text : {"{}", "[]", R"({"converter":{}})", R"({"Converter":[]})"}) {
    EXPECT_TRUE(raises(text, kConverterNotArray)) << text;
  }
  // Present but empty, or no name for the locale nor for English.
  for (const std::string &text :
       {OneConverter(R"("identifier":"")"), OneConverter(R"("name":[{"localeID":"en_US","value":""}])"),
        OneConverter(R"("name":[{"localeID":"de_DE","value":"D"}])"),
        OneConverter(R"("name":{"localeID":"en_US","value":"X"})")}) {
    EXPECT_TRUE(raises(text, kMandatory)) << text;
  }
  // Keys of a converter, checked in the order identifier, name, version, signatures, extensions.
  const struct {
    std::string manifest;
    std::string_view key;
  } violations[] = {
      {R"({"converter":[1]})", "converter"},
      {R"({"converter":[{}]})", "identifier"},
      {OneConverter(R"("identifier":7)"), "identifier"},
      {OneConverter(R"("identifier":null,"name":[1],"version":"x")"), "identifier"},
      {OneConverter(R"("name":[1],"version":"x")"), "name"},
      {OneConverter(R"("name":[{"value":"X"}])"), "localeID"},
      {OneConverter(R"("name":[{"localeID":"en_US"}])"), "value"},
      // An entry is checked even when an earlier one was chosen.
      {OneConverter(R"("name":[{"localeID":"en_US","value":"X"},{"localeID":"de_DE"}])"), "value"},
      {R"({"converter":[{"identifier":"i","name":[{"localeID":"en_US","value":"X"}]}]})", "version"},
      {OneConverter(R"("version":"2")"), "version"},
      {OneConverter(R"("check_format":[1])"), "check_format"},
      {OneConverter(R"("check_format":[{"length":1,"offset":0}])"), "byte_seq"},
      {OneConverter(R"("check_format":[{"byte_seq":"x","offset":0}])"), "length"},
      {OneConverter(R"("check_format":[{"byte_seq":"x","length":"1","offset":0}])"), "length"},
      {OneConverter(R"("check_format":[{"byte_seq":"x","length":-1,"offset":0}])"), "length"},
      {OneConverter(R"("check_format":[{"byte_seq":"x","length":1.5,"offset":0}])"), "length"},
      {OneConverter(R"("check_format":[{"byte_seq":"x","length":1e30,"offset":0}])"), "length"},
      {OneConverter(R"("check_format":[{"byte_seq":"x","length":1}])"), "offset"},
      {OneConverter(R"("check_format":[{"byte_seq":"x","length":1,"offset":-0.5}])"), "offset"},
      {OneConverter(R"("extensions":["csv",1])"), "extensions"},
      // One bad converter spoils the manifest, also after a good one.
      {R"({"converter":[{"identifier":"a","name":[{"localeID":"en_US","value":"A"}],"version":1},{"identifier":"b"}]})",
       "version"},
  };
  for (const auto &v : violations) {
    const std::string message = "Schema violation of Property: \"" + std::string(v.key) + "\".";
    EXPECT_TRUE(raises(v.manifest, {1504, message})) << v.manifest;
  }
}

TEST(PluginManifest, NumbersCountAsWholeNumbers) {
  constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();
  constexpr std::int64_t kSmallest = std::numeric_limits<std::int64_t>::min();
  const struct {
    const char *version;
    std::int64_t expected;
  } versions[] = {{"3", 3},         {"-1", -1},      {"2.9", 2},           {"-2.5", -2},
                  {"1e3", 1000},    {"1e30", kLargest}, {"-1e30", kSmallest}, {"18446744073709551615", kLargest}};
  for (const auto &v : versions) {
    EXPECT_EQ(ReadOne(std::string("\"version\":") + v.version).version, v.expected) << v.version;
  }
  const ConverterDescription read =
      ReadOne(R"("check_format":[{"byte_seq":"x","length":2.0,"offset":18446744073709551615}])");
  ASSERT_EQ(read.signatures.size(), 1u);
  EXPECT_EQ(read.signatures[0].length, 2u);
  EXPECT_EQ(read.signatures[0].offset, std::numeric_limits<std::uint64_t>::max());
}

TEST(PluginManifest, ExtensionsAreKeptInLowerCase) {
  const ConverterDescription read = ReadOne(R"("extensions":["MGX","Tlm","x-Y_Z","\u00C9T"])");
  // Only ASCII letters change: extensions of inputs are reduced the same way.
  EXPECT_EQ(read.extensions, (std::vector<std::string>{"mgx", "tlm", "x-y_z", "\xC3\x89t"}));
}

TEST(PluginManifest, TerminatorAndByteOrderMarkAroundTheTextAreNoPartOfIt) {
  const std::string manifest = OneConverter("");
  for (const std::string &text : {manifest + std::string(4, '\0'), manifest + std::string("\0{garbage", 9),
                                  "\xEF\xBB\xBF" + manifest}) {
    EXPECT_EQ(ReadPluginManifest(text, "en_US").size(), 1u);
  }
  EXPECT_TRUE(RaisesExactly([] { ReadPluginManifest(std::string("\0", 1) + OneConverter(""), "en_US"); }, kParseFailed));
}

TEST(PluginManifest, DeepNestingAndHugeStringsAreHandled) {
  constexpr std::size_t kDepth = 200000;
  const std::string nested = std::string(kDepth, '[') + std::string(kDepth, ']');
  EXPECT_EQ(ReadOne("\"extra\":" + nested).identifier, "com.example.x");
  EXPECT_TRUE(RaisesExactly([&] { ReadPluginManifest("{\"converter\":" + std::string(kDepth, '['), "en_US"); },
                            kParseFailed));

  const std::string huge(8 << 20, 'n');
  const auto converters = ReadPluginManifest(
      R"({"converter":[{"identifier":")" + huge + R"(","name":[{"localeID":"en_US","value":")" + huge + R"("}],"version":1}]})",
      "en_US");
  ASSERT_EQ(converters.size(), 1u);
  EXPECT_EQ(converters[0].identifier.size(), huge.size());
  EXPECT_EQ(converters[0].name, huge);
}

}  // namespace
}  // namespace ns_sensor
