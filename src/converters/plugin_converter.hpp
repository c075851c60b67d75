// A converter of a plug-in module as the registry knows it (PX_ConverterHandler: its
// manifest description and its module), and one conversion session driven through the
// module's function table (PX_ConverterHandlerInstance).
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "converters/converter_base.hpp"
#include "converters/plugin_manifest.hpp"
#include "converters/plugin_module.hpp"
#include "palvex/plugin_abi.hpp"

namespace PX_PLUGIN {

class PX_ConverterHandler : public std::enable_shared_from_this<PX_ConverterHandler> {
 public:
  PX_ConverterHandler(ns_sensor::ConverterDescription description, std::shared_ptr<ns_sensor::PluginModule> module);

  // The check operation: every "check_format" signature must match the input, then the
  // module (loaded now if needed) decides. A load failure travels on; an error the
  // plug-in reports raises PluginCheckFileFormat with its code and details.
  bool Check(const ns_sensor::ConversionRequest &request) const;

  // The create operation: loads the module if needed (PluginNotLoaded, 1021, when it
  // cannot be) and starts a session for the request (PluginInitializeSessionFailed with
  // the plug-in's code and details when the plug-in refuses).
  std::shared_ptr<ns_sensor::PX_ConverterHandlerBase> Create(const ns_sensor::ConversionRequest &request);

  const ns_sensor::ConverterDescription &Description() const { return description_; }
  ns_sensor::PluginModule &Module() const { return *module_; }
  const std::shared_ptr<ns_sensor::PluginModule> &SharedModule() const { return module_; }

 private:
  ns_sensor::ConverterDescription description_;
  std::shared_ptr<ns_sensor::PluginModule> module_;
};

// The converter a call is about, as the plug-in receives it; valid while this lives.
class ConverterCallContext {
 public:
  explicit ConverterCallContext(const PX_ConverterHandler &converter);
  ConverterCallContext(const ConverterCallContext &) = delete;
  ConverterCallContext &operator=(const ConverterCallContext &) = delete;

  const PX_ConverterContext *get() const { return &context_; }

 private:
  std::string locale_;
  PX_ConverterContext context_;
};

class PX_ConverterHandlerInstance : public ns_sensor::PX_ConverterHandlerBase {
 public:
  // A session not started yet; Start begins it.
  PX_ConverterHandlerInstance(ns_sensor::ConversionRequest request, std::shared_ptr<PX_ConverterHandler> converter);
  // Terminates a started session and lets go of the roots it left; never raises.
  ~PX_ConverterHandlerInstance() override;

  // Calls the plug-in's initialise-session; raises PluginInitializeSessionFailed.
  void Start();

  // Has the plug-in convert: its error code raises PluginConverter with that code and
  // details; no error and no success raises PluginConverter with 1506. PluginLoadFailure
  // when the module is no longer the one the session was started with.
  bool Convert() override;

  PX_PluginSession Session() const { return session_; }

 private:
  PX_PluginSession session_ = nullptr;
  std::shared_ptr<PX_ConverterHandler> converter_;
  std::uint64_t load_ = 0;  // the module's load the session belongs to
  bool started_ = false;
};

}  // namespace PX_PLUGIN
