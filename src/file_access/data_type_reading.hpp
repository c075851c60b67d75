// Reading what the static and dynamic info queries report of a node: its "dataType" with
// the property objects the type uses, and a static node's "value" by that type. The
// outline was validated when the file was opened; a member that is still not what it
// should be reads as its default rather than failing the query.
#pragma once

#include <cstdint>
#include <string_view>

#include "file_access/handler_records.hpp"
#include "mgjson_read/rapidjson_config.hpp"

namespace ns_sensor {

// The PX_DataTypeKind of a "type" text; PX_TYPE_UNKNOWN for any other text.
std::uint32_t DataTypeKindOf(std::string_view type);

// The node's "dataType": kind and the property objects its type uses
// ("numberStringProperties", "paddedStringProperties" or "numberArrayProperties").
PX_DataTypeInfo ReadDataType(const JsonValue &node);

// The node's "value" as data type kind `kind` says: a number (a JSON number, or the
// number a number string writes), a string (a padded string's "str"), a boolean, or a
// number array (of JSON numbers or of number strings). A number string that does not
// read as a number gives NaN.
PX_StaticValueInfo ReadStaticValue(const JsonValue &node, std::uint32_t kind);

// A count or digit number as a whole number within 32 bits: truncated, 0 for anything
// negative or not a number, the largest count for anything beyond.
std::uint32_t WholeCount(const JsonValue &value);

// The number a number string writes ("+047.3769", "-12"), read as sample values are, or
// NaN when the whole text is not one finite number.
double NumberOfText(std::string_view text);

}  // namespace ns_sensor
