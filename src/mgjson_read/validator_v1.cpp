// Schema version 1 nodes: three data types shared by static and dynamic nodes, and static
// values held as text.
#include "mgjson_read/validator.hpp"

namespace ns_sensor {
namespace {

constexpr std::string_view kTypeText = R"(one of "numberString", "paddedString" or "numberArray")";

using Check = PX_MgjsonValidator::PropertyCheck;
constexpr PX_MgjsonValidator::TypeRule kTypes[] = {
    {"numberString", Check::NumberString},
    {"paddedString", Check::PaddedString},
    {"numberArray", Check::NumberArray},
};

}  // namespace

void PX_MgjsonValidator_v1::ValidateStaticNode(const JsonValue &node, const CheckPath &itemPath,
                                               MatchNameSet &matchNames) const {
  const CheckPath path = ValidateDisplayName(node, itemPath);
  ValidateMatchName(node, path, matchNames);
  const std::string_view type = ValidateDataType(node, path, kTypes, kTypeText);
  const JsonValue &value = GetRequiredMember(node, "value", path);
  if (type == "numberString") {
    ExpectString(value, "value", path);
  } else if (type == "paddedString") {
    ExpectObject(value, "value", path);
    const CheckPath valuePath = path.Member("value");
    ExpectNumber(GetRequiredMember(value, "length", valuePath), "length", valuePath);
    ExpectString(GetRequiredMember(value, "str", valuePath), "str", valuePath);
  } else if (type == "numberArray") {
    ValidateItems(value, "value", path, &PX_MgjsonValidator::ExpectString);
  } else {
    Raise(Msg::InvalidPropertyValueAtPath, Quoted("value"), Quoted(path.Text()), kTypeText);
  }
}

void PX_MgjsonValidator_v1::ValidateDynamicNode(const JsonValue &node, const CheckPath &path,
                                                MatchNameSet &matchNames) const {
  ValidateDynamicNodeWith(node, path, matchNames, kTypes, kTypeText);
}

}  // namespace ns_sensor
