// The map of supported input formats: extension -> human-readable name.
#pragma once

#include <map>
#include <string>

namespace ns_sensor {

// What the host configured for the converter framework at creation.
struct ConverterSettings {
  std::string pluginFolder;      // converterConfig1
  std::string moduleExtensions;  // converterConfig2; empty means "mgx"
};

// Ordered byte-wise by extension, which is the order the host receives.
using FormatMap = std::map<std::string, std::string>;

// The formats known to the process: the built-in rows, "mgjson" and the plug-ins' rows
// (the format map of the process's converter registry).
const FormatMap &SupportedFormats();

}  // namespace ns_sensor
