#include "converters/plugin_converter.hpp"

#include <utility>

#include "api/px_exception.hpp"
#include "converters/plugin_host_interface.hpp"
#include "converters/plugin_signature.hpp"
#include "localisation/dictionary.hpp"

namespace PX_PLUGIN {
namespace {

using ns_sensor::Msg;

PX_PluginError FreshError() { return PX_PluginError{0, -1, -1}; }

// A failure the plug-in reported: its code and details with the row's message.
[[noreturn]] void RaisePluginReport(Msg id, const PX_PluginError &error, const ns_sensor::ConverterDescription &converter) {
  ns_sensor::RaiseError({error.code, ns_sensor::Message(id).literal.data(), error.detail1, error.detail2},
                        converter.name, converter.identifier);
}

}  // namespace

PX_ConverterHandler::PX_ConverterHandler(ns_sensor::ConverterDescription description,
                                         std::shared_ptr<ns_sensor::PluginModule> module)
    : description_(std::move(description)), module_(std::move(module)) {}

bool PX_ConverterHandler::Check(const ns_sensor::ConversionRequest &request) const {
  if (!ns_sensor::MatchesSignatures(request.inputPath, description_.signatures)) return false;
  module_->Load();
  const PX_PluginFunctions_v1 &functions = module_->Functions(module_->LoadCount());
  if (functions.checkFileFormat == nullptr) return false;
  const ConverterCallContext context(*this);
  PX_PluginError error = FreshError();
  std::uint32_t accepted = 0;
  {
    ns_sensor::CallRootScope roots;
    functions.checkFileFormat(context.get(), request.inputPath.c_str(), &error, &accepted);
  }
  if (error.code != 0) RaisePluginReport(Msg::PluginCheckFileFormat, error, description_);
  return accepted != 0;
}

std::shared_ptr<ns_sensor::PX_ConverterHandlerBase> PX_ConverterHandler::Create(
    const ns_sensor::ConversionRequest &request) {
  try {
    module_->Load();
  } catch (const ns_sensor::PX_Exception &) {
    ns_sensor::Raise(Msg::PluginNotLoaded);
  }
  auto instance = std::make_shared<PX_ConverterHandlerInstance>(request, shared_from_this());
  instance->Start();
  return instance;
}

ConverterCallContext::ConverterCallContext(const PX_ConverterHandler &converter)
    : locale_(ns_sensor::ActiveLocale()),
      context_{sizeof(PX_ConverterContext), converter.Module().Identifier().c_str(),
               converter.Description().identifier.c_str(), converter.Description().name.c_str(), locale_.c_str()} {}

PX_ConverterHandlerInstance::PX_ConverterHandlerInstance(ns_sensor::ConversionRequest request,
                                                         std::shared_ptr<PX_ConverterHandler> converter)
    : PX_ConverterHandlerBase(std::move(request)), converter_(std::move(converter)) {}

void PX_ConverterHandlerInstance::Start() {
  ns_sensor::PluginModule &module = converter_->Module();
  load_ = module.LoadCount();
  const PX_PluginFunctions_v1 &functions = module.Functions(load_);
  const ConverterCallContext context(*converter_);
  const ns_sensor::ConversionRequest &request = Request();
  PX_PluginError error = FreshError();
  PX_PluginSession session = nullptr;
  if (functions.initializeSession != nullptr) {
    ns_sensor::RootOwnerScope roots(this);
    functions.initializeSession(context.get(), request.inputPath.c_str(), request.extension.c_str(),
                                request.outputPath.c_str(), &session, &error);
  }
  if (error.code != 0) RaisePluginReport(Msg::PluginInitializeSessionFailed, error, converter_->Description());
  session_ = session;
  started_ = true;
}

bool PX_ConverterHandlerInstance::Convert() {
  // Keeps the converter (and so its module record) for the length of the call.
  const std::shared_ptr<PX_ConverterHandler> converter = converter_;
  const PX_PluginFunctions_v1 &functions = converter->Module().Functions(load_);
  PX_PluginError error = FreshError();
  PX_PluginResult result{0};
  if (functions.convertToMgjson != nullptr) {
    ns_sensor::RootOwnerScope roots(this);
    functions.convertToMgjson(session_, &error, &result);
  }
  if (error.code != 0) RaisePluginReport(Msg::PluginConverter, error, converter->Description());
  if (result.success == 0) {
    ns_sensor::Raise(Msg::PluginConverter, converter->Description().name, converter->Description().identifier);
  }
  return true;
}

PX_ConverterHandlerInstance::~PX_ConverterHandlerInstance() {
  try {
    if (started_) {
      const PX_PluginFunctions_v1 &functions = converter_->Module().Functions(load_);
      PX_PluginError error = FreshError();
      ns_sensor::RootOwnerScope roots(this);
      if (functions.terminateSession != nullptr) functions.terminateSession(session_, &error);
    }
  } catch (...) {
    // A session that cannot be ended (its module is gone) has nothing left to end.
  }
  ns_sensor::ReleaseRootsOf(this);
}

}  // namespace PX_PLUGIN
