#include "mgjson_read/scanner.hpp"

#include <cstring>
#include <limits>

namespace ns_sensor {
namespace {

constexpr const char *kJsonObject = "JSON Object";
constexpr const char *kJsonArray = "JSON Array";
constexpr const char *kJsonBoolean = "JSON Boolean";

bool IsWhitespace(char byte) { return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r'; }

// The byte an escape stands for; other escaped bytes stand for themselves.
char Unescape(char byte) {
  switch (byte) {
    case 'b': return '\b';
    case 'f': return '\f';
    case 'n': return '\n';
    case 'r': return '\r';
    case 't': return '\t';
    default: return byte;  // '"', '\\' and everything else
  }
}

// Strings are copied into the document, whose lengths are 32-bit.
rapidjson::SizeType DocumentLength(std::size_t length) {
  if (length > std::numeric_limits<rapidjson::SizeType>::max()) RaiseRapidJsonAssertion();
  return static_cast<rapidjson::SizeType>(length);
}

}  // namespace

void RaiseAtOffset(Msg id, std::int64_t offset, const PX_MessageParam &param1,
                   const PX_MessageParam &param2, const PX_MessageParam &param3) {
  const MessageRow &row = Message(id);
  RaiseError(PX_ErrorInfo{row.code, row.literal.data(), offset, -1}, param1, param2, param3);
}

const char *MgjsonScanner::SkipWhitespace(const char *at) const {
  if (at == nullptr) return nullptr;
  while (at != end_ && IsWhitespace(*at)) ++at;
  return at;
}

const char *MgjsonScanner::ExpectColon(const char *at, std::string_view key) const {
  at = SkipWhitespace(at);
  if (at == end_ || *at != ':') {
    RaiseAtOffset(Msg::InvalidPropertyMissingColon, OffsetOf(at), Quoted(key));
  }
  return SkipWhitespace(at + 1);
}

const char *MgjsonScanner::ReadKey(const char *at, std::string_view &text,
                                   std::string &scratch) const {
  return ReadQuoted(at, nullptr, text, scratch);
}

const char *MgjsonScanner::ReadString(const char *at, const PropertyPath &path,
                                      std::string_view &text, std::string &scratch) const {
  return ReadQuoted(at, &path, text, scratch);
}

void MgjsonScanner::FailQuotes(const char *at, const PropertyPath *valuePath) const {
  if (valuePath == nullptr) RaiseAtOffset(Msg::InvalidKeyMissingQuotes, OffsetOf(at));
  RaiseAtOffset(Msg::InvalidPropertyValueMissingQuotes, OffsetOf(at), Quoted(valuePath->Text()));
}

const char *MgjsonScanner::ReadQuoted(const char *at, const PropertyPath *valuePath,
                                      std::string_view &text, std::string &scratch) const {
  if (at == end_ || *at != '"') FailQuotes(at, valuePath);
  const char *const start = ++at;
  // Most strings hold no escape: they are viewed in place.
  for (; at != end_; ++at) {
    const auto byte = static_cast<unsigned char>(*at);
    if (byte == '"') {
      text = std::string_view(start, static_cast<std::size_t>(at - start));
      return at + 1;
    }
    if (byte == '\\') break;
    if (byte < 0x20) FailQuotes(at, valuePath);
  }
  scratch.assign(start, at);
  for (; at != end_; ++at) {
    if (*at == '"') {
      text = scratch;
      return at + 1;
    }
    if (*at == '\\') {
      if (++at == end_) break;
      // Unescape() keeps a byte that is not an escape letter: it is then an ordinary byte.
      const char byte = Unescape(*at);
      if (byte == *at && static_cast<unsigned char>(byte) < 0x20) FailQuotes(at, valuePath);
      scratch += byte;
    } else {
      if (static_cast<unsigned char>(*at) < 0x20) FailQuotes(at, valuePath);
      scratch += *at;
    }
  }
  FailQuotes(at, valuePath);
}

const char *MgjsonScanner::ReadBoolean(const char *at, const PropertyPath &path,
                                       bool &value) const {
  // The word must not run up to the very end of the input.
  const auto left = end_ - at;
  if (left > 5 && std::memcmp(at, "false", 5) == 0) {
    value = false;
    return at + 5;
  }
  if (left > 4 && std::memcmp(at, "true", 4) == 0) {
    value = true;
    return at + 4;
  }
  RaiseAtOffset(Msg::InvalidPropertyTypeSyntax, OffsetOf(at), Quoted(path.Text()), kJsonBoolean);
}

const char *MgjsonScanner::ReadValue(const char *at, const PropertyPath &path, JsonValue *out,
                                     JsonAllocator *allocator, std::uint16_t depth) const {
  switch (at == end_ ? '\0' : *at) {
    case '"': {
      std::string_view text;
      std::string scratch;
      at = ReadString(at, path, text, scratch);
      if (out != nullptr) out->SetString(text.data(), DocumentLength(text.size()), *allocator);
      return at;
    }
    case '[':
      return ParseArray(at, path, out, allocator, depth);
    case '{':
      return ParseObject(at, path, out, allocator, depth);
    case 'f':
    case 't': {
      bool value = false;
      at = ReadBoolean(at, path, value);
      if (out != nullptr) out->SetBool(value);
      return at;
    }
    default: {
      double value = 0.0;
      at = ReadNumber(at, path, value);
      if (out != nullptr) out->SetDouble(value);
      return at;
    }
  }
}

void MgjsonScanner::ExpectMemberEnd(const char *at, const PropertyPath &memberPath) const {
  if (at == end_ || (*at != ',' && *at != '}')) {
    RaiseAtOffset(Msg::InvalidPropertyMissingCommaOrClosingBracket, OffsetOf(at),
                  Quoted(memberPath.Text()));
  }
}

const char *MgjsonScanner::ParseObject(const char *at, const PropertyPath &path, JsonValue *out,
                                       JsonAllocator *allocator, std::uint16_t depth) const {
  if (depth > kMaxNestingDepth) RaiseAtOffset(Msg::TooDeepNesting, -1, "100");
  if (at == end_ || *at != '{') {
    RaiseAtOffset(Msg::InvalidPropertyTypeSyntax, OffsetOf(at), Quoted(path.Text()), kJsonObject);
  }
  at = SkipWhitespace(at + 1);
  if (at == end_) {
    RaiseAtOffset(Msg::InvalidPropertyTypeSyntax, OffsetOf(at), Quoted(path.Text()), kJsonObject);
  }
  if (out != nullptr) out->SetObject();
  for (;;) {
    std::string_view key;
    std::string keyScratch;
    at = ExpectColon(ReadKey(at, key, keyScratch), key);
    if (out != nullptr) {
      // The key is copied first so that the member's path can refer to the copy.
      JsonValue name(key.data(), DocumentLength(key.size()), *allocator);
      const PropertyPath memberPath =
          path.Member(std::string_view(name.GetString(), name.GetStringLength()));
      JsonValue value;
      at = SkipWhitespace(ReadValue(at, memberPath, &value, allocator, depth + 1));
      ExpectMemberEnd(at, memberPath);  // while the path's key is still in `name`
      out->AddMember(name, value, *allocator);
    } else {
      const PropertyPath memberPath = path.Member(key);
      at = SkipWhitespace(ReadValue(at, memberPath, nullptr, nullptr, depth + 1));
      ExpectMemberEnd(at, memberPath);
    }
    if (*at == '}') return at + 1;
    at = SkipWhitespace(at + 1);
  }
}

const char *MgjsonScanner::ParseArray(const char *at, const PropertyPath &path, JsonValue *out,
                                      JsonAllocator *allocator, std::uint16_t depth,
                                      std::size_t *itemCount) const {
  if (depth > kMaxNestingDepth) RaiseAtOffset(Msg::TooDeepNesting, -1, "100");
  if (at == end_ || *at != '[') {
    RaiseAtOffset(Msg::InvalidPropertyTypeSyntax, OffsetOf(at), Quoted(path.Text()), kJsonArray);
  }
  at = SkipWhitespace(at + 1);
  if (at == end_) {
    RaiseAtOffset(Msg::InvalidPropertyTypeSyntax, OffsetOf(at), Quoted(path.Text()), kJsonArray);
  }
  if (out != nullptr) out->SetArray();
  for (std::size_t index = 0;; ++index) {
    const PropertyPath itemPath = path.Item(index);
    if (out != nullptr) {
      JsonValue item;
      at = ReadValue(at, itemPath, &item, allocator, depth + 1);
      out->PushBack(item, *allocator);
    } else {
      at = ReadValue(at, itemPath, nullptr, nullptr, depth + 1);
    }
    at = SkipWhitespace(at);
    if (at == end_ || (*at != ',' && *at != ']')) {
      RaiseAtOffset(Msg::InvalidPropertyMissingCommaOrClosingBracket, OffsetOf(at),
                    Quoted(itemPath.Text()));
    }
    if (*at == ']') {
      if (itemCount != nullptr) *itemCount = index + 1;
      return at + 1;
    }
    at = SkipWhitespace(at + 1);
  }
}

}  // namespace ns_sensor
