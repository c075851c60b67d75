#include "converters/converter_registry.hpp"

namespace ns_sensor {

ConverterRegistry &ConverterRegistry::Process() {
  // Made once, without a lock of its own: the manager's callers come one at a time.
  static ConverterRegistry registry = [] {
    ConverterRegistry filled;
    RegisterBuiltInConverters(filled);
    return filled;
  }();
  return registry;
}

bool ConverterRegistry::Register(ConverterMap &map, FormatMap &formats, std::string_view extension,
                                 std::string_view description, ConverterCheck check, ConverterCreate create) {
  if (map.contains(extension)) return false;
  map.emplace(std::string(extension), ConverterEntry{std::string(extension), std::move(check), std::move(create)});
  formats.emplace(std::string(extension), std::string(description));
  return true;
}

bool ConverterRegistry::RegisterNative(std::string_view extension, std::string_view description,
                                       ConverterCheck check, ConverterCreate create) {
  return Register(native_, formats_, extension, description, std::move(check), std::move(create));
}

bool ConverterRegistry::RegisterPlugin(std::string_view extension, std::string_view description,
                                       ConverterCheck check, ConverterCreate create) {
  return Register(plugins_, formats_, extension, description, std::move(check), std::move(create));
}

void ConverterRegistry::AddFormat(std::string_view extension, std::string_view description) {
  formats_.emplace(std::string(extension), std::string(description));
}

}  // namespace ns_sensor
