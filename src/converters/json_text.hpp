// JSON input text parsed into RapidJSON's document model, for the JSON converter.
#pragma once

#include <string_view>

#include "mgjson_read/rapidjson_config.hpp"

namespace ns_sensor {

// Parses bytes, which must be exactly one standard JSON value with optional white space
// around it, into document. The text must be valid UTF-8 and a \u escape must not stand
// for a lone surrogate: the converted file carries the strings on, and a host expects
// UTF-8. NaN and infinities, comments and numbers beyond the range of a double are
// refused. Parsing is iterative, so deep nesting costs heap, not stack.
// Raises ConversionFailure (1506) with the byte offset of the fault as detail1.
void ParseJsonText(std::string_view bytes, JsonDocument &document);

}  // namespace ns_sensor
