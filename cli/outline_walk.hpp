// Walks the data outline of an opened file through the public queries, depth first, and
// hands each node with what the library says of it to a visitor.
#pragma once

#include <cstddef>
#include <string>

#include "palvex/host.hpp"

namespace palvex::cli {

struct OutlineNode {
  std::string path;         // the data path that selects the node, e.g. "[2][0]"
  std::size_t depth = 0;    // 0 for the outline's top level
  uint32_t type = PX_NODE_OTHER;  // PX_NodeType
  std::string displayName;
  std::string matchName;
  const PX_StaticDataInfo *staticInfo = nullptr;    // static nodes
  const PX_DynamicDataInfo *dynamicInfo = nullptr;  // dynamic nodes
};

class OutlineVisitor {
 public:
  virtual ~OutlineVisitor() = default;
  virtual void Node(const OutlineNode &node) = 0;
  // Around the children of a group (also of an empty one).
  virtual void EnterChildren(const OutlineNode &) {}
  virtual void LeaveChildren(const OutlineNode &) {}
};

// False when a query reported an error; the report is in errors and the walk stopped.
bool WalkOutline(ISensorFileHandler *file, palvex::host::ErrorLog &errors, OutlineVisitor &visitor);

}  // namespace palvex::cli
