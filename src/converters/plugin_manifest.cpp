#include "converters/plugin_manifest.hpp"

#include <cmath>
#include <limits>

#include "mgjson_read/rapidjson_config.hpp"

namespace ns_sensor {
namespace {

// Iterative: a deeply nested manifest costs heap, not stack.
constexpr unsigned kParseFlags = rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag;

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
// The name used when none is given for the current locale.
constexpr std::string_view kFallbackLocale = "en_US";
constexpr std::string_view kJsonArray = "JSON Array";

constexpr const char *kConverterKey = "converter";
constexpr const char *kIdentifierKey = "identifier";
constexpr const char *kNameKey = "name";
constexpr const char *kLocaleIdKey = "localeID";
constexpr const char *kValueKey = "value";
constexpr const char *kVersionKey = "version";
constexpr const char *kForcedKey = "force_converter";
constexpr const char *kSignaturesKey = "check_format";
constexpr const char *kByteSequenceKey = "byte_seq";
constexpr const char *kLengthKey = "length";
constexpr const char *kOffsetKey = "offset";
constexpr const char *kExtensionsKey = "extensions";

// 2^63 and 2^64 as doubles: the first values outside int64 and uint64.
constexpr double kInt64Limit = 9223372036854775808.0;
constexpr double kUint64Limit = 18446744073709551616.0;

[[noreturn]] void SchemaViolation(std::string_view key) { Raise(Msg::ManifestSchemaViolation, Quoted(key)); }

// The member's value, or none when the object lacks it (the first of duplicates counts).
const JsonValue *Member(const JsonValue &object, const char *key) {
  const auto found = object.FindMember(key);
  return found == object.MemberEnd() ? nullptr : &found->value;
}

std::string Text(const JsonValue &value) { return std::string(value.GetString(), value.GetStringLength()); }

// The member's string; any other type, or none, violates the schema under that key.
std::string RequiredText(const JsonValue &object, const char *key) {
  const JsonValue *value = Member(object, key);
  if (value == nullptr || !value->IsString()) SchemaViolation(key);
  return Text(*value);
}

// A version is compared as an integer: a fraction is dropped, and a number beyond
// 64 bits counts as the largest (or smallest) one.
std::int64_t AsVersion(const JsonValue &number) {
  if (number.IsInt64()) return number.GetInt64();
  if (number.IsUint64()) return std::numeric_limits<std::int64_t>::max();
  const double value = std::trunc(number.GetDouble());
  if (value >= kInt64Limit) return std::numeric_limits<std::int64_t>::max();
  if (value < -kInt64Limit) return std::numeric_limits<std::int64_t>::min();
  return static_cast<std::int64_t>(value);
}

// A length or offset counts bytes: a whole number from 0 up, else the schema is violated
// under its key (2.0 counts as 2; -1 and 1.5 name no byte position).
std::uint64_t RequiredCount(const JsonValue &object, const char *key) {
  const JsonValue *value = Member(object, key);
  if (value == nullptr || !value->IsNumber()) SchemaViolation(key);
  if (value->IsUint64()) return value->GetUint64();
  if (value->IsInt64()) SchemaViolation(key);
  const double number = value->GetDouble();
  if (!(number >= 0.0 && number < kUint64Limit) || std::trunc(number) != number) SchemaViolation(key);
  return static_cast<std::uint64_t>(number);
}

// The "value" of the first entry for the locale, else of the first whose locale starts
// with "en_US"; empty when there is neither. Every entry is checked, also after a match.
std::string ReadName(const JsonValue &converter, std::string_view locale) {
  const JsonValue *names = Member(converter, kNameKey);
  if (names == nullptr || !names->IsArray()) return {};
  const JsonValue *exact = nullptr;
  const JsonValue *fallback = nullptr;
  for (const JsonValue &entry : names->GetArray()) {
    if (!entry.IsObject()) SchemaViolation(kNameKey);
    const JsonValue *localeId = Member(entry, kLocaleIdKey);
    if (localeId == nullptr || !localeId->IsString()) SchemaViolation(kLocaleIdKey);
    const JsonValue *value = Member(entry, kValueKey);
    if (value == nullptr || !value->IsString()) SchemaViolation(kValueKey);
    const std::string_view id(localeId->GetString(), localeId->GetStringLength());
    if (exact == nullptr && id == locale) exact = value;
    if (fallback == nullptr && id.starts_with(kFallbackLocale)) fallback = value;
  }
  if (exact != nullptr) return Text(*exact);
  if (fallback != nullptr) return Text(*fallback);
  return {};
}

std::int64_t ReadVersion(const JsonValue &converter) {
  const JsonValue *version = Member(converter, kVersionKey);
  if (version == nullptr || !version->IsNumber()) SchemaViolation(kVersionKey);
  return AsVersion(*version);
}

bool ReadForced(const JsonValue &converter) {
  const JsonValue *forced = Member(converter, kForcedKey);
  return forced != nullptr && forced->IsBool() && forced->GetBool();
}

std::vector<FormatSignature> ReadSignatures(const JsonValue &converter) {
  std::vector<FormatSignature> signatures;
  const JsonValue *entries = Member(converter, kSignaturesKey);
  if (entries == nullptr || !entries->IsArray()) return signatures;
  for (const JsonValue &entry : entries->GetArray()) {
    if (!entry.IsObject()) SchemaViolation(kSignaturesKey);
    FormatSignature signature;
    signature.byteSeq = RequiredText(entry, kByteSequenceKey);
    signature.length = RequiredCount(entry, kLengthKey);
    signature.offset = RequiredCount(entry, kOffsetKey);
    signatures.push_back(std::move(signature));
  }
  return signatures;
}

// Extensions are looked up in the lower-case form every input's extension is reduced
// to, so they are kept in that form.
std::string LowerCaseAscii(std::string text) {
  for (char &c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return text;
}

std::vector<std::string> ReadExtensions(const JsonValue &converter) {
  std::vector<std::string> extensions;
  const JsonValue *entries = Member(converter, kExtensionsKey);
  if (entries == nullptr || !entries->IsArray()) return extensions;
  for (const JsonValue &entry : entries->GetArray()) {
    if (!entry.IsString()) SchemaViolation(kExtensionsKey);
    extensions.push_back(LowerCaseAscii(Text(entry)));
  }
  return extensions;
}

ConverterDescription ReadConverter(const JsonValue &converter, std::string_view locale) {
  if (!converter.IsObject()) SchemaViolation(kConverterKey);
  ConverterDescription description;
  description.identifier = RequiredText(converter, kIdentifierKey);
  description.name = ReadName(converter, locale);
  description.version = ReadVersion(converter);
  description.forced = ReadForced(converter);
  description.signatures = ReadSignatures(converter);
  description.extensions = ReadExtensions(converter);
  if (description.identifier.empty() || description.name.empty()) Raise(Msg::MandatoryPropertyNotPresent);
  return description;
}

// The JSON text proper: a resource or section may carry a terminator and padding after
// it, and an editor may have put a byte order mark before it.
std::string_view JsonBody(std::string_view text) {
  text = text.substr(0, text.find('\0'));
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  return text;
}

}  // namespace

std::vector<ConverterDescription> ReadPluginManifest(std::string_view text, std::string_view locale) {
  const std::string_view body = JsonBody(text);
  JsonDocument document;
  document.Parse<kParseFlags>(body.empty() ? "" : body.data(), body.size());
  if (document.HasParseError()) Raise(Msg::ManifestParseFailed);

  const JsonValue *converters = document.IsObject() ? Member(document, kConverterKey) : nullptr;
  if (converters == nullptr || !converters->IsArray()) {
    Raise(Msg::ManifestInvalidPropertyType, Quoted(kConverterKey), kJsonArray);
  }
  std::vector<ConverterDescription> descriptions;
  for (const JsonValue &converter : converters->GetArray()) descriptions.push_back(ReadConverter(converter, locale));
  return descriptions;
}

}  // namespace ns_sensor
