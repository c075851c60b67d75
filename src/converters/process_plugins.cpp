#include "converters/process_plugins.hpp"

#include <atomic>

#include "converters/plugin_discovery.hpp"

namespace ns_sensor {
namespace {

std::atomic<bool> g_discovered{false};

}  // namespace

PluginRegistry &ProcessPluginRegistry() {
  // Never destroyed: a module still loaded at exit is not called into while the process
  // winds down.
  static PluginRegistry *registry = new PluginRegistry;
  return *registry;
}

std::vector<PX_Exception> DiscoverProcessPluginsOnce(const char *folder, const char *moduleExtensions) {
  bool expected = false;
  if (!g_discovered.compare_exchange_strong(expected, true)) return {};
  return DiscoverPlugins(folder ? folder : "", moduleExtensions ? moduleExtensions : "", ProcessPluginRegistry(),
                         ConverterRegistry::Process());
}

bool ProcessPluginsDiscovered() { return g_discovered.load(); }

void UnloadProcessPlugins() { ProcessPluginRegistry().UnloadModules(); }

}  // namespace ns_sensor
