// The extension rule and the choice of a converter from any path: the built-in registry
// plus plug-in entries that accept by a byte of the path.
#include <cstdint>
#include <string>

#include "api/px_exception.hpp"
#include "converters/converter_selection.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const std::string path(reinterpret_cast<const char *>(data), size);
  static ns_sensor::ConverterRegistry registry = [] {
    ns_sensor::ConverterRegistry filled;
    for (const char *extension : {"gpx", "tsv", ""}) {
      filled.RegisterPlugin(
          extension, "plug-in",
          [](const ns_sensor::ConverterEntry &, const ns_sensor::ConversionRequest &request) {
            return !request.inputPath.empty() && request.inputPath[0] == 'p';
          },
          [](const ns_sensor::ConverterEntry &, const ns_sensor::ConversionRequest &) {
            return std::shared_ptr<ns_sensor::PX_ConverterHandlerBase>();
          });
    }
    ns_sensor::RegisterBuiltInConverters(filled);
    return filled;
  }();
  const ns_sensor::ConversionRequest request{path, ns_sensor::InputExtension(path), "out.mgjson"};
  const std::string &extension = request.extension;
  if (extension.find_first_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ/\\") != std::string::npos) __builtin_trap();
  try {
    // Nothing declines every file: the CSV converter takes what the others leave.
    if (ns_sensor::FindConverter(registry, request) == nullptr) __builtin_trap();
  } catch (const ns_sensor::PX_Exception &error) {
    // The motion-capture check opens the file itself and reports one it cannot open
    // (these paths name no file); nothing else may raise.
    if (error.code() != 1006) __builtin_trap();
  }
  return 0;
}
