// The manifest a converter plug-in carries: a JSON text with a "converter" array, one
// element per converter in the module.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ns_sensor {

// One "check_format" signature: the bytes expected at an offset of the input.
struct FormatSignature {
  std::string byteSeq;  // "0x..." hexadecimal byte pairs, or the text itself
  std::uint64_t length = 0;
  std::uint64_t offset = 0;
};

// One element of the "converter" array.
struct ConverterDescription {
  std::string identifier;
  std::string name;  // the "value" of the "name" entry chosen for the locale
  std::int64_t version = 0;
  bool forced = false;  // "force_converter"
  std::vector<FormatSignature> signatures;
  std::vector<std::string> extensions;
};

// The converters of a manifest, in order. Raises 1503 (parse failure, empty identifier or
// name), 1504 (a key of the wrong type, "converter" not an array) and 19 (a RapidJSON
// assertion). The name is chosen by locale, else by the first "en_US" entry.
std::vector<ConverterDescription> ReadPluginManifest(std::string_view text, std::string_view locale);

}  // namespace ns_sensor
