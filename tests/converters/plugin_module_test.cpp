// Loading and unloading one plug-in module: the states, the function table, and every
// failure with its code.
#include <gtest/gtest.h>

#include "converters/plugin_module.hpp"
#include "plugin_test_support.hpp"

namespace ns_sensor::testing {
namespace {

TEST(PluginModule, LoadsOnceFillsTheTableAndLoadsAgainAfterUnloading) {
  PluginModule module(PluginModulePath("conversions", "good_text"), "test.module.good");
  EXPECT_EQ(module.State(), ModuleState::NotLoaded);
  module.Load();
  module.Load();  // loaded already: nothing happens
  EXPECT_EQ(module.State(), ModuleState::Loaded);
  EXPECT_EQ(module.LoadCount(), 1u);
  const PX_PLUGIN::PX_PluginFunctions_v1 &table = module.Functions(1);
  EXPECT_EQ(table.header.size, 48u);
  EXPECT_EQ(table.header.version, 1u);
  EXPECT_NE(table.terminatePlugin, nullptr);
  EXPECT_NE(table.convertToMgjson, nullptr);

  module.Unload();
  EXPECT_EQ(module.State(), ModuleState::NotLoaded);
  const Failure notLoaded{1021, "Plugin test.module.good not loaded."};
  EXPECT_TRUE(RaisesFailure([&] { module.Functions(1); }, notLoaded));

  module.Load();
  EXPECT_EQ(module.LoadCount(), 2u);
  EXPECT_TRUE(RaisesFailure([&] { module.Functions(1); }, notLoaded)) << "sessions of the first load are gone";
  EXPECT_NO_THROW(module.Functions(2));
}

TEST(PluginModule, AModuleThatFailsToLoadIsNeverTriedAgain) {
  const Failure cannotLoad{1021, "Can't load module."};
  const struct {
    const char *label;
    std::string path;
    const char *identifier;
    Failure first;
  } cases[] = {
      {"entry point refuses", PluginModulePath("conversions", "fail_initialize"), "test.module.fail-initialize",
       {1500, "Initialization of plugin with id test.module.fail-initialize failed."}},
      {"no entry point", PluginModulePath("conversions", "no_entry_point"), "test.module.no-entry", cannotLoad},
      {"no such file", PluginFolder("conversions") + "/missing.mgx", "test.module.missing", cannotLoad},
      {"not a module", PluginFolder("conversions"), "test.module.folder", cannotLoad},
  };
  for (const auto &c : cases) {
    PluginModule module(c.path, c.identifier);
    EXPECT_TRUE(RaisesFailure([&] { module.Load(); }, c.first)) << c.label;
    EXPECT_EQ(module.State(), ModuleState::Failed) << c.label;
    EXPECT_FALSE(module.Diagnostic().empty()) << c.label;
    // A second attempt fails without touching the file again, and so does every later one.
    for (int attempt = 0; attempt < 2; ++attempt) {
      EXPECT_TRUE(RaisesFailure([&] { module.Load(); }, cannotLoad)) << c.label;
    }
    EXPECT_TRUE(RaisesFailure([&] { module.Functions(module.LoadCount()); },
                              {1021, "Plugin " + std::string(c.identifier) + " not loaded."}))
        << c.label;
    EXPECT_NO_THROW(module.Unload()) << c.label;
    EXPECT_EQ(module.State(), ModuleState::Failed) << c.label << ": unloading forgives nothing";
  }
}

TEST(PluginModule, ATerminateFailureIsRaisedAfterTheModuleIsFreed) {
  PluginModule module(PluginModulePath("conversions", "fail_terminate"), "test.module.fail-terminate");
  module.Load();
  EXPECT_TRUE(RaisesFailure([&] { module.Unload(); },
                            {7102, "Terminate of Plugin with id test.module.fail-terminate failed", 21, 22}));
  EXPECT_EQ(module.State(), ModuleState::NotLoaded);
  EXPECT_NO_THROW(module.Unload()) << "nothing left to terminate";
  module.Load();
  EXPECT_EQ(module.State(), ModuleState::Loaded) << "a module that failed to terminate loads again";
  EXPECT_THROW(module.Unload(), PX_Exception);
}

}  // namespace
}  // namespace ns_sensor::testing
