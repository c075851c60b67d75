// Plug-in converters in selection and sessions: which converter a file gets, and what a
// session holds and lets go of. The failures of each step as the host receives them are
// checked through the exported functions (plugin_process_test.cpp).
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

  std::unique_ptr<Discovered> discovered_;
  ScratchFolder scratch_;
};

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
  EXPECT_EQ(entry->extension, "pxk");
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
