// The base validator: primitive checks, the outline walk and the members every node has.
#include "mgjson_read/validator.hpp"

#include "mgjson_read/member_lookup.hpp"

namespace ns_sensor {
namespace {

constexpr std::string_view kObjectTypeText =
    R"(one of "dataStatic", "dataDynamic" or "dataGroup")";
constexpr std::string_view kInterpolationText = R"(one of "linear" or "hold")";

std::string_view TextOf(const JsonValue &string) {
  return {string.GetString(), string.GetStringLength()};
}

// Match names follow identifier rules: ASCII letters and digits, not starting with a digit.
bool IsAsciiLetterOrDigit(char byte) {
  return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') ||
         (byte >= '0' && byte <= '9');
}

void RaiseWrongType(std::string_view name, const char *expected, const CheckPath &path) {
  if (path.empty()) Raise(Msg::InvalidPropertyType, Quoted(name), expected);
  Raise(Msg::InvalidPropertyTypeAtPath, Quoted(name), expected, Quoted(path.Text()));
}

}  // namespace

const JsonValue &PX_MgjsonValidator::GetRequiredMember(const JsonValue &object,
                                                       std::string_view name,
                                                       const CheckPath &path) const {
  if (!object.IsObject()) RaiseRapidJsonAssertion();  // as RapidJSON's own search does
  if (const JsonValue *found = FindMemberValue(object, name)) return *found;
  if (path.empty()) Raise(Msg::MissingRequiredProperty, Quoted(name));
  Raise(Msg::MissingRequiredPropertyAtPath, Quoted(name), Quoted(path.Text()));
}

const JsonMember &PX_MgjsonValidator::GetRequiredMemberEither(const JsonValue &object,
                                                              std::string_view first,
                                                              std::string_view second,
                                                              const CheckPath &path) const {
  if (!object.IsObject()) RaiseRapidJsonAssertion();  // as RapidJSON's own search does
  for (const std::string_view name : {first, second}) {
    if (const JsonMember *found = FindNamedMember(object, name)) return *found;
  }
  if (path.empty()) Raise(Msg::MissingRequiredProperty, Quoted(second));
  Raise(Msg::MissingRequiredPropertyAtPath, Quoted(second), Quoted(path.Text()));
}

void PX_MgjsonValidator::ExpectObject(const JsonValue &value, std::string_view name,
                                      const CheckPath &path) const {
  if (!value.IsObject()) RaiseWrongType(name, "JSON Object", path);
}

void PX_MgjsonValidator::ExpectArray(const JsonValue &value, std::string_view name,
                                     const CheckPath &path) const {
  if (!value.IsArray()) RaiseWrongType(name, "JSON Array", path);
}

void PX_MgjsonValidator::ExpectString(const JsonValue &value, std::string_view name,
                                      const CheckPath &path) const {
  if (!value.IsString()) RaiseWrongType(name, "JSON String", path);
}

void PX_MgjsonValidator::ExpectNumber(const JsonValue &value, std::string_view name,
                                      const CheckPath &path) const {
  if (!value.IsNumber()) RaiseWrongType(name, "JSON Number", path);
}

void PX_MgjsonValidator::ExpectBoolean(const JsonValue &value, std::string_view name,
                                       const CheckPath &path) const {
  if (!value.IsBool()) RaiseWrongType(name, "JSON Boolean", path);
}

void PX_MgjsonValidator::ExpectNonEmptyArray(const JsonValue &value, std::string_view name,
                                             const CheckPath &path) const {
  if (!value.Empty()) return;
  if (path.empty()) Raise(Msg::EmptyArray, Quoted(name));
  Raise(Msg::EmptyArrayAtPath, Quoted(name), Quoted(path.Text()));
}

void PX_MgjsonValidator::ValidateDataOutline(const JsonValue &outline) const {
  ExpectArray(outline, "dataOutline");
  ExpectNonEmptyArray(outline, "dataOutline");
  MatchNameSet matchNames;
  for (rapidjson::SizeType i = 0; i < outline.Size(); ++i) {
    ValidateNode(outline[i], "dataOutline", CheckPath::Indexed("dataOutline", i), matchNames);
  }
}

void PX_MgjsonValidator::ValidateNode(const JsonValue &node, std::string_view name,
                                      const CheckPath &path, MatchNameSet &matchNames) const {
  ExpectObject(node, name, path);
  const JsonValue &objectType = GetRequiredMember(node, "objectType", path);
  ExpectString(objectType, "objectType", path);
  const std::string_view kind = TextOf(objectType);
  if (kind == "dataStatic") {
    ValidateStaticNode(node, path, matchNames);
  } else if (kind == "dataDynamic") {
    ValidateDynamicNode(node, path, matchNames);
  } else if (kind == "dataGroup") {
    ValidateGroupNode(node, path, matchNames);
  } else {
    Raise(Msg::InvalidPropertyValueAtPath, Quoted("objectType"), Quoted(path.Text()), kObjectTypeText);
  }
}

void PX_MgjsonValidator::ValidateGroupNode(const JsonValue &node, const CheckPath &itemPath,
                                           MatchNameSet &matchNames) const {
  const CheckPath path = ValidateDisplayName(node, itemPath);
  ValidateMatchName(node, path, matchNames);
  const JsonValue &children = GetRequiredMember(node, "children", path);
  ExpectArray(children, "children", path);
  ExpectNonEmptyArray(children, "children", path);
  for (rapidjson::SizeType i = 0; i < children.Size(); ++i) {
    ValidateNode(children[i], "children", path.Item("children", i), matchNames);
  }
}

CheckPath PX_MgjsonValidator::ValidateDisplayName(const JsonValue &node,
                                                  const CheckPath &path) const {
  const JsonValue &displayName = GetRequiredMember(node, "displayName", path);
  ExpectString(displayName, "displayName", path);
  return path.Named(TextOf(displayName));
}

void PX_MgjsonValidator::ValidateMatchName(const JsonValue &node, const CheckPath &path,
                                           MatchNameSet &matchNames) const {
  const JsonValue &matchName = GetRequiredMember(node, "matchName", path);
  ExpectString(matchName, "matchName", path);
  const std::string_view name = TextOf(matchName);
  const bool startsWithDigit = !name.empty() && name.front() >= '0' && name.front() <= '9';
  bool allLettersOrDigits = true;
  for (const char byte : name) allLettersOrDigits = allLettersOrDigits && IsAsciiLetterOrDigit(byte);
  if (startsWithDigit || !allLettersOrDigits) {
    Raise(Msg::InvalidMatchName, Quoted("matchName"), Quoted(path.Text()));
  }
  if (!matchNames.Insert(name)) {
    Raise(Msg::DuplicateMatchName, Quoted(name), Quoted(path.Text()));
  }
}

std::string_view PX_MgjsonValidator::ValidateDataType(const JsonValue &node,
                                                      const CheckPath &path,
                                                      std::span<const TypeRule> rules,
                                                      std::string_view allowedText) const {
  const JsonValue &dataType = GetRequiredMember(node, "dataType", path);
  ExpectObject(dataType, "dataType", path);
  const CheckPath dataTypePath = path.Member("dataType");
  const JsonValue &type = GetRequiredMember(dataType, "type", dataTypePath);
  ExpectString(type, "type", dataTypePath);
  for (const TypeRule &rule : rules) {
    if (rule.type != TextOf(type)) continue;
    switch (rule.check) {
      case PropertyCheck::NumberString:
        ValidateNumberStringProperties(dataType, dataTypePath);
        break;
      case PropertyCheck::PaddedString:
        ValidatePaddedStringProperties(dataType, dataTypePath);
        break;
      case PropertyCheck::NumberArray:
        ValidateNumberArrayProperties(dataType, dataTypePath);
        break;
      case PropertyCheck::None:
        break;
    }
    return rule.type;
  }
  Raise(Msg::InvalidPropertyValueAtPath, Quoted("type"), Quoted(dataTypePath.Text()), allowedText);
}

void PX_MgjsonValidator::ValidateDynamicNodeWith(const JsonValue &node, const CheckPath &itemPath,
                                                 MatchNameSet &matchNames,
                                                 std::span<const TypeRule> rules,
                                                 std::string_view allowedText) const {
  const CheckPath path = ValidateDisplayName(node, itemPath);
  ValidateMatchName(node, path, matchNames);
  ValidateDataType(node, path, rules, allowedText);
  ValidateSampleSetId(node, path);
  ValidateInterpolation(node, path);
  ValidateHasExpectedFrequency(node, path);
  ValidateSampleCount(node, path);
  const auto duration = node.FindMember("expectedMaxInterSampleDuration");
  if (duration != node.MemberEnd()) {
    ExpectString(duration->value, "expectedMaxInterSampleDuration", path);
  }
}

void PX_MgjsonValidator::ValidateSampleSetId(const JsonValue &node,
                                             const CheckPath &path) const {
  ExpectString(GetRequiredMember(node, "sampleSetID", path), "sampleSetID", path);
}

void PX_MgjsonValidator::ValidateInterpolation(const JsonValue &node,
                                               const CheckPath &path) const {
  const JsonValue &interpolation = GetRequiredMember(node, "interpolation", path);
  ExpectString(interpolation, "interpolation", path);
  const std::string_view value = TextOf(interpolation);
  if (value != "linear" && value != "hold") {
    Raise(Msg::InvalidPropertyValueAtPath, Quoted("interpolation"), Quoted(path.Text()),
          kInterpolationText);
  }
}

void PX_MgjsonValidator::ValidateHasExpectedFrequency(const JsonValue &node,
                                                      const CheckPath &path) const {
  // The misspelt key is still written by some producers and stays accepted.
  const JsonMember &member =
      GetRequiredMemberEither(node, "hasExpectedFrequencyB", "hasExpectedFrequecyB", path);
  ExpectBoolean(member.value, TextOf(member.name), path);
}

void PX_MgjsonValidator::ValidateSampleCount(const JsonValue &node,
                                             const CheckPath &path) const {
  ExpectNumber(GetRequiredMember(node, "sampleCount", path), "sampleCount", path);
}

void PX_MgjsonValidator::ValidateItems(
    const JsonValue &array, std::string_view name, const CheckPath &path,
    void (PX_MgjsonValidator::*expectItem)(const JsonValue &, std::string_view, const CheckPath &)
        const) const {
  ExpectArray(array, name, path);
  ExpectNonEmptyArray(array, name, path);
  for (rapidjson::SizeType i = 0; i < array.Size(); ++i) {
    (this->*expectItem)(array[i], name, path.Item(name, i));
  }
}

}  // namespace ns_sensor
