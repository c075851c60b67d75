// Discovery: which modules of a folder become converters, which are reported, and which
// are passed over in silence. The modules are built by tests/plugins.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>

#include "api/messages.hpp"
#include "converters/plugin_discovery.hpp"
#include "localisation/dictionary.hpp"
#include "platform/file_test_support.hpp"
#include "plugin_test_support.hpp"

namespace ns_sensor::testing {
namespace {

namespace fs = std::filesystem;
using palvex::testing::ScratchFolder;

// Converter names are chosen for the locale of the dictionary.
class PluginDiscoveryTest : public ::testing::Test {
 protected:
  void SetUp() override { LoadDictionary("en_US"); }
  void TearDown() override { UnloadDictionary(); }
};

std::vector<Failure> FailuresOf(const Discovered &discovered) {
  std::vector<Failure> failures;
  for (const PX_Exception &failure : discovered.failures) failures.push_back(FailureOf(failure));
  return failures;
}

std::vector<std::string> KeysOf(const ConverterMap &map) {
  std::vector<std::string> keys;
  for (const auto &[key, entry] : map) keys.push_back(key);
  return keys;
}

TEST_F(PluginDiscoveryTest, EveryRefusedManifestIsReportedInFileOrderAndTheRestIsRegistered) {
  const Discovered discovered(PluginFolder("manifests"));
  const std::vector<Failure> expected = {
      {1503, "Manifest Parsing Failed."},
      {1504, "Invalid : \"converter\" type, expected type : JSON Array."},
      {1504, "Schema violation of Property: \"identifier\"."},
      {1504, "Schema violation of Property: \"localeID\"."},
      {1504, "Schema violation of Property: \"version\"."},
      {1504, "Schema violation of Property: \"length\"."},
      {1504, "Schema violation of Property: \"extensions\"."},
      {1503, "Mandatory property not present."},  // no name for en_US
      {1503, "Mandatory property not present."},  // empty identifier
  };
  EXPECT_EQ(FailuresOf(discovered), expected);
  // Only the good module is kept; the one without a manifest is not a plug-in at all.
  ASSERT_EQ(discovered.plugins.Modules().size(), 1u);
  EXPECT_EQ(discovered.plugins.Modules()[0]->Identifier(), "test.module.m11");
  EXPECT_EQ(discovered.plugins.Modules()[0]->State(), ModuleState::NotLoaded) << "reading a manifest runs no code";
  EXPECT_EQ(KeysOf(discovered.converters.Plugins()), (std::vector<std::string>{"pxk", "pxm", "pxr", "pxt"}))
      << "extensions are registered lower-cased";
  EXPECT_EQ(discovered.converters.Formats().at("pxt"), "Test text");
  EXPECT_TRUE(discovered.converters.Native().empty());
}

TEST_F(PluginDiscoveryTest, ConverterNamesFollowTheDictionaryLocale) {
  LoadDictionary("de_DE");
  const Discovered discovered(PluginFolder("conversions"));
  EXPECT_EQ(discovered.converters.Formats().at("pxt"), "Testtext");
  EXPECT_EQ(discovered.converters.Formats().at("pxk"), "Test text keeping its root") << "falls back to en_US";
}

TEST(PluginRegistryEnter, ReplacementRuleForOneIdentifier) {
  struct Case {
    const char *label;
    std::int64_t firstVersion;
    bool firstForced;
    std::int64_t secondVersion;
    bool secondForced;
    bool secondWins;
  };
  const Case cases[] = {
      {"greater version replaces", 1, false, 2, false, true},
      {"smaller version stays out", 2, false, 1, false, false},
      {"equal versions: the first stays", 1, false, 1, false, false},
      {"a forced newcomer replaces a greater version", 2, false, 1, true, true},
      {"a forced converter stays against a greater version", 1, true, 2, false, false},
      {"of two forced converters the first stays", 1, true, 2, true, false},
  };
  for (const Case &c : cases) {
    PluginRegistry registry;
    const auto module = std::make_shared<PluginModule>("unused.mgx", "test.module");
    const auto make = [&](std::int64_t version, bool forced, const char *name) {
      ConverterDescription description;
      description.identifier = "same.identifier";
      description.name = name;
      description.version = version;
      description.forced = forced;
      return std::make_shared<PX_PLUGIN::PX_ConverterHandler>(description, module);
    };
    EXPECT_TRUE(registry.Enter(make(c.firstVersion, c.firstForced, "first"))) << c.label;
    EXPECT_EQ(registry.Enter(make(c.secondVersion, c.secondForced, "second")), c.secondWins) << c.label;
    ASSERT_EQ(registry.Converters().size(), 1u) << c.label;
    EXPECT_EQ(registry.Find("same.identifier")->Description().name, c.secondWins ? "second" : "first") << c.label;
  }
}

TEST_F(PluginDiscoveryTest, IdentifiersSharedAcrossModulesAndAnExtensionClaimedTwice) {
  // a_first.mgx is met before b_second.mgx.
  const Discovered discovered(PluginFolder("replacement"));
  EXPECT_TRUE(discovered.failures.empty());
  const struct {
    const char *identifier;
    const char *extension;
    const char *used;
  } expected[] = {
      {"dup.plain", "pa", "Plain 2"},        {"dup.forced", "fo", "Forced 1"}, {"dup.late", "la", "Late 1 forced"},
      {"dup.equal", "eq", "Equal A"},        {"dup.both", "bo", "Both 1"},
      // Both claim "shared"; registration goes by identifier, so claim.a owns it although
      // its module came second.
      {"claim.a", "shared", "Claim A"},
  };
  for (const auto &row : expected) {
    const auto converter = discovered.plugins.Find(row.identifier);
    ASSERT_NE(converter, nullptr) << row.identifier;
    EXPECT_EQ(converter->Description().name, row.used) << row.identifier;
    EXPECT_EQ(discovered.converters.Formats().at(row.extension), row.used) << row.extension;
  }
  EXPECT_NE(discovered.plugins.Find("claim.b"), nullptr) << "it stays registered without the extension";
  EXPECT_EQ(discovered.plugins.Modules().size(), 2u);
}

TEST(PluginModuleExtensions, CommaSeparatedListWithDefault) {
  using Extensions = std::vector<std::string>;
  EXPECT_EQ(ModuleExtensions(""), Extensions{"mgx"});
  EXPECT_EQ(ModuleExtensions(",, ,"), Extensions{"mgx"});
  EXPECT_EQ(ModuleExtensions("so"), Extensions{"so"});
  EXPECT_EQ(ModuleExtensions(" .DLL , mgx,,"), (Extensions{"dll", "mgx"}));
}

// Files of a scratch folder that discovery must pass over, report, or at worst register
// and then fail to load; never crash on.
class PluginDiscoveryBadInputTest : public PluginDiscoveryTest {
 protected:
  std::string GoodModuleBytes() const {
    std::ifstream file(palvex::testing::AsPath(PluginModulePath("conversions", "good_text")), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
  }

  // Every module that was registered must refuse to load with code 1021.
  static void ExpectEveryModuleFailsToLoad(const Discovered &discovered, const char *label) {
    for (const auto &module : discovered.plugins.Modules()) {
      EXPECT_TRUE(RaisesFailure([&] { module->Load(); }, {1021, "Can't load module."})) << label;
    }
  }

  ScratchFolder scratch_;
};

// The machine field of a module header changed to one no loader here runs.
std::string ForAnotherArchitecture(std::string bytes) {
  if (bytes.size() > 20 && bytes.compare(0, 4, "\x7f" "ELF") == 0) {
    bytes[18] = '\x15';  // EM_PARISC
    bytes[19] = '\0';
  } else if (bytes.size() > 0x40 && bytes.compare(0, 2, "MZ") == 0) {
    const auto peOffset = static_cast<unsigned char>(bytes[0x3C]) | static_cast<unsigned char>(bytes[0x3D]) << 8;
    if (static_cast<std::size_t>(peOffset) + 6 < bytes.size()) {
      bytes[peOffset + 4] = '\xC4';  // ARMNT
      bytes[peOffset + 5] = '\x01';
    }
  }
  return bytes;
}

TEST_F(PluginDiscoveryBadInputTest, FilesThatAreNoUsableModule) {
  const std::string good = GoodModuleBytes();
  ASSERT_GT(good.size(), 4096u);
  const struct {
    const char *label;
    std::function<void(const ScratchFolder &)> make;
  } cases[] = {
      {"empty folder", [](const ScratchFolder &) {}},
      {"text with the module extension", [](const ScratchFolder &s) { s.WriteFile("notes.mgx", "not a module"); }},
      {"empty file", [](const ScratchFolder &s) { s.WriteFile("empty.mgx", ""); }},
      {"truncated to its header", [&](const ScratchFolder &s) { s.WriteFile("short.mgx", good.substr(0, 64)); }},
      {"truncated to half", [&](const ScratchFolder &s) { s.WriteFile("half.mgx", good.substr(0, good.size() / 2)); }},
      {"for another architecture", [&](const ScratchFolder &s) { s.WriteFile("arch.mgx", ForAnotherArchitecture(good)); }},
      {"directories only, one named as a module",
       [](const ScratchFolder &s) {
         fs::create_directory(s.root() / "folder.mgx");
         fs::create_directory(s.root() / "other");
       }},
      {"a link to nowhere",
       [](const ScratchFolder &s) {
         std::error_code unsupported;
         fs::create_symlink(s.root() / "missing.mgx", s.root() / "dangling.mgx", unsupported);
       }},
      {"a module under another extension", [&](const ScratchFolder &s) { s.WriteFile("good.so", good); }},
  };
  for (const auto &c : cases) {
    ScratchFolder folder;
    c.make(folder);
    const Discovered discovered(folder.root().string());
    EXPECT_TRUE(discovered.failures.empty()) << c.label;
    ExpectEveryModuleFailsToLoad(discovered, c.label);
  }
}

TEST_F(PluginDiscoveryBadInputTest, ALinkToAModuleIsFollowed) {
  std::error_code unsupported;
  fs::create_symlink(palvex::testing::AsPath(PluginModulePath("conversions", "good_text")),
                     scratch_.root() / "linked.mgx", unsupported);
  if (unsupported) GTEST_SKIP() << "no symbolic links here: " << unsupported.message();
  Discovered discovered(scratch_.root().string());
  EXPECT_TRUE(discovered.failures.empty());
  ASSERT_EQ(discovered.plugins.Modules().size(), 1u);
  EXPECT_NO_THROW(discovered.plugins.Modules()[0]->Load());
}

TEST_F(PluginDiscoveryBadInputTest, OtherModuleExtensionsWhenConfigured) {
  scratch_.WriteFile("good.so", GoodModuleBytes());
  EXPECT_TRUE(Discovered(scratch_.root().string()).plugins.Modules().empty()) << "only .mgx by default";
  Discovered discovered(scratch_.root().string(), "dll, SO");
  ASSERT_EQ(discovered.plugins.Modules().size(), 1u);
  EXPECT_NO_THROW(discovered.plugins.Modules()[0]->Load());
}

TEST_F(PluginDiscoveryBadInputTest, AFolderThatCannotBeListedIsOneReport) {
  const std::uint32_t notAFolder = Message(Msg::FileIoOpenFolder).code;
  const std::string file = scratch_.WriteFile("plain.txt", "x");
  for (const std::string &folder : {scratch_.Path("missing"), file}) {
    const Discovered discovered(folder);
    ASSERT_EQ(discovered.failures.size(), 1u) << folder;
    EXPECT_EQ(discovered.failures[0].code(), notAFolder) << folder;
    EXPECT_TRUE(discovered.converters.Plugins().empty()) << folder;
  }
  EXPECT_TRUE(Discovered("").failures.empty()) << "no folder configured: no plug-ins, nothing to report";
}

}  // namespace
}  // namespace ns_sensor::testing
