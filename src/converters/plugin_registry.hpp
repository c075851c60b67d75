// The plug-in registry: every converter that discovery found, by identifier, and the
// modules they live in. It decides which of two converters with one identifier is used
// and which plug-in owns an extension.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "converters/converter_registry.hpp"
#include "converters/plugin_converter.hpp"

namespace ns_sensor {

using PluginConverterMap = std::map<std::string, std::shared_ptr<PX_PLUGIN::PX_ConverterHandler>, std::less<>>;

class PluginRegistry {
 public:
  PluginRegistry() = default;
  PluginRegistry(const PluginRegistry &) = delete;
  PluginRegistry &operator=(const PluginRegistry &) = delete;

  // Keeps a module that discovery accepted, for unloading.
  void AddModule(std::shared_ptr<PluginModule> module);

  // Enters a converter under its identifier. When the identifier is taken, the newcomer
  // replaces the present converter only if that one is not forced and the newcomer is
  // forced or has a greater version; so of two equal unforced versions the first stays.
  // True when the newcomer is now the one registered.
  bool Enter(std::shared_ptr<PX_PLUGIN::PX_ConverterHandler> converter);

  // Registers every extension of every converter, in identifier order, as a plug-in entry
  // of converters described by the converter's name. An extension that another plug-in
  // registered first keeps its first owner.
  void RegisterExtensions(ConverterRegistry &converters) const;

  // Terminates and frees every loaded module; the converters stay registered and their
  // modules load again when next needed. Every module is unloaded; then the first
  // terminate failure is raised.
  void UnloadModules();

  // The converter registered under identifier, or null.
  std::shared_ptr<PX_PLUGIN::PX_ConverterHandler> Find(std::string_view identifier) const;

  const PluginConverterMap &Converters() const { return converters_; }
  const std::vector<std::shared_ptr<PluginModule>> &Modules() const { return modules_; }

 private:
  PluginConverterMap converters_;
  std::vector<std::shared_ptr<PluginModule>> modules_;
};

}  // namespace ns_sensor
