// Schema version 2: typed static values (number, string, boolean, number array), dynamic
// types of their own, and the time information gathered in dynamicDataInfo.
#include "mgjson_read/validator.hpp"

namespace ns_sensor {
namespace {

// The blank before the comma is part of the published text.
constexpr std::string_view kStaticTypeText =
    R"(one of "number", "string" , "boolean" or "numberArray")";
constexpr std::string_view kDynamicTypeText =
    R"(one of "numberString", "paddedString" or "numberStringArray".)";

using Check = PX_MgjsonValidator::PropertyCheck;
constexpr PX_MgjsonValidator::TypeRule kStaticTypes[] = {
    {"number", Check::NumberString},
    {"string", Check::PaddedString},
    {"numberArray", Check::NumberArray},
    {"boolean", Check::None},
};
constexpr PX_MgjsonValidator::TypeRule kDynamicTypes[] = {
    {"numberString", Check::NumberString},
    {"paddedString", Check::PaddedString},
    {"numberStringArray", Check::NumberArray},
};

}  // namespace

void PX_MgjsonValidator_v2::ValidateStaticNode(const JsonValue &node, const CheckPath &itemPath,
                                               MatchNameSet &matchNames) const {
  const CheckPath path = ValidateDisplayName(node, itemPath);
  ValidateMatchName(node, path, matchNames);
  const std::string_view type = ValidateDataType(node, path, kStaticTypes, kStaticTypeText);
  const JsonValue &value = GetRequiredMember(node, "value", path);
  if (type == "number") {
    ExpectNumber(value, "value", path);
  } else if (type == "string") {
    ExpectString(value, "value", path);
  } else if (type == "boolean") {
    ExpectBoolean(value, "value", path);
  } else if (type == "numberArray") {
    ValidateItems(value, "value", path, &PX_MgjsonValidator::ExpectNumber);
  } else {
    Raise(Msg::InvalidPropertyValueAtPath, Quoted("value"), Quoted(path.Text()), kStaticTypeText);
  }
}

void PX_MgjsonValidator_v2::ValidateDynamicNode(const JsonValue &node, const CheckPath &path,
                                                MatchNameSet &matchNames) const {
  ValidateDynamicNodeWith(node, path, matchNames, kDynamicTypes, kDynamicTypeText);
}

void PX_MgjsonValidator_v2::ValidateDynamicDataInfo(const JsonValue &dynamicDataInfo) const {
  constexpr std::string_view name = "dynamicDataInfo";
  const CheckPath path(name);
  ExpectObject(dynamicDataInfo, name);
  const std::string_view firstName =
      dynamicDataInfo.MemberCount() == 0
          ? std::string_view()
          : std::string_view(dynamicDataInfo.MemberBegin()->name.GetString(),
                             dynamicDataInfo.MemberBegin()->name.GetStringLength());
  if (firstName != "useTimecodeB") {
    Raise(Msg::TopPropertyNotTimeInfo, Quoted(name), Quoted("useTimecodeB"), Quoted(firstName));
  }
  const JsonValue &useTimecode = dynamicDataInfo.MemberBegin()->value;
  ExpectBoolean(useTimecode, "useTimecodeB", path);
  if (useTimecode.GetBool()) {
    const JsonValue &timecodeInfo = GetRequiredMember(dynamicDataInfo, "timecodeInfo", path);
    ExpectObject(timecodeInfo, "timecodeInfo", path);
    ValidateTimecodeInfo(timecodeInfo);
  } else {
    const JsonValue &utcInfo = GetRequiredMember(dynamicDataInfo, "utcInfo", path);
    ExpectObject(utcInfo, "utcInfo", path);
    ValidateUtcInfo(utcInfo);
  }
  const auto syncList = dynamicDataInfo.FindMember("videoSyncTimeList");
  if (syncList != dynamicDataInfo.MemberEnd()) {
    ExpectArray(syncList->value, "videoSyncTimeList", path);
    ExpectNonEmptyArray(syncList->value, "videoSyncTimeList", path);
    ValidateVideoSyncTimeList(syncList->value);
  }
}

}  // namespace ns_sensor
