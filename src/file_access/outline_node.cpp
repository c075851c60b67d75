#include "file_access/outline_node.hpp"

#include <array>

#include "mgjson_read/member_lookup.hpp"

namespace ns_sensor {
namespace {

constexpr std::string_view kStaticPrefix = "dataStatic";
constexpr std::string_view kDynamicPrefix = "dataDynamic";
constexpr std::string_view kGroupType = "dataGroup";

// Indexed by type code.
constexpr std::array<std::string_view, 3> kTypeNames = {"Group data node", "Dynamic data node",
                                                        "Static data node"};
constexpr std::string_view kInvalidTypeName = "invalid node";
static_assert(PX_NODE_GROUP == 0 && PX_NODE_DYNAMIC == 1 && PX_NODE_STATIC == 2);

}  // namespace

const JsonValue *MemberOf(const JsonValue &node, std::string_view name) { return FindMemberValue(node, name); }

PX_NodeType NodeTypeOf(std::string_view objectType) {
  if (objectType.starts_with(kStaticPrefix)) return PX_NODE_STATIC;
  if (objectType.starts_with(kDynamicPrefix)) return PX_NODE_DYNAMIC;
  if (objectType == kGroupType) return PX_NODE_GROUP;
  return PX_NODE_OTHER;
}

PX_NodeType NodeTypeOf(const JsonValue &node) {
  const JsonValue *objectType = MemberOf(node, kObjectTypeMember);
  if (objectType == nullptr || !objectType->IsString()) return PX_NODE_OTHER;
  return NodeTypeOf(std::string_view(objectType->GetString(), objectType->GetStringLength()));
}

std::string_view NodeTypeName(std::uint32_t typeCode) {
  return typeCode < kTypeNames.size() ? kTypeNames[typeCode] : kInvalidTypeName;
}

std::string_view StringMember(const JsonValue &node, std::string_view name) {
  const JsonValue *member = MemberOf(node, name);
  if (member == nullptr || !member->IsString()) return {};
  return {member->GetString(), member->GetStringLength()};
}

const JsonValue *ChildrenOf(const JsonValue &node) {
  const JsonValue *children = MemberOf(node, kChildrenMember);
  return children != nullptr && children->IsArray() ? children : nullptr;
}

}  // namespace ns_sensor
