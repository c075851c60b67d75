#include "plugin_model/root_impl.hpp"

#include <functional>
#include <set>
#include <string_view>

#include "plugin_model/dynamic_nodes.hpp"
#include "plugin_model/sample_store.hpp"
#include "plugin_model/static_nodes.hpp"

namespace PX_PLUGIN {
namespace {

using ns_sensor::Msg;

constexpr const char *kRootName = "root";

const PX_StaticValue &ValueArgument(const PX_StaticValue *value) {
  if (value == nullptr) RaisePluginError(Msg::InvalidObjectModelArgument);
  return *value;
}

// Calls visit for every child in the tree, in outline order.
void ForEachInTree(const std::vector<GroupChild> &children, const std::function<void(const GroupChild &)> &visit) {
  for (const GroupChild &child : children) {
    visit(child);
    if (child.Group()) ForEachInTree(child.Group()->Children(), visit);
  }
}

template <class Node>
PX_StaticDataNode StaticViews(Node *node) {
  PX_StaticDataNode views{};
  views.node = node;
  views.shared = node;
  return views;
}

template <class Node>
PX_DynamicDataNode DynamicViews(Node *node) {
  PX_DynamicDataNode views{};
  views.node = node;
  views.shared = node;
  return views;
}

}  // namespace

std::shared_ptr<MgjsonRootImpl> MgjsonRootImpl::Create(RootSettings settings) {
  if (settings.outputPath.empty()) RaisePluginError(Msg::RootWithoutOutputPath);
  if (!settings.makeSink) settings.makeSink = [] { return MakeSampleStore(); };
  auto document = std::make_shared<DocumentState>(std::move(settings.makeSink));
  TypedOwner<MgjsonRootImpl> registered = MakeRegistered<MgjsonRootImpl>(
      document->tag, document, settings.context, std::move(settings.outputPath));
  // Whoever holds the root holds it as a standard shared owner, with the registry's owner
  // in its deleter: one such allocation per document costs nothing.
  std::shared_ptr<MgjsonRootImpl> root;
  try {
    root = std::shared_ptr<MgjsonRootImpl>(registered.object,
                                           [owner = std::move(registered.owner)](MgjsonRootImpl *) mutable { owner.reset(); });
  } catch (...) {
    ObjectRegistry::Instance().RemoveDocument(document->tag);
    throw;
  }
  if (settings.makeWriter) {
    try {
      root->writer_ = settings.makeWriter(*root);
    } catch (...) {
      root->Dispose();
      throw;
    }
    document->writer = root->writer_.get();
  }
  return root;
}

MgjsonRootImpl::MgjsonRootImpl(std::shared_ptr<DocumentState> document, void *context, std::string outputPath)
    : MgjsonGroupImpl(std::move(document), {kRootName, kRootName}),
      context_(context),
      outputPath_(std::move(outputPath)) {}

MgjsonRootImpl::~MgjsonRootImpl() { Document()->writer = nullptr; }

IMgjsonRoot_v1 *MgjsonRootImpl::HandOut() {
  InternalAcquire();
  return this;
}

void MgjsonRootImpl::Dispose() { ObjectRegistry::Instance().RemoveDocument(Document()->tag); }

void MgjsonRootImpl::SetNamesOrThrow(NodeNames) { RaisePluginError(Msg::InvalidObjectModelArgument); }

IMgjsonGroup_v1 *MgjsonRootImpl::CreateGroupOrThrow(NodeNames names) {
  const auto group = MakeRegistered<MgjsonGroupImpl>(Document()->tag, Document(), std::move(names));
  group->InternalAcquire();
  return group.get();
}

PX_StaticDataNode MgjsonRootImpl::CreateStaticDataOrThrow(std::uint32_t kind, NodeNames names,
                                                          const PX_StaticValue *value) {
  const std::uint64_t tag = Document()->tag;
  PX_StaticDataNode views{};
  switch (kind) {
    case PX_STATIC_NUMBER: {
      const double number = FiniteArgument(ValueArgument(value).number);
      const auto node = MakeRegistered<MgjsonStaticDataNumImpl>(tag, std::move(names), number);
      views = StaticViews(node.get());
      views.number = node.get();
      break;
    }
    case PX_STATIC_STRING: {
      const std::string_view text = TextArgument(ValueArgument(value).text, value->textLength);
      const auto node = MakeRegistered<MgjsonStaticDataStringImpl>(tag, std::move(names), EscapeFreeText(text),
                                                                   text.size());
      views = StaticViews(node.get());
      views.string = node.get();
      break;
    }
    case PX_STATIC_NUMBER_ARRAY: {
      const auto node = MakeRegistered<MgjsonStaticDataNumArrImpl>(tag, std::move(names));
      views = StaticViews(node.get());
      views.numberArray = node.get();
      break;
    }
    case PX_STATIC_BOOLEAN: {
      const bool flag = FlagArgument(ValueArgument(value).boolean);
      const auto node = MakeRegistered<MgjsonStaticDataBoolImpl>(tag, std::move(names), flag);
      views = StaticViews(node.get());
      views.boolean = node.get();
      break;
    }
    default:
      RaisePluginError(Msg::UnknownKind);
  }
  views.shared->GetInternalObject()->InternalAcquire();
  return views;
}

PX_DynamicDataNode MgjsonRootImpl::CreateDynamicDataOrThrow(std::uint32_t kind, NodeNames names) {
  const std::uint64_t tag = Document()->tag;
  PX_DynamicDataNode views{};
  switch (kind) {
    case PX_DYNAMIC_NUMBER: {
      const auto node = MakeRegistered<MgjsonDynamicDataNumImpl>(tag, Document(), std::move(names));
      views = DynamicViews(node.get());
      views.number = node.get();
      break;
    }
    case PX_DYNAMIC_STRING: {
      const auto node = MakeRegistered<MgjsonDynamicDataStringImpl>(tag, Document(), std::move(names));
      views = DynamicViews(node.get());
      views.string = node.get();
      break;
    }
    case PX_DYNAMIC_NUMBER_ARRAY: {
      const auto node = MakeRegistered<MgjsonDynamicDataNumArrImpl>(tag, Document(), std::move(names));
      views = DynamicViews(node.get());
      views.numberArray = node.get();
      break;
    }
    default:
      RaisePluginError(Msg::UnknownKind);
  }
  views.shared->GetInternalObject()->InternalAcquire();
  return views;
}

void MgjsonRootImpl::CheckUniqueNames() const {
  std::set<std::string_view> matchNames;
  std::set<std::string_view> sampleSetIds;
  ForEachInTree(Children(), [&](const GroupChild &child) {
    std::string_view matchName;
    if (child.Group()) matchName = child.Group()->Names().matchName;
    if (child.StaticNode()) matchName = dynamic_cast<const MgjsonStaticDataImpl &>(*child.StaticNode()).NamesOf().matchName;
    if (child.DynamicNode()) {
      matchName = child.DynamicNode()->Names().matchName;
      if (!sampleSetIds.insert(child.DynamicNode()->SampleSetId()).second) {
        RaisePluginError(Msg::DuplicateMatchNameAtCommit);
      }
    }
    if (!matchNames.insert(matchName).second) RaisePluginError(Msg::DuplicateMatchNameAtCommit);
  });
}

void MgjsonRootImpl::CompletePendingSampleSets() {
  ForEachInTree(Children(), [](const GroupChild &child) {
    if (child.DynamicNode() && !child.DynamicNode()->IsCompleted()) child.DynamicNode()->CompleteSamplesOrThrow();
  });
}

void MgjsonRootImpl::Fail() noexcept {
  Document()->phase = DocumentPhase::Failed;
  Reset();
}

bool MgjsonRootImpl::CommitOrThrow() {
  switch (Document()->phase) {
    case DocumentPhase::Committed:
      return false;
    case DocumentPhase::Failed:
      RaisePluginError(Msg::ObjectModelWrongState);
    case DocumentPhase::Open:
      break;
  }
  try {
    if (!writer_) RaisePluginError(Msg::ObjectModelWrongState);
    CheckUniqueNames();
    CompletePendingSampleSets();
  } catch (...) {
    if (writer_) writer_->DiscardOutput();
    Fail();
    throw;
  }
  try {
    writer_->Finish(*this);
  } catch (...) {
    Fail();
    throw;
  }
  Document()->phase = DocumentPhase::Committed;
  return true;
}

}  // namespace PX_PLUGIN
