#include "converters/plugin_registry.hpp"

#include <exception>
#include <utility>

#include "api/px_exception.hpp"

namespace ns_sensor {
namespace {

// Selection looks extensions up lower-cased; a manifest may spell them either way.
std::string AsciiLowered(std::string text) {
  for (char &byte : text) {
    if (byte >= 'A' && byte <= 'Z') byte = static_cast<char>(byte - 'A' + 'a');
  }
  return text;
}

bool Replaces(const ConverterDescription &newcomer, const ConverterDescription &present) {
  return !present.forced && (newcomer.forced || newcomer.version > present.version);
}

}  // namespace

void PluginRegistry::AddModule(std::shared_ptr<PluginModule> module) { modules_.push_back(std::move(module)); }

bool PluginRegistry::Enter(std::shared_ptr<PX_PLUGIN::PX_ConverterHandler> converter) {
  const std::string &identifier = converter->Description().identifier;
  const auto present = converters_.find(identifier);
  if (present == converters_.end()) {
    converters_.emplace(identifier, std::move(converter));
    return true;
  }
  if (!Replaces(converter->Description(), present->second->Description())) return false;
  present->second = std::move(converter);
  return true;
}

void PluginRegistry::RegisterExtensions(ConverterRegistry &converters) const {
  for (const auto &[identifier, entry] : converters_) {
    // A copy of the shared owner for each operation (clang does not capture bindings).
    const std::shared_ptr<PX_PLUGIN::PX_ConverterHandler> converter = entry;
    const auto check = [converter](const ConverterEntry &, const ConversionRequest &request) {
      return converter->Check(request);
    };
    const auto create = [converter](const ConverterEntry &, const ConversionRequest &request) {
      return converter->Create(request);
    };
    for (const std::string &extension : converter->Description().extensions) {
      converters.RegisterPlugin(AsciiLowered(extension), converter->Description().name, check, create);
    }
  }
}

void PluginRegistry::UnloadModules() {
  std::exception_ptr firstFailure;
  for (const auto &module : modules_) {
    try {
      module->Unload();
    } catch (const PX_Exception &) {
      if (!firstFailure) firstFailure = std::current_exception();
    }
  }
  if (firstFailure) std::rethrow_exception(firstFailure);
}

std::shared_ptr<PX_PLUGIN::PX_ConverterHandler> PluginRegistry::Find(std::string_view identifier) const {
  const auto found = converters_.find(identifier);
  return found == converters_.end() ? nullptr : found->second;
}

}  // namespace ns_sensor
