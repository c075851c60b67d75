#include "outline_walk.hpp"

#include <vector>

namespace palvex::cli {
namespace {

class Walker {
 public:
  Walker(ISensorFileHandler *file, palvex::host::ErrorLog &errors, OutlineVisitor &visitor)
      : file_(file), errors_(errors), visitor_(visitor) {}

  bool Children(const PX_GroupChildren &children, std::size_t depth) {
    for (const auto &path : children.paths) {
      if (!Child(PathText(path), depth)) return false;
    }
    return true;
  }

 private:
  // A path as the text that selects it: every item after the root by its position.
  static std::string PathText(const std::vector<palvex::host::PathItem> &path) {
    std::string text;
    for (std::size_t at = 1; at < path.size(); ++at) {
      text += '[';
      text += std::to_string(path[at].index);
      text += ']';
    }
    return text;
  }

  bool Failed(std::size_t reportsBefore) const { return errors_.errors.size() != reportsBefore; }

  bool Child(const std::string &path, std::size_t depth) {
    const std::size_t reports = errors_.errors.size();
    PX_GroupChildInfo info;
    file_->GetGroupChildInfo(path.c_str(), &info, &errors_);
    if (Failed(reports)) return false;
    OutlineNode node{path, depth, info.nodeType, info.displayName, info.matchName};
    PX_StaticDataInfo staticInfo;
    PX_DynamicDataInfo dynamicInfo;
    if (info.nodeType == PX_NODE_STATIC) {
      file_->GetStaticDataInfo(path.c_str(), &staticInfo, &errors_);
      node.staticInfo = &staticInfo;
    } else if (info.nodeType == PX_NODE_DYNAMIC) {
      file_->GetDynamicDataInfo(path.c_str(), &dynamicInfo, &errors_);
      node.dynamicInfo = &dynamicInfo;
    }
    if (Failed(reports)) return false;
    visitor_.Node(node);
    if (info.nodeType != PX_NODE_GROUP) return true;
    PX_GroupChildren children;
    file_->GetGroupChildren(path.c_str(), &children, &errors_);
    if (Failed(reports)) return false;
    visitor_.EnterChildren(node);
    if (!Children(children, depth + 1)) return false;
    visitor_.LeaveChildren(node);
    return true;
  }

  ISensorFileHandler *file_;
  palvex::host::ErrorLog &errors_;
  OutlineVisitor &visitor_;
};

}  // namespace

bool WalkOutline(ISensorFileHandler *file, palvex::host::ErrorLog &errors, OutlineVisitor &visitor) {
  const std::size_t reports = errors.errors.size();
  PX_GroupChildren top;
  file->GetRootChildren(&top, &errors);
  if (errors.errors.size() != reports) return false;
  return Walker(file, errors, visitor).Children(top, 0);
}

}  // namespace palvex::cli
