// Which MGJSON file an input stands for: the input itself when it is MGJSON, else the file
// a converter wrote from it into a new temporary file.
#pragma once

#include <string>
#include <string_view>

#include "api/temporary_file.hpp"
#include "file_access/sensor_file_handler.hpp"

namespace ns_sensor {

struct ResolvedInput {
  std::string mgjsonPath;     // the MGJSON file to read
  InputKind kind;             // how the input is MGJSON, or that it was converted
  TemporaryFile convertedFile;  // owns the converted file (kind Converted); else empty
};

// Whether the file starts as a schema version 2 file: "{" as its very first byte, then a
// first member "version" whose value is exactly "mgjson2.0.0". Never raises.
bool StartsAsSchemaVersion2(std::string_view path);

// Resolves the input at path:
//  - a schema version 2 start: the input, MgjsonByContent;
//  - else an "mgjson" extension: the input, MgjsonByExtension;
//  - else a converter chosen by the registry (FileFormatNotSupported, 25, when none
//    accepts it) writes a new temporary "PXT" file in outputDirectory (the system's
//    temporary directory when empty; DirectoryDoesNotExists, 58, when it is not a
//    directory): Converted. A converter that finds nothing to convert ends in
//    ConversionFailure (1506). On any failure the temporary file is deleted.
ResolvedInput ResolveInput(const std::string &path, std::string_view outputDirectory);

// Raises DirectoryDoesNotExists (58) unless directory names an existing directory.
void RequireOutputDirectory(std::string_view directory);

}  // namespace ns_sensor
