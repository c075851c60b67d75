#include "api/input_resolution.hpp"

#include "api/px_exception.hpp"
#include "mgjson_read/mgjson_parser.hpp"

namespace ns_sensor {
namespace {

constexpr std::string_view kMgjsonExtension = "mgjson";

char AsciiLower(char byte) { return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte; }

}  // namespace

std::string InputExtension(std::string_view path) {
  const std::size_t separator = path.find_last_of("/\\");
  const std::string_view name = separator == std::string_view::npos ? path : path.substr(separator + 1);
  const std::size_t dot = name.rfind('.');
  std::string extension(dot == std::string_view::npos ? std::string_view() : name.substr(dot + 1));
  for (char &byte : extension) byte = AsciiLower(byte);
  return extension;
}

InputKind ResolveMgjsonInput(std::string_view path) {
  if (IsSchemaVersion2(path)) return InputKind::MgjsonByContent;
  if (InputExtension(path) == kMgjsonExtension) return InputKind::MgjsonByExtension;
  Raise(Msg::FileFormatNotSupported);
}

}  // namespace ns_sensor
