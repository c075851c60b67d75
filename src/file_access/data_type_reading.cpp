#include "file_access/data_type_reading.hpp"

#include <limits>

#include "file_access/outline_node.hpp"
#include "mgjson_read/sample_value.hpp"

namespace ns_sensor {
namespace {

struct KindName {
  std::string_view type;
  std::uint32_t kind;
};
constexpr KindName kKinds[] = {
    {"number", PX_TYPE_NUMBER},
    {"string", PX_TYPE_STRING},
    {"boolean", PX_TYPE_BOOLEAN},
    {"numberArray", PX_TYPE_NUMBER_ARRAY},
    {"numberString", PX_TYPE_NUMBER_STRING},
    {"paddedString", PX_TYPE_PADDED_STRING},
    {"numberStringArray", PX_TYPE_NUMBER_STRING_ARRAY},
};

enum class PropertyObject { None, NumberString, PaddedString, NumberArray };

// Which property object each kind uses (a version 2 "string" is padded-string shaped).
PropertyObject PropertyObjectOf(std::uint32_t kind) {
  switch (kind) {
    case PX_TYPE_NUMBER:
    case PX_TYPE_NUMBER_STRING:
      return PropertyObject::NumberString;
    case PX_TYPE_STRING:
    case PX_TYPE_PADDED_STRING:
      return PropertyObject::PaddedString;
    case PX_TYPE_NUMBER_ARRAY:
    case PX_TYPE_NUMBER_STRING_ARRAY:
      return PropertyObject::NumberArray;
    default:
      return PropertyObject::None;
  }
}

// The member under `name`, else under `fallback` (a misspelling files are allowed).
const JsonValue *MemberEither(const JsonValue &object, std::string_view name,
                              std::string_view fallback) {
  const JsonValue *value = MemberOf(object, name);
  return value != nullptr ? value : MemberOf(object, fallback);
}

double NumberMember(const JsonValue *object, std::string_view name) {
  const JsonValue *value = object ? MemberOf(*object, name) : nullptr;
  return value != nullptr && value->IsNumber() ? value->GetDouble() : 0.0;
}

std::uint32_t CountMember(const JsonValue *object, std::string_view name) {
  const JsonValue *value = object ? MemberOf(*object, name) : nullptr;
  return value != nullptr ? WholeCount(*value) : 0;
}

std::uint32_t FlagMember(const JsonValue *object, std::string_view name) {
  const JsonValue *value = object ? MemberOf(*object, name) : nullptr;
  return value != nullptr && value->IsBool() && value->GetBool() ? 1u : 0u;
}

std::string_view TextOf(const JsonValue &value) {
  return {value.GetString(), value.GetStringLength()};
}

struct MinMax {
  double min = 0.0;
  double max = 0.0;
};
MinMax ReadMinMax(const JsonValue *minMax) {
  return {NumberMember(minMax, "min"), NumberMember(minMax, "max")};
}

struct Range {
  MinMax occurring;
  MinMax legal;
};
Range ReadRange(const JsonValue *range) {
  if (range == nullptr) return {};
  return {ReadMinMax(MemberEither(*range, "occurring", "occuring")), ReadMinMax(MemberOf(*range, "legal"))};
}

struct Pattern {
  std::uint32_t isSigned = 0;
  std::uint32_t digitsInteger = 0;
  std::uint32_t digitsDecimal = 0;
};
Pattern ReadPattern(const JsonValue *holder) {
  const JsonValue *pattern = holder ? MemberOf(*holder, "pattern") : nullptr;
  return {FlagMember(pattern, "isSigned"), CountMember(pattern, "digitsInteger"),
          CountMember(pattern, "digitsDecimal")};
}

PX_NumberStringProperties ReadNumberString(const JsonValue &properties) {
  const Pattern pattern = ReadPattern(&properties);
  const Range range = ReadRange(MemberOf(properties, "range"));
  return {pattern.isSigned,    pattern.digitsInteger, pattern.digitsDecimal, range.occurring.min,
          range.occurring.max, range.legal.min,       range.legal.max};
}

PX_PaddedStringProperties ReadPaddedString(const JsonValue &properties) {
  return {CountMember(&properties, "maxLen"), CountMember(&properties, "maxDigitsInStrLength"),
          FlagMember(&properties, "eventMarkerB")};
}

PX_NumberArrayProperties ReadNumberArray(const JsonValue &properties) {
  const Pattern pattern = ReadPattern(&properties);
  PX_NumberArrayProperties result;
  result.isSigned = pattern.isSigned;
  result.digitsInteger = pattern.digitsInteger;
  result.digitsDecimal = pattern.digitsDecimal;
  result.arraySize = CountMember(&properties, "arraySize");
  result.isPoint = FlagMember(&properties, "isPoint");
  const JsonValue *names = MemberOf(properties, "arrayDisplayNames");
  if (names != nullptr && names->IsArray()) {
    for (const JsonValue &name : names->GetArray()) {
      result.displayNames.emplace_back(name.IsString() ? TextOf(name) : std::string_view());
    }
  }
  const JsonValue *arrayRanges = MemberOf(properties, "arrayRanges");
  const JsonValue *ranges = arrayRanges ? MemberOf(*arrayRanges, "ranges") : nullptr;
  if (ranges != nullptr && ranges->IsArray()) {
    for (const JsonValue &item : ranges->GetArray()) {
      const Range range = ReadRange(&item);
      result.ranges.push_back(
          {range.occurring.min, range.occurring.max, range.legal.min, range.legal.max});
    }
  }
  return result;
}

// A JSON number as it is, a number string by what it writes; NaN for anything else.
double NumberOfValue(const JsonValue &value) {
  if (value.IsNumber()) return value.GetDouble();
  if (value.IsString()) return NumberOfText(TextOf(value));
  return std::numeric_limits<double>::quiet_NaN();
}

}  // namespace

std::uint32_t DataTypeKindOf(std::string_view type) {
  for (const KindName &entry : kKinds) {
    if (entry.type == type) return entry.kind;
  }
  return PX_TYPE_UNKNOWN;
}

PX_DataTypeInfo ReadDataType(const JsonValue &node) {
  PX_DataTypeInfo info;
  const JsonValue *dataType = MemberOf(node, "dataType");
  if (dataType == nullptr) return info;
  const JsonValue *type = MemberOf(*dataType, "type");
  info.kind = type != nullptr && type->IsString() ? DataTypeKindOf(TextOf(*type))
                                                 : static_cast<std::uint32_t>(PX_TYPE_UNKNOWN);
  switch (PropertyObjectOf(info.kind)) {
    case PropertyObject::NumberString:
      if (const JsonValue *properties = MemberOf(*dataType, "numberStringProperties")) {
        info.numberString = ReadNumberString(*properties);
      }
      break;
    case PropertyObject::PaddedString:
      if (const JsonValue *properties = MemberOf(*dataType, "paddedStringProperties")) {
        info.paddedString = ReadPaddedString(*properties);
      }
      break;
    case PropertyObject::NumberArray:
      if (const JsonValue *properties = MemberOf(*dataType, "numberArrayProperties")) {
        info.numberArray = ReadNumberArray(*properties);
      }
      break;
    case PropertyObject::None:
      break;
  }
  return info;
}

PX_StaticValueInfo ReadStaticValue(const JsonValue &node, std::uint32_t kind) {
  PX_StaticValueInfo value;
  value.kind = kind;
  const JsonValue *member = MemberOf(node, "value");
  if (member == nullptr) return value;
  switch (kind) {
    case PX_TYPE_NUMBER:
    case PX_TYPE_NUMBER_STRING:
      value.number = NumberOfValue(*member);
      break;
    case PX_TYPE_STRING:
      if (member->IsString()) value.text = TextOf(*member);
      break;
    case PX_TYPE_PADDED_STRING:
      // A padded string value is {"length", "str"}; the text is its "str".
      if (const JsonValue *str = MemberOf(*member, "str"); str != nullptr && str->IsString()) {
        value.text = TextOf(*str);
      }
      break;
    case PX_TYPE_BOOLEAN:
      value.boolean = member->IsBool() && member->GetBool();
      break;
    case PX_TYPE_NUMBER_ARRAY:
    case PX_TYPE_NUMBER_STRING_ARRAY:
      if (member->IsArray()) {
        value.numbers.reserve(member->Size());
        for (const JsonValue &item : member->GetArray()) value.numbers.push_back(NumberOfValue(item));
      }
      break;
    default:
      break;
  }
  return value;
}

std::uint32_t WholeCount(const JsonValue &value) {
  if (!value.IsNumber() || !(value.GetDouble() > 0.0)) return 0;
  const double number = value.GetDouble();
  constexpr auto kLargest = std::numeric_limits<std::uint32_t>::max();
  return number >= static_cast<double>(kLargest) ? kLargest : static_cast<std::uint32_t>(number);
}

double NumberOfText(std::string_view text) {
  double number = 0.0;
  return ReadNumberText(text, number) ? number : std::numeric_limits<double>::quiet_NaN();
}

}  // namespace ns_sensor
