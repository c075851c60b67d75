// Data paths: the host names a node of the data outline with a text such as
// [2]["speed"], which is read into a list of path items and walked down the outline,
// each item choosing a child by its position or by its "matchName".
//
// The outline handed to these operations is the top-level "dataOutline" array of a parsed
// document; the returned nodes and names point into it and live as long as it does.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "mgjson_read/rapidjson_config.hpp"
#include "palvex/records.h"

namespace ns_sensor {

inline constexpr std::string_view kRootMatchName = "dataOutline";
inline constexpr std::int32_t kNoIndex = -1;

struct PX_PathItem {
  std::string name;              // match name that selects the child; empty: by position
  std::int32_t index = kNoIndex; // position among the siblings; -1: by match name
};

// The first item is the root item ("dataOutline", -1); each further item selects one
// child of the node selected by the item before it.
using PX_DataPath = std::vector<PX_PathItem>;

// Reads a path text: one item per bracketed part, a double-quoted part as a match name,
// anything else as a decimal position; text between a "]" and the next "[" is skipped.
// Raises EmptyDataPathString (1), MissingOpeningBracket (33), MissingClosingBracket (45).
// A position that is not a number, or not a 32-bit one, throws std::invalid_argument or
// std::out_of_range as the standard conversion does (the boundary reports code 23).
PX_DataPath ParseDataPath(std::string_view text);

// The node that the path names; the outline itself for the root item alone. Items chosen
// by match name receive the position found. Raises (33) MissingRootInfo,
// MissingBothIndexAndMatchName, MatchNameNotFound, InvalidIndex, MatchNameNotMatching,
// IntermediateNodeNotGroupNode.
const JsonValue &ResolveDataPath(const JsonValue &dataOutline, PX_DataPath &path);

// The children array of the group the path names (the outline itself for the root item
// alone). Raises as ResolveDataPath, and LastNodeNotGroupNode (33) for any other node.
const JsonValue &GroupChildrenAt(const JsonValue &dataOutline, PX_DataPath &path);

// A node chosen by the position of the path's last item, with what a group child info
// reports about it.
struct PX_OutlineChild {
  const JsonValue *node = nullptr;
  PX_NodeType type = PX_NODE_OTHER;
  std::string_view displayName;
  std::string_view matchName;
};

// Resolves the path without its last item and takes that node's child at the last item's
// position; a last item given by match name alone (position -1) is out of range. Raises as
// ResolveDataPath, and InvalidIndex (33) when the position is not below the child count
// (a node that is not a group has none).
PX_OutlineChild ChildAtPosition(const JsonValue &dataOutline, PX_DataPath &path);

// ChildAtPosition for the static or dynamic info queries: raises InvalidNodeType (33) when
// the node is not of the expected type (PX_NODE_STATIC or PX_NODE_DYNAMIC).
PX_OutlineChild DataNodeAt(const JsonValue &dataOutline, PX_DataPath &path,
                           PX_NodeType expected);

}  // namespace ns_sensor
