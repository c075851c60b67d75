// The library's data groups: an ordered list of children, kept as a tree (each node has
// at most one parent, no group inside itself, limited nesting).
#pragma once

#include <memory>
#include <vector>

#include "plugin_model/document_state.hpp"
#include "plugin_model/group_interfaces.hpp"

namespace PX_PLUGIN {

// Groups nest at most this deep below the root. The reader refuses JSON nested deeper than
// 100; each group adds two levels, and a node's properties up to nine more.
inline constexpr std::size_t kMaxGroupNesting = 40;

class MgjsonGroupImpl : public virtual IMgjsonGroup_I, public virtual SharedObjectImpl {
 public:
  MgjsonGroupImpl(std::shared_ptr<DocumentState> document, NodeNames names);

  void AddDynamicChildOrThrow(IMgjsonDynamicData_v1 *child) override;
  void AddStaticChildOrThrow(IMgjsonStaticData_v1 *child) override;
  void AddGroupChildOrThrow(IMgjsonGroup_v1 *child) override;
  void SetNamesOrThrow(NodeNames names) override { names_ = StoredNames(names); }
  IMgjsonGroup_v1 *FindChildGroupOrThrow(std::string_view matchName) override;
  NameView Names() const override { return names_.View(); }
  const std::vector<GroupChild> &Children() const override { return children_; }

  MgjsonGroupImpl *Parent() const { return parent_; }
  // Whether this is the root or a group in the root's tree.
  bool IsInRootTree() const;

 protected:
  ~MgjsonGroupImpl() override;
  virtual bool IsRoot() const { return false; }
  const std::shared_ptr<DocumentState> &Document() const { return document_; }

 private:
  // The library's shared owner of a child of this document (2001 when unknown, 2029 for
  // another document's), after the checks every addition makes.
  ObjectOwner OwnerOfNewChild(const SharedObjectImpl *child, bool hasParent) const;
  // Adds a static child known to report the kind of Concrete.
  template <class Concrete>
  void AddStaticOfKind(IMgjsonStaticData_v1 *child);
  // Levels below the root this group has, counting a group outside the root's tree as if
  // its top were added to the root.
  std::size_t Level() const;
  // Levels of groups from this one down to its deepest descendant group, this one counted.
  std::size_t Height() const;

  std::shared_ptr<DocumentState> document_;
  StoredNames names_;
  std::vector<GroupChild> children_;
  MgjsonGroupImpl *parent_ = nullptr;
};

}  // namespace PX_PLUGIN
