#include "converters/plugin_module.hpp"

#include <string>
#include <utility>

#include "api/px_exception.hpp"
#include "converters/plugin_host_interface.hpp"

namespace ns_sensor {
namespace {

using PX_PLUGIN::PX_PluginError;
using PX_PLUGIN::PX_PluginFunctions_v1;

constexpr const char *kEntryPoint = "InitializePlugin";

PX_PluginError FreshError() { return PX_PluginError{0, -1, -1}; }

}  // namespace

PluginModule::PluginModule(std::string path, std::string identifier)
    : path_(std::move(path)), identifier_(std::move(identifier)) {}

PluginModule::~PluginModule() { Release(); }

void PluginModule::Load() {
  if (state_ == ModuleState::Loaded) return;
  if (state_ == ModuleState::Failed) Raise(Msg::PluginModuleLoadingFailed);
  // Failed until proven otherwise: whatever goes wrong below is not tried again.
  state_ = ModuleState::Failed;
  if (!module_.Load(path_)) FailLoad(module_.Diagnostic());
  const auto entry = reinterpret_cast<PX_PLUGIN::PX_InitializePluginFn>(module_.Symbol(kEntryPoint));
  if (entry == nullptr) FailLoad(std::string("the module exports no ") + kEntryPoint);

  functions_ = std::make_unique<PX_PluginFunctions_v1>();  // zeroed: every slot null
  functions_->header.size = sizeof(PX_PluginFunctions_v1);
  functions_->header.version = PX_PLUGIN_INTERFACE_VERSION;
  PX_PluginError error = FreshError();
  {
    CallRootScope roots;
    entry(identifier_.c_str(), &PluginHostInterface(), functions_.get(), &error);
  }
  if (error.code != 0) {
    // The refusal is what the host hears; a failure of the clean-up after it is not.
    Release();
    diagnostic_ = "the entry point reported code " + std::to_string(error.code);
    Raise(Msg::PluginInitializeFailed, identifier_);
  }
  state_ = ModuleState::Loaded;
  ++loads_;
}

const PX_PluginFunctions_v1 &PluginModule::Functions(std::uint64_t load) const {
  if (state_ != ModuleState::Loaded || functions_ == nullptr || load != loads_) {
    Raise(Msg::PluginLoadFailure, identifier_);
  }
  return *functions_;
}

void PluginModule::Unload() {
  const PX_PluginError error = Release();
  if (state_ == ModuleState::Loaded) state_ = ModuleState::NotLoaded;
  if (error.code != 0) {
    RaiseError({error.code, Message(Msg::PluginTerminateFailed).literal.data(), error.detail1, error.detail2},
               identifier_);
  }
}

PX_PluginError PluginModule::Release() noexcept {
  PX_PluginError error = FreshError();
  if (functions_ != nullptr && functions_->terminatePlugin != nullptr) {
    CallRootScope roots;
    functions_->terminatePlugin(&error);
  }
  functions_.reset();
  module_.Free();
  return error;
}

void PluginModule::FailLoad(std::string diagnostic) {
  module_.Free();
  diagnostic_ = std::move(diagnostic);
  Raise(Msg::PluginModuleLoadingFailed);
}

}  // namespace ns_sensor
