// One plug-in module file: where it is, whether it is loaded, and the function table its
// entry point filled. Loaded on first need, kept loaded until unloaded; a module whose
// load failed is never tried again.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "palvex/plugin_abi.hpp"
#include "platform/dynamic_module.hpp"

namespace ns_sensor {

enum class ModuleState : std::uint8_t {
  NotLoaded = 0,
  Loaded = 1,
  Failed = 2,  // a load was attempted and failed; stays so
};

class PluginModule {
 public:
  // identifier: the module's "MODULE_IDENTIFIER" text (empty when it has none).
  PluginModule(std::string path, std::string identifier);
  // Unloads a module still loaded, dropping any failure.
  ~PluginModule();
  PluginModule(const PluginModule &) = delete;
  PluginModule &operator=(const PluginModule &) = delete;

  // Makes sure the module is loaded and its entry point has filled the function table.
  // Raises PluginModuleLoadingFailed (1021) when the file cannot be loaded or exports no
  // "InitializePlugin", and PluginInitializeFailed (1500, the identifier) when the entry
  // point reports an error; a module that failed once raises PluginModuleLoadingFailed
  // at every later call without being tried again.
  void Load();

  // The function table of the module as loaded for the load numbered load (LoadCount() at
  // the time). PluginLoadFailure (1021, the identifier) when the module is not loaded, or
  // was unloaded and loaded again since (its sessions belong to the earlier load).
  const PX_PLUGIN::PX_PluginFunctions_v1 &Functions(std::uint64_t load) const;

  // Calls the plug-in's terminate function and frees the module; back to NotLoaded. A
  // failed module stays Failed. When terminate reports an error it is raised after the
  // module is freed: PluginTerminateFailed with the plug-in's code and details.
  void Unload();

  ModuleState State() const { return state_; }
  // How many times the module was loaded successfully.
  std::uint64_t LoadCount() const { return loads_; }
  const std::string &Path() const { return path_; }
  const std::string &Identifier() const { return identifier_; }
  // Why the last load failed, for diagnostics.
  const std::string &Diagnostic() const { return diagnostic_; }

 private:
  // Frees everything; returns what terminate reported.
  PX_PLUGIN::PX_PluginError Release() noexcept;
  [[noreturn]] void FailLoad(std::string diagnostic);

  std::string path_;
  std::string identifier_;
  ModuleState state_ = ModuleState::NotLoaded;
  std::uint64_t loads_ = 0;
  palvex::platform::DynamicModule module_;
  std::unique_ptr<PX_PLUGIN::PX_PluginFunctions_v1> functions_;
  std::string diagnostic_;
};

}  // namespace ns_sensor
