// Which converter reads an input: by its extension first, then by asking every converter.
#pragma once

#include <string>
#include <string_view>

#include "converters/converter_registry.hpp"

namespace ns_sensor {

// The input's extension: the text after the last "." of its file name (the text after the
// last "\" or "/"), empty without one; ASCII letters lower-cased, other bytes unchanged.
std::string InputExtension(std::string_view path);

// The converter for the request, or null when none accepts the input:
//  1. the plug-in entry of the extension, then the built-in entry of the same extension,
//     each only if its check accepts the file;
//  2. the first plug-in, in byte order of the extensions, whose check accepts it;
//  3. the first built-in converter, in the same order, whose check accepts it.
// Checks may raise (a check that cannot read the file); the failure travels on.
const ConverterEntry *FindConverter(const ConverterRegistry &registry, const ConversionRequest &request);

}  // namespace ns_sensor
