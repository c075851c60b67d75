#include "json_output.hpp"

#include <cmath>

#include <rapidjson/encodings.h>
#include <rapidjson/stream.h>

namespace palvex::cli {
namespace {

constexpr std::string_view kReplacementCharacter = "\xEF\xBF\xBD";

bool IsAscii(std::string_view text) {
  for (const char byte : text) {
    if (static_cast<unsigned char>(byte) >= 0x80) return false;
  }
  return true;
}

}  // namespace

std::string ValidUtf8(std::string_view text) {
  if (IsAscii(text)) return std::string(text);
  // RapidJSON's decoder reads one code point at a time; it may look one byte past the
  // text, which the copy's terminating NUL makes safe (and never valid).
  const std::string copy(text);
  std::string result;
  result.reserve(copy.size());
  rapidjson::StringStream stream(copy.c_str());
  while (static_cast<std::size_t>(stream.Tell()) < copy.size()) {
    const char *const start = stream.src_;
    unsigned codePoint = 0;
    const bool valid = rapidjson::UTF8<>::Decode(stream, &codePoint);
    if (valid && static_cast<std::size_t>(stream.Tell()) <= copy.size()) {
      result.append(start, stream.src_);
    } else {
      result.append(kReplacementCharacter);
      stream.src_ = start + 1;
    }
  }
  return result;
}

void WriteString(JsonWriter &writer, std::string_view text) {
  if (IsAscii(text)) {  // most texts: written as they are, without a checked copy
    writer.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
    return;
  }
  const std::string valid = ValidUtf8(text);
  writer.String(valid.data(), static_cast<rapidjson::SizeType>(valid.size()));
}

void WriteNumber(JsonWriter &writer, double number) {
  if (std::isfinite(number)) {
    writer.Double(number);
  } else {
    writer.Null();
  }
}

void WriteNumber(JsonWriter &writer, std::optional<double> number) {
  if (number) {
    WriteNumber(writer, *number);
  } else {
    writer.Null();
  }
}

void WriteText(JsonWriter &writer, const std::optional<std::string> &text) {
  if (text) {
    WriteString(writer, *text);
  } else {
    writer.Null();
  }
}

}  // namespace palvex::cli
