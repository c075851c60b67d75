#include "converters/converter_selection.hpp"

namespace ns_sensor {
namespace {

char AsciiLower(char byte) { return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte; }

const ConverterEntry *Accepting(const ConverterMap &map, std::string_view extension,
                                const ConversionRequest &request) {
  const auto found = map.find(extension);
  if (found == map.end()) return nullptr;
  return found->second.check(found->second, request) ? &found->second : nullptr;
}

const ConverterEntry *FirstAccepting(const ConverterMap &map, const ConversionRequest &request) {
  for (const auto &[extension, entry] : map) {
    if (entry.check(entry, request)) return &entry;
  }
  return nullptr;
}

}  // namespace

std::string InputExtension(std::string_view path) {
  const std::size_t separator = path.find_last_of("/\\");
  const std::string_view name = separator == std::string_view::npos ? path : path.substr(separator + 1);
  const std::size_t dot = name.rfind('.');
  std::string extension(dot == std::string_view::npos ? std::string_view() : name.substr(dot + 1));
  for (char &byte : extension) byte = AsciiLower(byte);
  return extension;
}

const ConverterEntry *FindConverter(const ConverterRegistry &registry, const ConversionRequest &request) {
  // A plug-in that claims the extension but declines the file hands it to the built-in
  // converter of that extension before any walk: a plain TSV file must not reach the
  // CSV converter, which the walk would choose.
  if (const ConverterEntry *entry = Accepting(registry.Plugins(), request.extension, request)) return entry;
  if (const ConverterEntry *entry = Accepting(registry.Native(), request.extension, request)) return entry;
  if (const ConverterEntry *entry = FirstAccepting(registry.Plugins(), request)) return entry;
  return FirstAccepting(registry.Native(), request);
}

}  // namespace ns_sensor
