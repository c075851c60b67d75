// Writing JSON for people's tools with RapidJSON: every string valid UTF-8 and every
// number finite, whatever a file holds.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <rapidjson/writer.h>

#include "chunked_text.hpp"

namespace palvex::cli {

using JsonWriter = rapidjson::Writer<ChunkedText>;

// text with every byte sequence that is not UTF-8 replaced by U+FFFD.
std::string ValidUtf8(std::string_view text);

void WriteString(JsonWriter &writer, std::string_view text);
// A number, or null when it is not finite (JSON has no NaN or infinity).
void WriteNumber(JsonWriter &writer, double number);
void WriteNumber(JsonWriter &writer, std::optional<double> number);
// A text, or null when there is none.
void WriteText(JsonWriter &writer, const std::optional<std::string> &text);

}  // namespace palvex::cli
