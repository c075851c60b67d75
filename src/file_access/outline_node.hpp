// Reading one node of the data outline: its type code and the members that data paths and
// node queries look at. A node that is not the object it should be reads as having no
// such member, so a malformed outline never trips RapidJSON's own checks.
#pragma once

#include <cstdint>
#include <string_view>

#include "mgjson_read/rapidjson_config.hpp"
#include "palvex/records.h"

namespace ns_sensor {

inline constexpr std::string_view kObjectTypeMember = "objectType";
inline constexpr std::string_view kChildrenMember = "children";
inline constexpr std::string_view kMatchNameMember = "matchName";
inline constexpr std::string_view kDisplayNameMember = "displayName";

// The type code of an "objectType" text. Static and dynamic are prefix tests (so
// "dataStaticExtra" is static), the group test takes the whole text; static is tested
// first, then dynamic, then group.
PX_NodeType NodeTypeOf(std::string_view objectType);
// The same for a node; a node without a string "objectType" is PX_NODE_OTHER.
PX_NodeType NodeTypeOf(const JsonValue &node);

// How messages name a node type: "Group data node", "Dynamic data node", "Static data
// node", and "invalid node" for any other code.
std::string_view NodeTypeName(std::uint32_t typeCode);

// A member of the node; null when the node is not an object or has no such member.
const JsonValue *MemberOf(const JsonValue &node, std::string_view name);

// The text of a string member; empty when the node is not an object or the member is
// absent or not a string.
std::string_view StringMember(const JsonValue &node, std::string_view name);

// The node's "children" array, or null when the node is not a group.
const JsonValue *ChildrenOf(const JsonValue &node);

}  // namespace ns_sensor
