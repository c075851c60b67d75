#include "converters/json_text.hpp"

#include <cstring>

#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

namespace ns_sensor {
namespace {

using rapidjson::SizeType;

constexpr unsigned kParseFlags =
    rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag | rapidjson::kParseFullPrecisionFlag;

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
  bool RawNumber(const char *text, SizeType length, bool copy) { return document_.RawNumber(text, length, copy); }
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
