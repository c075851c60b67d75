#include "mgjson_read/scanner.hpp"

#include <algorithm>
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

// Member names that every node of an outline repeats and that are too long to be kept
// inside a document value: the document refers to these constants instead of holding a
// copy per node (some ten per cent of a large outline's memory).
constexpr std::string_view kSharedMemberNames[] = {
    "numberStringProperties", "paddedStringProperties", "numberArrayProperties",
    "maxDigitsInStrLength",   "arrayDisplayNames",      "hasExpectedFrequencyB",
    "hasExpectedFrequecyB",   "expectedMaxInterSampleDuration", "videoSyncTimeList",
    "precisionLength",
};
constexpr std::size_t kShortestSharedName = [] {
  std::size_t shortest = kSharedMemberNames[0].size();
  for (const std::string_view name : kSharedMemberNames) shortest = std::min(shortest, name.size());
  return shortest;
}();

// The constant that spells `key`, or an empty view.
std::string_view SharedMemberName(std::string_view key) {
  if (key.size() < kShortestSharedName) return {};
  for (const std::string_view name : kSharedMemberNames) {
    if (name == key) return name;
  }
  return {};
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

const char *MgjsonScanner::ReadValue(const char *at, const PropertyPath &path, JsonDocument *events,
                                     std::uint16_t depth) const {
  switch (at == end_ ? '\0' : *at) {
    case '"': {
      std::string_view text;
      std::string scratch;
      at = ReadString(at, path, text, scratch);
      if (events != nullptr) events->String(text.data(), DocumentLength(text.size()), true);
      return at;
    }
    case '[':
      return ReadArray(at, path, events, depth, nullptr);
    case '{':
      return ReadObject(at, path, events, depth);
    case 'f':
    case 't': {
      bool value = false;
      at = ReadBoolean(at, path, value);
      if (events != nullptr) events->Bool(value);
      return at;
    }
    default: {
      double value = 0.0;
      at = ReadNumber(at, path, value);
      if (events != nullptr) events->Double(value);
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

const char *MgjsonScanner::ParseObject(const char *at, const PropertyPath &path, JsonDocument *out,
                                       std::uint16_t depth) const {
  if (out == nullptr) return ReadObject(at, path, nullptr, depth);
  // Populate drops what was built when the reading raises.
  auto read = [&](JsonDocument &events) {
    at = ReadObject(at, path, &events, depth);
    return true;
  };
  out->Populate(read);
  return at;
}

const char *MgjsonScanner::ParseArray(const char *at, const PropertyPath &path, JsonDocument *out,
                                      std::uint16_t depth, std::size_t *itemCount) const {
  if (out == nullptr) return ReadArray(at, path, nullptr, depth, itemCount);
  auto read = [&](JsonDocument &events) {
    at = ReadArray(at, path, &events, depth, itemCount);
    return true;
  };
  out->Populate(read);
  return at;
}

const char *MgjsonScanner::ReadObject(const char *at, const PropertyPath &path, JsonDocument *events,
                                      std::uint16_t depth) const {
  if (depth > kMaxNestingDepth) RaiseAtOffset(Msg::TooDeepNesting, -1, "100");
  if (at == end_ || *at != '{') {
    RaiseAtOffset(Msg::InvalidPropertyTypeSyntax, OffsetOf(at), Quoted(path.Text()), kJsonObject);
  }
  at = SkipWhitespace(at + 1);
  if (at == end_) {
    RaiseAtOffset(Msg::InvalidPropertyTypeSyntax, OffsetOf(at), Quoted(path.Text()), kJsonObject);
  }
  if (events != nullptr) events->StartObject();
  for (rapidjson::SizeType members = 1;; ++members) {
    std::string_view key;
    std::string keyScratch;  // holds the key, and so the member's path, until the member ends
    at = ExpectColon(ReadKey(at, key, keyScratch), key);
    if (events != nullptr) {
      const std::string_view shared = SharedMemberName(key);
      if (shared.empty()) {
        events->Key(key.data(), DocumentLength(key.size()), true);
      } else {
        events->Key(shared.data(), DocumentLength(shared.size()), false);
      }
    }
    const PropertyPath memberPath = path.Member(key);
    at = SkipWhitespace(ReadValue(at, memberPath, events, depth + 1));
    ExpectMemberEnd(at, memberPath);
    if (*at == '}') {
      if (events != nullptr) events->EndObject(members);
      return at + 1;
    }
    at = SkipWhitespace(at + 1);
  }
}

const char *MgjsonScanner::ReadArray(const char *at, const PropertyPath &path, JsonDocument *events,
                                     std::uint16_t depth, std::size_t *itemCount) const {
  if (depth > kMaxNestingDepth) RaiseAtOffset(Msg::TooDeepNesting, -1, "100");
  if (at == end_ || *at != '[') {
    RaiseAtOffset(Msg::InvalidPropertyTypeSyntax, OffsetOf(at), Quoted(path.Text()), kJsonArray);
  }
  at = SkipWhitespace(at + 1);
  if (at == end_) {
    RaiseAtOffset(Msg::InvalidPropertyTypeSyntax, OffsetOf(at), Quoted(path.Text()), kJsonArray);
  }
  if (events != nullptr) events->StartArray();
  for (std::size_t index = 0;; ++index) {
    const PropertyPath itemPath = path.Item(index);
    at = SkipWhitespace(ReadValue(at, itemPath, events, depth + 1));
    if (at == end_ || (*at != ',' && *at != ']')) {
      RaiseAtOffset(Msg::InvalidPropertyMissingCommaOrClosingBracket, OffsetOf(at),
                    Quoted(itemPath.Text()));
    }
    if (*at == ']') {
      if (events != nullptr) events->EndArray(DocumentLength(index + 1));
      if (itemCount != nullptr) *itemCount = index + 1;
      return at + 1;
    }
    at = SkipWhitespace(at + 1);
  }
}

}  // namespace ns_sensor
