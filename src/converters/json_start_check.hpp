// The check that a file is a JSON document the JSON converter can take: after white space,
// an array or an object. Which of the two it is stays behind for the conversion that follows.
#pragma once

#include <string_view>

#include "converters/conversion_request.hpp"

namespace ns_sensor {

enum class JsonTopValue { Object, Array };

// Whether bytes start (after space, tab, line feed and carriage return) with "[" or "{";
// top receives which. The bracket must not be the last byte: white space is skipped only
// up to the byte before the end, so a lone "{" or "  [" is refused.
bool StartsAsJsonContainer(std::string_view bytes, JsonTopValue &top);

// The registry's check: maps the input and applies StartsAsJsonContainer. A file that
// cannot be mapped (missing, empty, a folder) is refused. On success the kind of the top
// value is remembered process-wide for the conversion that follows on this thread.
bool CheckJsonStart(const ConversionRequest &request);

// The top value the last successful check saw (Object before any check).
JsonTopValue LastCheckedJsonTopValue();

}  // namespace ns_sensor
