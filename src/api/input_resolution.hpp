// Which MGJSON file an input to OpenFile stands for. Until the converters arrive, only
// MGJSON inputs can be opened; every other input is refused as a format not supported.
#pragma once

#include <string>
#include <string_view>

#include "file_access/sensor_file_handler.hpp"

namespace ns_sensor {

// The input's extension: the text after the last "." of its file name (empty without
// one), ASCII letters lower-cased.
std::string InputExtension(std::string_view path);

// How the input is MGJSON: by its schema version 2 start, else by its ".mgjson" name.
// Raises FileFormatNotSupported (25) for any other input.
InputKind ResolveMgjsonInput(std::string_view path);

}  // namespace ns_sensor
