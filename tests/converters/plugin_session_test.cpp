// Plug-in converters in selection and conversion: checks, sessions, conversions, and the
// failures each step reports, with the plug-in's own codes and details.
#include <gtest/gtest.h>

#include <memory>

#include "converters/converter_selection.hpp"
#include "converters/plugin_host_interface.hpp"
#include "localisation/dictionary.hpp"
#include "platform/file_test_support.hpp"
#include "plugin_test_support.hpp"

namespace ns_sensor::testing {
namespace {

using palvex::testing::ScratchFolder;

class PluginSessionTest : public ::testing::Test {
 protected:
  void SetUp() override {
    LoadDictionary("en_US");
    discovered_ = std::make_unique<Discovered>(PluginFolder("conversions"));
    RegisterBuiltInConverters(discovered_->converters);
  }
  void TearDown() override {
    discovered_.reset();
    UnloadDictionary();
  }

  ConversionRequest Request(std::string_view name, std::string_view contents) const {
    const std::string input = scratch_.WriteFile(name, contents);
    return ConversionRequest{input, InputExtension(input), scratch_.Path("out.mgjson")};
  }

  // The extension of the converter that selection picks for the input.
  std::string Selected(std::string_view name, std::string_view contents) const {
    const ConverterEntry *entry = FindConverter(discovered_->converters, Request(name, contents));
    return entry ? entry->extension : "(none)";
  }

  // Selects, creates and converts, as the manager does.
  bool Convert(const ConversionRequest &request) const {
    const ConverterEntry *entry = FindConverter(discovered_->converters, request);
    if (entry == nullptr) ADD_FAILURE() << "no converter for " << request.inputPath;
    return entry != nullptr && entry->create(*entry, request)->Convert();
  }

  std::unique_ptr<Discovered> discovered_;
  ScratchFolder scratch_;
};

TEST_F(PluginSessionTest, DiscoveryOfTheFolderReportsOnlyItsMalformedManifest) {
  ASSERT_EQ(discovered_->failures.size(), 1u);
  EXPECT_EQ(FailureOf(discovered_->failures[0]), (Failure{1503, "Manifest Parsing Failed."}));
}

TEST_F(PluginSessionTest, ATextInputIsConvertedAndTheSessionLeavesNothing) {
  const ConversionRequest request = Request("reading.PXT", TextInput());
  EXPECT_TRUE(Convert(request));
  EXPECT_GT(palvex::testing::ReadWholeFile(request.outputPath).size(), 0u);
  EXPECT_EQ(LivePluginRootCount(), 0u);
}

TEST_F(PluginSessionTest, PluginsComeFirstInSelection) {
  const struct {
    const char *name;
    const char *contents;
    const char *expected;
  } cases[] = {
      {"a.pxt", "PXTEXT\n", "pxt"},
      {"a.PXT", "PXTEXT\n", "pxt"},
      {"a.pxt", "plain text", "csv"},       // the signature does not match; the walk ends at CSV
      {"a.pxr", "PXTEXT\n", "pxt"},         // its converter refuses; the walk finds the text one
      {"a.dat", "MG\n0 1\n", "pxm"},        // 0x4D47 at offset 0
      {"a.dat", "M", "csv"},                // too short for the signature
      {"a.csv", "PXTEXT\n", "csv"},         // the extension's own converter accepts it first
      {"noextension", "PXKEEP\n", "pxk"},
  };
  for (const auto &c : cases) EXPECT_EQ(Selected(c.name, c.contents), c.expected) << c.name << " " << c.contents;
}

TEST_F(PluginSessionTest, EveryStepReportsThePluginsFailure) {
  const struct {
    const char *name;
    const char *signature;
    Failure expected;
  } cases[] = {
      {"a.pxc", "PXCHECK", {7201, "Error in Plugin Check File Format of converter Failing check with id test.check-error.", 31, 32}},
      {"a.pxs", "PXSESSION", {7301, "Initialize Session Failed of converter Failing session with id test.session-error.", 41, 42}},
      {"a.pxe", "PXCONVERT", {7401, "Conversion to MGJSON using converter Failing conversion with id test.convert-error failed.", 51, 52}},
      {"a.pxn", "PXNOTHING", {1506, "Conversion to MGJSON using converter Converting nothing with id test.no-success failed."}},
      {"a.pxi", "PXINIT", {1500, "Initialization of plugin with id test.module.fail-initialize failed."}},
      {"b.pxi", "PXINIT", {1021, "Can't load module."}},  // the same module, not tried again
      {"a.pxx", "PXNOENTRY", {1021, "Can't load module."}},
      {"b.pxx", "PXNOENTRY", {1021, "Can't load module."}},
  };
  for (const auto &c : cases) {
    const ConversionRequest request = Request(c.name, TextInput(c.signature));
    EXPECT_TRUE(RaisesFailure([&] { Convert(request); }, c.expected)) << c.name;
  }
  EXPECT_EQ(LivePluginRootCount(), 0u);
}

TEST_F(PluginSessionTest, CreatingWithAModuleThatCannotLoadIsPluginNotLoaded) {
  const ConverterEntry &entry = discovered_->converters.Plugins().at("pxx");
  EXPECT_TRUE(RaisesFailure([&] { entry.create(entry, Request("a.pxx", "PXNOENTRY")); }, {1021, "Plugin not loaded."}));
}

TEST_F(PluginSessionTest, ARootThePluginKeepsIsLetGoOfWhenTheSessionEnds) {
  const ConversionRequest request = Request("a.pxk", TextInput("PXKEEP"));
  const ConverterEntry *entry = FindConverter(discovered_->converters, request);
  ASSERT_NE(entry, nullptr);
  std::shared_ptr<PX_ConverterHandlerBase> converter = entry->create(*entry, request);
  EXPECT_TRUE(converter->Convert());
  EXPECT_EQ(LivePluginRootCount(), 1u);
  converter.reset();
  EXPECT_EQ(LivePluginRootCount(), 0u);
  EXPECT_GT(palvex::testing::ReadWholeFile(request.outputPath).size(), 0u) << "the committed file stays";
}

TEST_F(PluginSessionTest, ASessionWhoseModuleWasUnloadedFailsToConvertAndEndsQuietly) {
  const ConversionRequest request = Request("a.pxt", TextInput());
  const ConverterEntry *entry = FindConverter(discovered_->converters, request);
  ASSERT_NE(entry, nullptr);
  std::shared_ptr<PX_ConverterHandlerBase> converter = entry->create(*entry, request);
  discovered_->plugins.UnloadModules();
  EXPECT_TRUE(RaisesFailure([&] { converter->Convert(); }, {1021, "Plugin test.module.good not loaded."}));
  EXPECT_NO_THROW(converter.reset());
}

}  // namespace
}  // namespace ns_sensor::testing
