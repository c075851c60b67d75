// The handler's queries of the data outline: children of the root and of a group, one
// child's type and names, static and dynamic node information.
#include "api/px_exception.hpp"
#include "file_access/data_path.hpp"
#include "file_access/data_type_reading.hpp"
#include "file_access/outline_node.hpp"
#include "file_access/sensor_file_handler.hpp"

namespace ns_sensor {
namespace {

constexpr std::string_view kLinear = "linear";
constexpr std::string_view kHold = "hold";

// The path text a host passed; a null text reads as empty (and is refused as such).
PX_DataPath ParsePathText(const char *dataPath) {
  return ParseDataPath(dataPath != nullptr ? std::string_view(dataPath) : std::string_view());
}

// Gives every item of a resolved path the match name of the node it selects, so each path
// handed out selects its node by position and by name alike.
void NameItems(const JsonValue &outline, PX_DataPath &path) {
  const JsonValue *list = &outline;
  for (std::size_t at = 1; at < path.size() && list != nullptr; ++at) {
    const JsonValue &node = (*list)[static_cast<rapidjson::SizeType>(path[at].index)];
    path[at].name = StringMember(node, kMatchNameMember);
    list = ChildrenOf(node);
  }
}

// One final item per element of `children`, after the parent's path.
void CollectChildren(const JsonValue &children, PX_DataPath parent, PX_GroupChildren &result) {
  result.parent = std::move(parent);
  result.children.reserve(children.Size());
  for (rapidjson::SizeType position = 0; position < children.Size(); ++position) {
    result.children.push_back(PX_PathItem{std::string(StringMember(children[position], kMatchNameMember)),
                                          static_cast<std::int32_t>(position)});
  }
}

// The interpolation compared over the lengths of its two words: "linearly" is linear too.
std::uint32_t InterpolationOf(std::string_view text) {
  if (text.substr(0, kLinear.size()) == kLinear) return PX_INTERPOLATION_LINEAR;
  if (text.substr(0, kHold.size()) == kHold) return PX_INTERPOLATION_HOLD;
  return PX_INTERPOLATION_NONE;
}

bool HasExpectedFrequency(const JsonValue &node) {
  const JsonValue *flag = MemberOf(node, "hasExpectedFrequencyB");
  // The misspelt name is accepted on purpose, as the validator accepts it.
  if (flag == nullptr) flag = MemberOf(node, "hasExpectedFrequecyB");
  return flag != nullptr && flag->IsBool() && flag->GetBool();
}

std::uint32_t SampleCountOf(const JsonValue &node) {
  const JsonValue *count = MemberOf(node, "sampleCount");
  return count != nullptr ? WholeCount(*count) : 0;
}

}  // namespace

void SensorFileHandlerImpl::GetRootChildren(PX_GroupChildren *children) {
  RequireRecord(children, "PX_GroupChildren");
  *children = PX_GroupChildren{};
  PX_DataPath root{PX_PathItem{std::string(kRootMatchName), kNoIndex}};
  if (Outline().IsArray()) CollectChildren(Outline(), std::move(root), *children);
}

void SensorFileHandlerImpl::GetGroupChildren(const char *dataPath, PX_GroupChildren *children) {
  RequireRecord(children, "PX_GroupChildren");
  *children = PX_GroupChildren{};
  PX_DataPath path = ParsePathText(dataPath);
  const JsonValue &list = GroupChildrenAt(Outline(), path);
  NameItems(Outline(), path);
  CollectChildren(list, std::move(path), *children);
}

void SensorFileHandlerImpl::GetGroupChildInfo(const char *dataPath, PX_GroupChildInfo *info) {
  RequireRecord(info, "PX_GroupChildInfo");
  *info = PX_GroupChildInfo{};
  PX_DataPath path = ParsePathText(dataPath);
  const PX_OutlineChild child = ChildAtPosition(Outline(), path);
  info->nodeType = child.type;
  info->displayName = child.displayName;
  info->matchName = child.matchName;
}

void SensorFileHandlerImpl::GetStaticDataInfo(const char *dataPath, PX_StaticDataInfo *info) {
  RequireRecord(info, "PX_StaticDataInfo");
  *info = PX_StaticDataInfo{};
  PX_DataPath path = ParsePathText(dataPath);
  const PX_OutlineChild child = DataNodeAt(Outline(), path, PX_NODE_STATIC);
  info->displayName = child.displayName;
  info->matchName = child.matchName;
  info->dataType = ReadDataType(*child.node);
  info->value = ReadStaticValue(*child.node, info->dataType.kind);
}

void SensorFileHandlerImpl::GetDynamicDataInfo(const char *dataPath, PX_DynamicDataInfo *info) {
  RequireRecord(info, "PX_DynamicDataInfo");
  *info = PX_DynamicDataInfo{};
  PX_DataPath path = ParsePathText(dataPath);
  const PX_OutlineChild child = DataNodeAt(Outline(), path, PX_NODE_DYNAMIC);
  const JsonValue &node = *child.node;
  info->displayName = child.displayName;
  info->matchName = child.matchName;
  info->sampleSetId = StringMember(node, "sampleSetID");
  info->dataType = ReadDataType(node);
  info->interpolation = InterpolationOf(StringMember(node, "interpolation"));
  info->hasExpectedFrequency = HasExpectedFrequency(node);
  info->sampleCount = SampleCountOf(node);
  info->maxInterSampleDuration = StringMember(node, "expectedMaxInterSampleDuration");
  SampleSetTimes(info->sampleSetId, info->firstSampleTime, info->lastSampleTime);
}

}  // namespace ns_sensor
