#include "plugin_model/group_impl.hpp"

#include <algorithm>

#include "plugin_model/dynamic_nodes.hpp"
#include "plugin_model/static_nodes.hpp"

namespace PX_PLUGIN {
namespace {

using ns_sensor::Msg;

// The library's object of the kind a child reports (2026 for an unknown kind, 2016 when
// the object is not the library's object of that kind).
template <class Concrete, class Child>
Concrete *OfKind(Child *child) {
  auto *concrete = dynamic_cast<Concrete *>(child);
  if (concrete == nullptr) RaisePluginError(Msg::NodeKindMismatch);
  return concrete;
}

// The child as the node class of its kind, also as the shared object it is.
template <class Concrete, class Child>
Concrete *OfKind(Child *child, SharedObjectImpl *&shared) {
  Concrete *concrete = OfKind<Concrete>(child);
  shared = concrete;
  return concrete;
}

MgjsonDynamicDataImpl *DynamicNodeOf(IMgjsonDynamicData_v1 *child, SharedObjectImpl *&shared) {
  switch (child->GetKind()) {
    case PX_DYNAMIC_NUMBER: return OfKind<MgjsonDynamicDataNumImpl>(child, shared);
    case PX_DYNAMIC_STRING: return OfKind<MgjsonDynamicDataStringImpl>(child, shared);
    case PX_DYNAMIC_NUMBER_ARRAY: return OfKind<MgjsonDynamicDataNumArrImpl>(child, shared);
    default: RaisePluginError(Msg::UnknownKind);
  }
}

}  // namespace

MgjsonGroupImpl::MgjsonGroupImpl(std::shared_ptr<DocumentState> document, NodeNames names)
    : document_(std::move(document)), names_(names) {}

MgjsonGroupImpl::~MgjsonGroupImpl() {
  // Children may outlive the group (a converter may still hold them): forget the link.
  for (const GroupChild &child : children_) {
    if (auto *group = child.Group()) dynamic_cast<MgjsonGroupImpl &>(*group).parent_ = nullptr;
    if (auto *node = child.DynamicNode()) dynamic_cast<MgjsonDynamicDataImpl &>(*node).SetParent(nullptr);
    if (auto *node = child.StaticNode()) dynamic_cast<MgjsonStaticDataImpl &>(*node).SetParent(nullptr);
  }
}

ObjectOwner MgjsonGroupImpl::OwnerOfNewChild(const SharedObjectImpl *child,
                                                                   bool hasParent) const {
  RegisteredObject registered = ObjectRegistry::Instance().Find(child);
  if (!registered.owner) RaisePluginError(Msg::RequiredChildMissing);
  if (registered.document != document_->tag) RaisePluginError(Msg::InvalidObjectModelArgument);
  if (!document_->IsOpen() || hasParent) RaisePluginError(Msg::ObjectModelWrongState);
  return std::move(registered.owner);
}

void MgjsonGroupImpl::AddDynamicChildOrThrow(IMgjsonDynamicData_v1 *child) {
  if (child == nullptr) RaisePluginError(Msg::RequiredChildMissing);
  SharedObjectImpl *shared = nullptr;
  MgjsonDynamicDataImpl *node = DynamicNodeOf(child, shared);
  auto owner = OwnerOfNewChild(shared, node->Parent() != nullptr);
  children_.emplace_back(std::move(owner), static_cast<IMgjsonDynamicData_I *>(node));
  node->SetParent(this);
}

template <class Concrete>
void MgjsonGroupImpl::AddStaticOfKind(IMgjsonStaticData_v1 *child) {
  Concrete *node = OfKind<Concrete>(child);
  auto owner = OwnerOfNewChild(node, node->Parent() != nullptr);
  children_.emplace_back(std::move(owner), node);
  node->SetParent(this);
}

void MgjsonGroupImpl::AddStaticChildOrThrow(IMgjsonStaticData_v1 *child) {
  if (child == nullptr) RaisePluginError(Msg::RequiredChildMissing);
  switch (child->GetKind()) {
    case PX_STATIC_NUMBER: return AddStaticOfKind<MgjsonStaticDataNumImpl>(child);
    case PX_STATIC_STRING: return AddStaticOfKind<MgjsonStaticDataStringImpl>(child);
    case PX_STATIC_NUMBER_ARRAY: return AddStaticOfKind<MgjsonStaticDataNumArrImpl>(child);
    case PX_STATIC_BOOLEAN: return AddStaticOfKind<MgjsonStaticDataBoolImpl>(child);
    default: RaisePluginError(Msg::UnknownKind);
  }
}

void MgjsonGroupImpl::AddGroupChildOrThrow(IMgjsonGroup_v1 *child) {
  if (child == nullptr) RaisePluginError(Msg::RequiredChildMissing);
  auto *group = OfKind<MgjsonGroupImpl>(child);
  bool cycle = group->IsRoot();
  for (const MgjsonGroupImpl *above = this; above != nullptr && !cycle; above = above->parent_) {
    cycle = above == group;
  }
  if (cycle) RaisePluginError(Msg::InvalidObjectModelArgument);
  auto owner = OwnerOfNewChild(group, group->parent_ != nullptr);
  if (Level() + group->Height() > kMaxGroupNesting) RaisePluginError(Msg::InvalidObjectModelArgument);
  children_.emplace_back(std::move(owner), static_cast<IMgjsonGroup_I *>(group));
  group->parent_ = this;
  // A group is mostly added once it is filled: its list need not keep room to grow.
  group->children_.shrink_to_fit();
}

IMgjsonGroup_v1 *MgjsonGroupImpl::FindChildGroupOrThrow(std::string_view matchName) {
  for (const GroupChild &child : children_) {
    IMgjsonGroup_I *group = child.Group();
    if (group != nullptr && group->Names().matchName == matchName) {
      group->InternalAcquire();
      return group;
    }
  }
  RaisePluginError(Msg::RequiredGroupMissing);
}

bool MgjsonGroupImpl::IsInRootTree() const {
  const MgjsonGroupImpl *top = this;
  while (top->parent_ != nullptr) top = top->parent_;
  return top->IsRoot();
}

std::size_t MgjsonGroupImpl::Level() const {
  std::size_t level = 0;
  const MgjsonGroupImpl *top = this;
  for (; top->parent_ != nullptr; top = top->parent_) ++level;
  return top->IsRoot() ? level : level + 1;
}

std::size_t MgjsonGroupImpl::Height() const {
  std::size_t below = 0;
  for (const GroupChild &child : children_) {
    if (const auto *group = child.Group()) below = std::max(below, dynamic_cast<const MgjsonGroupImpl &>(*group).Height());
  }
  return below + 1;
}

}  // namespace PX_PLUGIN
