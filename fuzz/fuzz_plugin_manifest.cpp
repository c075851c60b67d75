// Plug-in manifests from any text: reading either gives converters that each have an
// identifier and a name, or raises PX_Exception; anything else aborts.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "api/px_exception.hpp"
#include "converters/plugin_manifest.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char *>(data), size);
  try {
    for (const ns_sensor::ConverterDescription &converter : ns_sensor::ReadPluginManifest(text, "en_US")) {
      if (converter.identifier.empty() || converter.name.empty()) std::abort();
    }
  } catch (const ns_sensor::PX_Exception &) {
  }
  return 0;
}
