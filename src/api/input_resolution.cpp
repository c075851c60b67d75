#include "api/input_resolution.hpp"

#include "api/px_exception.hpp"
#include "converters/converter_selection.hpp"
#include "file_access/file_mapper.hpp"
#include "mgjson_read/scanner.hpp"
#include "platform/file_io.hpp"

namespace ns_sensor {
namespace {

constexpr std::string_view kMgjsonExtension = "mgjson";
constexpr std::string_view kVersionKey = "version";
constexpr std::string_view kVersion2Marker = "mgjson2.0.0";

bool StartsAsSchemaVersion2(const char *data, std::size_t size) {
  if (size == 0 || data[0] != '{') return false;
  const MgjsonScanner scanner(data, data + size);
  std::string_view key;
  std::string keyScratch;
  const char *at = scanner.ReadKey(scanner.SkipWhitespace(data + 1), key, keyScratch);
  at = scanner.ExpectColon(at, key);
  if (key != kVersionKey) return false;
  std::string_view value;
  std::string valueScratch;
  scanner.ReadString(at, PropertyPath(kVersionKey), value, valueScratch);
  return value == kVersion2Marker;
}

}  // namespace

bool StartsAsSchemaVersion2(std::string_view path) {
  try {
    const FileMapper file(path);
    return StartsAsSchemaVersion2(file.data(), static_cast<std::size_t>(file.size()));
  } catch (const std::bad_alloc &) {
    throw;  // memory exhaustion is reported, not taken for "some other format"
  } catch (...) {
    return false;  // whatever cannot be read is not a version 2 file
  }
}

void RequireOutputDirectory(std::string_view directory) {
  bool isDirectory = false;
  try {
    isDirectory = File_IO::GetFileMode(directory) == File_IO::kFolder;
  } catch (const PX_Exception &) {
    // A path the file layer cannot even look at names no directory either.
  }
  if (!isDirectory) Raise(Msg::DirectoryDoesNotExists);
}

ResolvedInput ResolveInput(const std::string &path, std::string_view outputDirectory) {
  ConversionRequest request{path, InputExtension(path), {}};
  if (StartsAsSchemaVersion2(path)) return {path, InputKind::MgjsonByContent, {}};
  if (request.extension == kMgjsonExtension) return {path, InputKind::MgjsonByExtension, {}};

  const ConverterEntry *entry = FindConverter(ConverterRegistry::Process(), request);
  if (entry == nullptr) Raise(Msg::FileFormatNotSupported);
  if (!outputDirectory.empty()) RequireOutputDirectory(outputDirectory);
  TemporaryFile output = TemporaryFile::Make(outputDirectory);
  request.outputPath = output.path();
  // Whatever create or convert raises travels on; the temporary file goes with `output`.
  {
    const std::shared_ptr<PX_ConverterHandlerBase> converter = entry->create(*entry, request);
    if (!converter->Convert()) Raise(Msg::ConversionFailure);
  }
  return {request.outputPath, InputKind::Converted, std::move(output)};
}

}  // namespace ns_sensor
