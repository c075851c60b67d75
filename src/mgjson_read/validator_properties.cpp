// The property objects of a node's dataType: what each member must look like. Values are
// not range-checked here (min is not compared with max, nor a count with arraySize).
#include "mgjson_read/validator.hpp"

namespace ns_sensor {

void PX_MgjsonValidator::ValidateNumberStringProperties(const JsonValue &dataType,
                                                        const CheckPath &path) const {
  const JsonValue &properties = GetRequiredMember(dataType, "numberStringProperties", path);
  ExpectObject(properties, "numberStringProperties", path);
  const CheckPath propertiesPath = path.Member("numberStringProperties");
  ValidatePattern(properties, propertiesPath);
  const JsonValue &range = GetRequiredMember(properties, "range", propertiesPath);
  ExpectObject(range, "range", propertiesPath);
  ValidateRange(range, propertiesPath.Member("range"));
}

void PX_MgjsonValidator::ValidatePaddedStringProperties(const JsonValue &dataType,
                                                        const CheckPath &path) const {
  const JsonValue &properties = GetRequiredMember(dataType, "paddedStringProperties", path);
  ExpectObject(properties, "paddedStringProperties", path);
  const CheckPath propertiesPath = path.Member("paddedStringProperties");
  ExpectNumber(GetRequiredMember(properties, "maxLen", propertiesPath), "maxLen", propertiesPath);
  ExpectNumber(GetRequiredMember(properties, "maxDigitsInStrLength", propertiesPath),
               "maxDigitsInStrLength", propertiesPath);
  ExpectBoolean(GetRequiredMember(properties, "eventMarkerB", propertiesPath), "eventMarkerB",
                propertiesPath);
}

void PX_MgjsonValidator::ValidateNumberArrayProperties(const JsonValue &dataType,
                                                       const CheckPath &path) const {
  const JsonValue &properties = GetRequiredMember(dataType, "numberArrayProperties", path);
  ExpectObject(properties, "numberArrayProperties", path);
  const CheckPath propertiesPath = path.Member("numberArrayProperties");
  ValidatePattern(properties, propertiesPath);
  ValidateArraySize(properties, propertiesPath);
  ValidateArrayDisplayNames(properties, propertiesPath);
  ValidateArrayRanges(properties, propertiesPath);
  const auto isPoint = properties.FindMember("isPoint");
  if (isPoint != properties.MemberEnd()) ExpectBoolean(isPoint->value, "isPoint", propertiesPath);
}

void PX_MgjsonValidator::ValidatePattern(const JsonValue &holder, const CheckPath &path) const {
  const JsonValue &pattern = GetRequiredMember(holder, "pattern", path);
  ExpectObject(pattern, "pattern", path);
  const CheckPath patternPath = path.Member("pattern");
  ExpectBoolean(GetRequiredMember(pattern, "isSigned", patternPath), "isSigned", patternPath);
  ExpectNumber(GetRequiredMember(pattern, "digitsInteger", patternPath), "digitsInteger",
               patternPath);
  ExpectNumber(GetRequiredMember(pattern, "digitsDecimal", patternPath), "digitsDecimal",
               patternPath);
}

void PX_MgjsonValidator::ValidateArraySize(const JsonValue &holder,
                                           const CheckPath &path) const {
  ExpectNumber(GetRequiredMember(holder, "arraySize", path), "arraySize", path);
}

void PX_MgjsonValidator::ValidateArrayDisplayNames(const JsonValue &holder,
                                                   const CheckPath &path) const {
  ValidateItems(GetRequiredMember(holder, "arrayDisplayNames", path), "arrayDisplayNames", path,
                &PX_MgjsonValidator::ExpectString);
}

void PX_MgjsonValidator::ValidateArrayRanges(const JsonValue &holder,
                                             const CheckPath &path) const {
  const JsonValue &arrayRanges = GetRequiredMember(holder, "arrayRanges", path);
  ExpectObject(arrayRanges, "arrayRanges", path);
  const CheckPath arrayRangesPath = path.Member("arrayRanges");
  const JsonValue &ranges = GetRequiredMember(arrayRanges, "ranges", arrayRangesPath);
  ExpectArray(ranges, "ranges", arrayRangesPath);
  ExpectNonEmptyArray(ranges, "ranges", arrayRangesPath);
  for (rapidjson::SizeType i = 0; i < ranges.Size(); ++i) {
    const CheckPath rangePath = arrayRangesPath.Item("ranges", i);
    ExpectObject(ranges[i], "ranges", rangePath);
    ValidateRange(ranges[i], rangePath);
  }
}

void PX_MgjsonValidator::ValidateRange(const JsonValue &range, const CheckPath &path) const {
  // The misspelt "occuring" is accepted too, so a missing range names that spelling.
  const JsonMember &occurring = GetRequiredMemberEither(range, "occurring", "occuring", path);
  ValidateNumberMinMax(occurring.value, path.Member(std::string_view(occurring.name.GetString(),
                                                                     occurring.name.GetStringLength())));
  ValidateNumberMinMax(GetRequiredMember(range, "legal", path), path.Member("legal"));
}

void PX_MgjsonValidator::ValidateNumberMinMax(const JsonValue &minMax,
                                              const CheckPath &path) const {
  ExpectObject(minMax, "numberMinMax", path);
  ExpectNumber(GetRequiredMember(minMax, "min", path), "min", path);
  ExpectNumber(GetRequiredMember(minMax, "max", path), "max", path);
}

}  // namespace ns_sensor
