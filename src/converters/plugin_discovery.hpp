// Finding the plug-ins of a folder: every module file whose extension is one of the
// module extensions and that carries a manifest. Manifests are read without running any
// plug-in code. A module that cannot be used is skipped; why is collected, not raised, so
// one bad module never keeps the others (or the library) from working.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "api/px_exception.hpp"
#include "converters/converter_registry.hpp"
#include "converters/plugin_registry.hpp"

namespace ns_sensor {

// The module extensions of a comma-separated list: each item trimmed of spaces and tabs
// and of one leading ".", ASCII lower-cased; empty items dropped. An empty list is "mgx".
std::vector<std::string> ModuleExtensions(std::string_view configured);

// Discovers the plug-ins of folder into plugins and registers their extensions with
// converters. Files are taken in byte order of their names, so which of two equal
// converters is first does not depend on the file system. Returns the failures met, in
// order: the folder cannot be listed (File_IO's error), a manifest is refused (1503, 1504,
// 19). An empty folder path means no plug-ins. Memory exhaustion is raised.
std::vector<PX_Exception> DiscoverPlugins(std::string_view folder, std::string_view moduleExtensions,
                                          PluginRegistry &plugins, ConverterRegistry &converters);

}  // namespace ns_sensor
