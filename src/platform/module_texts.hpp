// The two texts a converter plug-in module carries, read without running any of its code:
// its manifest ("PXPLUGINUIDS") and its identifier ("MODULE_IDENTIFIER"), both of type
// "txt". On Windows they are resources of the DLL; on Linux, ELF sections of those names.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace palvex::platform {

struct ModuleTexts {
  std::optional<std::string> manifest;    // "PXPLUGINUIDS"
  std::optional<std::string> identifier;  // "MODULE_IDENTIFIER"
};

// Both texts of the module file at path; a text the module lacks, and both for a file
// that is not a module this platform can read (truncated, empty, another format), are
// empty. Never raises for a bad file.
ModuleTexts ReadModuleTexts(std::string_view path);

}  // namespace palvex::platform
