#include "converters/json_text.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

namespace ns_sensor {
namespace {

using rapidjson::SizeType;

// Numbers arrive as their text and are read here, correctly rounded and whatever the
// process's locale: RapidJSON 1.1's own full-precision reading turns a zero with a large
// negative exponent ("0e-32") into an arbitrary tiny number.
constexpr unsigned kParseFlags =
    rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag | rapidjson::kParseNumbersAsStringsFlag;

// A surrogate code point in UTF-8 starts with 0xED followed by 0xA0 to 0xBF. The raw text
// is validated, so such bytes in a parsed string can only come from a \u escape of a low
// surrogate with no high one before it, which the parser lets through.
bool HoldsEncodedSurrogate(const char *text, SizeType length) {
  const char *const end = text + length;
  for (const char *at = text; at != end; ++at) {
    at = static_cast<const char *>(std::memchr(at, '\xED', static_cast<std::size_t>(end - at)));
    if (at == nullptr || at + 1 == end) return false;
    if (static_cast<unsigned char>(at[1]) >= 0xA0) return true;
  }
  return false;
}

// The document's own handler, with strings and keys checked for encoded surrogates; a
// refusal stops the parse with the parser's "termination" error.
class CheckedStringsHandler {
 public:
  explicit CheckedStringsHandler(JsonDocument &document) : document_(document) {}

  bool Null() { return document_.Null(); }
  bool Bool(bool value) { return document_.Bool(value); }
  bool Int(int value) { return document_.Int(value); }
  bool Uint(unsigned value) { return document_.Uint(value); }
  bool Int64(std::int64_t value) { return document_.Int64(value); }
  bool Uint64(std::uint64_t value) { return document_.Uint64(value); }
  bool Double(double value) { return document_.Double(value); }
  // The parser has checked the grammar. Integers keep their width as the parser would give
  // it; every other number, and an integer too large for 64 bits, is a double. A double too
  // large refuses the text (as the parser would); one too small to represent becomes 0.
  bool RawNumber(const char *text, SizeType length, bool /*copy*/) {
    const char *const end = text + length;
    const bool integral = std::none_of(text, end, [](char c) { return c == '.' || c == 'e' || c == 'E'; });
    if (integral && *text == '-') {
      std::int64_t value = 0;
      if (std::from_chars(text, end, value).ec == std::errc()) {
        return value >= std::numeric_limits<int>::min() ? document_.Int(static_cast<int>(value))
                                                        : document_.Int64(value);
      }
    } else if (integral) {
      std::uint64_t value = 0;
      if (std::from_chars(text, end, value).ec == std::errc()) {
        return value <= std::numeric_limits<unsigned>::max() ? document_.Uint(static_cast<unsigned>(value))
                                                             : document_.Uint64(value);
      }
    }
    double value = 0.0;
    const std::from_chars_result read = std::from_chars(text, end, value);
    if (read.ec == std::errc::result_out_of_range) {
      const char *exponent = std::find_if(text, end, [](char c) { return c == 'e' || c == 'E'; });
      if (exponent == end || exponent + 1 == end || exponent[1] != '-') return false;
      value = *text == '-' ? -0.0 : 0.0;
    } else if (read.ec != std::errc() || !std::isfinite(value)) {
      return false;
    }
    return document_.Double(value);
  }
  bool String(const char *text, SizeType length, bool copy) {
    return !HoldsEncodedSurrogate(text, length) && document_.String(text, length, copy);
  }
  bool Key(const char *text, SizeType length, bool copy) {
    return !HoldsEncodedSurrogate(text, length) && document_.Key(text, length, copy);
  }
  bool StartObject() { return document_.StartObject(); }
  bool EndObject(SizeType members) { return document_.EndObject(members); }
  bool StartArray() { return document_.StartArray(); }
  bool EndArray(SizeType elements) { return document_.EndArray(elements); }

 private:
  JsonDocument &document_;
};

}  // namespace

void ParseJsonText(std::string_view bytes, JsonDocument &document) {
  RaisingCrtAllocator stackAllocator;
  rapidjson::GenericReader<rapidjson::UTF8<>, rapidjson::UTF8<>, RaisingCrtAllocator> reader(&stackAllocator);
  rapidjson::MemoryStream input(bytes.data(), bytes.size());
  auto parse = [&](JsonDocument &target) {
    CheckedStringsHandler handler(target);
    return !reader.Parse<kParseFlags>(input, handler).IsError();
  };
  document.Populate(parse);
  if (reader.HasParseError()) {
    const MessageRow &row = Message(Msg::ConversionFailure);
    RaiseError({row.code, row.literal.data(), static_cast<std::int64_t>(reader.GetErrorOffset())});
  }
}

}  // namespace ns_sensor
