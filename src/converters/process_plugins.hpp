// The plug-ins of the process: discovered once, at the first manager's creation, into the
// process's converter registry; their modules unloaded whenever the last manager goes.
#pragma once

#include <vector>

#include "api/px_exception.hpp"
#include "converters/plugin_registry.hpp"

namespace ns_sensor {

// The process's plug-in registry; kept for the life of the process.
PluginRegistry &ProcessPluginRegistry();

// Discovers the plug-ins of folder (null or empty: none) with the comma-separated module
// extensions (null or empty: "mgx") into the process's registries. Only the first call
// in the process does anything; later calls return no failures. Returns the failures
// that discovery collected.
std::vector<PX_Exception> DiscoverProcessPluginsOnce(const char *folder, const char *moduleExtensions);

// Whether discovery has run in this process.
bool ProcessPluginsDiscovered();

// Terminates and frees the process's loaded modules, keeping what was discovered; raises
// the first terminate failure after every module is unloaded.
void UnloadProcessPlugins();

}  // namespace ns_sensor
