#include "converters/format_registry.hpp"

#include <string_view>

namespace ns_sensor {
namespace {

struct BuiltInFormat {
  std::string_view extension;
  std::string_view name;
};

// Registration order of the built-in converters; the first registration of an extension wins.
constexpr BuiltInFormat kBuiltInFormats[] = {
    {"json", "JSON"},
    {"csv", "Comma-separated values"},
    {"tsv", "Tab-separated values"},
    {"txt", "Tab-separated values"},
    {"bvh", "Biovision Hierarchy"},
};

// MGJSON is readable but not convertible: a format row without a converter.
constexpr BuiltInFormat kMgjsonFormat = {"mgjson", "Motion Graphics JSON"};

FormatMap MakeFormats() {
  FormatMap formats;
  for (const BuiltInFormat &format : kBuiltInFormats) {
    formats.emplace(format.extension, format.name);
  }
  formats.emplace(kMgjsonFormat.extension, kMgjsonFormat.name);
  return formats;
}

}  // namespace

const FormatMap &SupportedFormats() {
  static const FormatMap formats = MakeFormats();
  return formats;
}

}  // namespace ns_sensor
