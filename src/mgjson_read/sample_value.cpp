#include "mgjson_read/sample_value.hpp"

#include <charconv>
#include <cmath>

#include "mgjson_read/compact_json.hpp"

namespace ns_sensor {
namespace {

using compact_json::ItemReader;
using compact_json::MemberReader;

bool IsStringValue(std::string_view json) { return !json.empty() && json.front() == '"'; }
bool IsNumberValue(std::string_view json) {
  return !json.empty() && (json.front() == '-' || (json.front() >= '0' && json.front() <= '9'));
}

// A number item: a number string or a JSON number. `text` receives what it says. `json`
// is one whole value, as the compacted text's readers hand it over.
bool ReadNumberItem(std::string_view json, std::string &scratch, std::string_view &text, double &number) {
  if (IsNumberValue(json)) {
    text = json;
    return ReadNumberText(text, number);
  }
  if (!IsStringValue(json) || json.size() < 2 || json.back() != '"') return false;
  text = json.substr(1, json.size() - 2);
  // A backslash stops the number, so an escaped text is only unescaped when it failed.
  if (ReadNumberText(text, number)) return true;
  if (text.find('\\') == std::string_view::npos) return false;
  compact_json::Unescape(text, scratch);
  text = scratch;
  return ReadNumberText(text, number);
}

ValueFault ReadNumberString(std::string_view json, DecodedValue &value) {
  double number = 0;
  if (!ReadNumberItem(json, value.scratch, value.text, number)) return ValueFault::Unreadable;
  value.numbers.push_back(number);
  return ValueFault::None;
}

ValueFault ReadNumberArray(const SampleValueType &type, std::string_view json, DecodedValue &value) {
  ItemReader items(json.data(), json.data() + json.size());
  if (items.failed()) return ValueFault::Unreadable;
  value.textBuffer.clear();
  std::string_view item;
  std::uint32_t index = 0;
  while (items.Next(item)) {
    if (!IsStringValue(item) && !IsNumberValue(item)) {
      value.failedItem = index;
      return ValueFault::ArrayItemType;
    }
    if (index == type.arraySize) return ValueFault::Unreadable;  // more items than the node says
    std::string_view text;
    double number = 0;
    if (!ReadNumberItem(item, value.scratch, text, number)) return ValueFault::Unreadable;
    if (index != 0) value.textBuffer += ',';
    value.textBuffer += text;
    value.numbers.push_back(number);
    ++index;
  }
  if (items.failed() || items.after() != json.data() + json.size()) return ValueFault::Unreadable;
  if (index < type.arraySize) return ValueFault::ArrayTooShort;
  value.text = value.textBuffer;
  return ValueFault::None;
}

// "length" of a padded string: a string of digits or a whole JSON number.
bool ReadPaddedLength(std::string_view json, std::uint64_t &length) {
  std::string_view digits = json;
  if (IsStringValue(json)) {
    if (json.size() < 2 || json.back() != '"') return false;
    digits = json.substr(1, json.size() - 2);
  } else if (!IsNumberValue(json)) {
    return false;
  }
  if (digits.empty()) return false;
  double number = 0;
  if (!ReadNumberText(digits, number) || number < 0 || std::floor(number) != number) return false;
  constexpr double kLargestLength = 4294967295.0;
  length = number > kLargestLength ? static_cast<std::uint64_t>(kLargestLength) + 1 : static_cast<std::uint64_t>(number);
  return true;
}

std::uint64_t CharacterCount(std::string_view utf8) {
  std::uint64_t count = 0;
  for (const char byte : utf8) count += (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
  return count;
}

ValueFault ReadPaddedString(const SampleValueType &type, std::string_view json, DecodedValue &value) {
  MemberReader members(json.data(), json.data() + json.size());
  std::string_view key;
  std::string_view member;
  std::string_view str;
  std::string_view length;
  bool hasStr = false;
  bool hasLength = false;
  while (members.Next(key, member)) {
    if (key == "str") {
      str = member;
      hasStr = true;
    } else if (key == "length") {
      length = member;
      hasLength = true;
    }
  }
  if (members.failed() || members.after() != json.data() + json.size()) return ValueFault::Unreadable;
  if (!hasStr || !hasLength || !IsStringValue(str)) return ValueFault::Unreadable;
  std::uint64_t declaredLength = 0;
  if (!ReadPaddedLength(length, declaredLength)) return ValueFault::Unreadable;
  std::string_view body;
  bool escaped = false;
  compact_json::ReadString(str.data(), str.data() + str.size(), body, escaped);
  value.text = compact_json::StringText(body, escaped, value.textBuffer);
  if (declaredLength > type.maxLen || CharacterCount(value.text) > type.maxLen) return ValueFault::PaddedTooLong;
  return ValueFault::None;
}

}  // namespace

bool ReadNumberText(std::string_view text, double &number) {
  if (!text.empty() && text.front() == '+') {
    text.remove_prefix(1);
    if (!text.empty() && (text.front() == '+' || text.front() == '-')) return false;
  }
  const char *end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number, std::chars_format::general);
  return error == std::errc() && stop == end && std::isfinite(number);
}

ValueFault ReadSampleValue(const SampleValueType &type, std::string_view json, DecodedValue &value) {
  value.numbers.clear();
  value.text = {};
  value.failedItem = 0;
  switch (type.kind) {
    case PX_TYPE_NUMBER_STRING:
      return ReadNumberString(json, value);
    case PX_TYPE_NUMBER_STRING_ARRAY:
      return ReadNumberArray(type, json, value);
    case PX_TYPE_PADDED_STRING:
      return ReadPaddedString(type, json, value);
    default:
      return ValueFault::Unreadable;
  }
}

}  // namespace ns_sensor
