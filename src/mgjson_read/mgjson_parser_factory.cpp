// Choosing the schema version of a file and making its parser; reading from a file.
#include "file_access/file_mapper.hpp"
#include "mgjson_read/mgjson_parser.hpp"

namespace ns_sensor {
namespace {

constexpr std::string_view kVersion2Marker = "mgjson2.0.0";

char AsciiLower(char byte) { return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + 32) : byte; }

}  // namespace

bool IsSchemaVersion2(const char *data, std::size_t size) {
  try {
    const MgjsonScanner scanner(data, data + size);
    const char *at = scanner.SkipWhitespace(data);
    if (at == scanner.end() || *at != '{') return false;
    std::string_view key;
    std::string keyScratch;
    at = scanner.ReadKey(scanner.SkipWhitespace(at + 1), key, keyScratch);
    at = scanner.ExpectColon(at, key);
    if (key != "version") return false;
    std::string_view value;
    std::string valueScratch;
    scanner.ReadString(at, PropertyPath("version"), value, valueScratch);
    if (value.size() != kVersion2Marker.size()) return false;
    for (std::size_t i = 0; i < value.size(); ++i) {
      if (AsciiLower(value[i]) != kVersion2Marker[i]) return false;
    }
    return true;
  } catch (const std::bad_alloc &) {
    throw;  // memory exhaustion is reported as such, not taken for a version 1 file
  } catch (...) {
    return false;  // whatever cannot be read is not a version 2 file
  }
}

bool IsSchemaVersion2(std::string_view filePath) {
  try {
    const FileMapper file(filePath);
    return IsSchemaVersion2(file.data(), static_cast<std::size_t>(file.size()));
  } catch (const std::bad_alloc &) {
    throw;
  } catch (...) {
    return false;
  }
}

std::shared_ptr<PX_MgjsonParser> CreateMgjsonParser(std::string_view filePath) {
  // A file that cannot be mapped raises the mapper's error here: taken for version 1, it
  // would be refused with a misleading parse error when the parse maps it again.
  const FileMapper file(filePath);
  return CreateMgjsonParser(file.data(), static_cast<std::size_t>(file.size()));
}

std::shared_ptr<PX_MgjsonParser> CreateMgjsonParser(const char *data, std::size_t size) {
  if (IsSchemaVersion2(data, size)) return std::make_shared<PX_MgjsonParser_v2>();
  return std::make_shared<PX_MgjsonParser_v1>();
}

void PX_MgjsonParser::Parse(std::string_view filePath) {
  filePath_.assign(filePath);
  const FileMapper file(filePath);  // unmapped when this returns or raises
  ParseBytes(file.data(), static_cast<std::size_t>(file.size()));
}

}  // namespace ns_sensor
