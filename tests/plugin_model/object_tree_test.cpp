// Building a tree through the `_v1` operations: factories, children and their checks.
#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "model_test_support.hpp"
#include "plugin_model/static_nodes.hpp"

namespace PX_PLUGIN {
namespace {

using testing::StatusOf;
using testing::TestDocument;

// A converter's own object posing as a library node.
class ForeignStatic final : public IMgjsonStaticData_v1 {
 public:
  explicit ForeignStatic(std::uint32_t kind) : kind_(kind) {}
  ~ForeignStatic() override = default;
  std::uint32_t GetKind() override { return kind_; }
  std::uint32_t SetNames(const char *, std::uint32_t, const char *, std::uint32_t, PX_PluginError *) override {
    return 0;
  }

 private:
  std::uint32_t kind_;
};

class ForeignDynamic final : public IMgjsonDynamicData_v1 {
 public:
  explicit ForeignDynamic(std::uint32_t kind) : kind_(kind) {}
  ~ForeignDynamic() override = default;
  std::uint32_t GetKind() override { return kind_; }
  std::uint32_t SetNames(const char *, std::uint32_t, const char *, std::uint32_t, PX_PluginError *) override {
    return 0;
  }
  std::uint32_t SetSampleSetId(const char *, std::uint32_t, PX_PluginError *) override { return 0; }
  std::uint32_t SetInterpolation(std::uint32_t, PX_PluginError *) override { return 0; }
  std::uint32_t SetHasExpectedFrequency(std::uint32_t, PX_PluginError *) override { return 0; }
  std::uint32_t SetExpectedMaxInterSampleDuration(const char *, std::uint32_t, PX_PluginError *) override {
    return 0;
  }
  std::uint32_t CompleteSamples(PX_PluginError *) override { return 0; }

 private:
  std::uint32_t kind_;
};

IMgjsonGroup_v1 *NewGroup(IMgjsonRoot_v1 *root, const char *matchName) {
  IMgjsonGroup_v1 *group = nullptr;
  EXPECT_EQ(root->CreateGroup("G", 1, matchName, static_cast<std::uint32_t>(std::strlen(matchName)), &group, nullptr), 0u);
  return group;
}

PX_StaticDataNode NewNumber(IMgjsonRoot_v1 *root, const char *matchName, double value) {
  const PX_StaticValue initial{value, nullptr, 0, 0};
  PX_StaticDataNode node{};
  EXPECT_EQ(root->CreateStaticData(PX_STATIC_NUMBER, "N", 1, matchName,
                                   static_cast<std::uint32_t>(std::strlen(matchName)), &initial, &node, nullptr),
            0u);
  return node;
}

using Operation = std::function<std::uint32_t(PX_PluginError *)>;

// Runs each refused operation; each must fail with its status, in the record as well.
void ExpectRefusals(const std::vector<std::pair<Operation, std::uint32_t>> &refusals) {
  for (std::size_t i = 0; i < refusals.size(); ++i) {
    EXPECT_EQ(StatusOf(refusals[i].first), refusals[i].second) << "refusal " << i;
  }
}

TEST(ObjectTree, RootWithoutOutputPathIsRefused) {
  EXPECT_EQ(RunWithStatus(nullptr, [] { MgjsonRootImpl::Create({}); }), PX_PLUGIN_NO_OUTPUT_PATH);
}

TEST(ObjectTree, FactoriesHandOutOneReferenceAndTheRightViews) {
  TestDocument document;
  const PX_StaticValue text{0, "hello", 5, 0};
  PX_StaticDataNode node{};
  ASSERT_EQ(document.root->CreateStaticData(PX_STATIC_STRING, "S", 1, "s", 1, &text, &node, nullptr), 0u);
  EXPECT_TRUE(node.string != nullptr && node.number == nullptr && node.numberArray == nullptr &&
              node.boolean == nullptr);
  auto &shared = dynamic_cast<SharedObjectImpl &>(*node.shared);
  EXPECT_EQ(shared.ReferenceCount(), 2u);  // the registry's and the converter's
  EXPECT_EQ(shared.PendingAcquireCount(), 1u);
  node.shared->Release();

  PX_DynamicDataNode dynamic{};
  ASSERT_EQ(document.root->CreateDynamicData(PX_DYNAMIC_NUMBER_ARRAY, "D", 1, "d", 1, &dynamic, nullptr), 0u);
  EXPECT_TRUE(dynamic.numberArray != nullptr && dynamic.number == nullptr);
  dynamic.shared->Release();
}

TEST(ObjectTree, FactoryRefusalsLeaveNoViews) {
  TestDocument document;
  IMgjsonRoot_v1 *root = document.root;
  const PX_StaticValue value{1, nullptr, 0, 0};
  const PX_StaticValue notANumber{std::nan(""), nullptr, 0, 0};
  PX_StaticDataNode node{};
  node.shared = reinterpret_cast<ISharedObject *>(&document);  // must be cleared
  PX_DynamicDataNode dynamic{};
  ExpectRefusals({
      {[&](PX_PluginError *e) { return root->CreateStaticData(9, "N", 1, "n", 1, &value, &node, e); },
       PX_PLUGIN_UNKNOWN_KIND},
      {[&](PX_PluginError *e) { return root->CreateStaticData(PX_STATIC_NUMBER, "N", 1, "1n", 2, &value, &node, e); },
       PX_PLUGIN_INVALID_MATCH_NAME},
      {[&](PX_PluginError *e) { return root->CreateStaticData(PX_STATIC_BOOLEAN, "N", 1, "n", 1, nullptr, &node, e); },
       PX_PLUGIN_INVALID_ARGUMENT},
      {[&](PX_PluginError *e) {
         return root->CreateStaticData(PX_STATIC_NUMBER, "N", 1, "n", 1, &notANumber, &node, e);
       },
       PX_PLUGIN_INVALID_ARGUMENT},
      {[&](PX_PluginError *e) { return root->CreateDynamicData(3, "D", 1, "d", 1, &dynamic, e); },
       PX_PLUGIN_UNKNOWN_KIND},
      {[&](PX_PluginError *e) { return root->CreateGroup("G", 1, "g", 1, nullptr, e); }, PX_PLUGIN_INVALID_ARGUMENT},
      {[&](PX_PluginError *e) { return root->SetNames("x", 1, "x", 1, e); }, PX_PLUGIN_INVALID_ARGUMENT},
  });
  EXPECT_EQ(node.shared, nullptr);
}

TEST(ObjectTree, ChildrenKeepTheOrderOfAdding) {
  TestDocument document;
  IMgjsonGroup_v1 *group = NewGroup(document.root, "g");
  const PX_StaticDataNode first = NewNumber(document.root, "first", 1);
  PX_DynamicDataNode second{};
  ASSERT_EQ(document.root->CreateDynamicData(PX_DYNAMIC_STRING, "D", 1, "second", 6, &second, nullptr), 0u);
  const PX_StaticDataNode third = NewNumber(document.root, "third", 3);
  EXPECT_EQ(group->AddStaticChild(first.node, nullptr), 0u);
  EXPECT_EQ(group->AddDynamicChild(second.node, nullptr), 0u);
  EXPECT_EQ(group->AddStaticChild(third.node, nullptr), 0u);
  EXPECT_EQ(document.root->AddGroupChild(group, nullptr), 0u);
  EXPECT_EQ(group->GetChildCount(), 3u);
  EXPECT_EQ(document.root->GetChildCount(), 1u);

  const auto &children = group->GetInternalGroup()->Children();
  ASSERT_EQ(children.size(), 3u);
  EXPECT_EQ(dynamic_cast<MgjsonStaticDataImpl &>(*children[0].StaticNode()).NamesOf().matchName, "first");
  EXPECT_EQ(children[1].DynamicNode()->Names().matchName, "second");
  EXPECT_EQ(dynamic_cast<MgjsonStaticDataImpl &>(*children[2].StaticNode()).NamesOf().matchName, "third");

  // The tree holds its children after the converter let go of them.
  first.shared->Release();
  second.shared->Release();
  third.shared->Release();
  group->Release();
  EXPECT_EQ(document.root->GetInternalGroup()->Children()[0].Group()->Children().size(), 3u);
}

TEST(ObjectTree, ChildChecksAndTreeRules) {
  TestDocument document;
  TestDocument other;
  IMgjsonGroup_v1 *outer = NewGroup(document.root, "outer");
  IMgjsonGroup_v1 *inner = NewGroup(document.root, "inner");
  IMgjsonGroup_v1 *stranger = NewGroup(other.root, "stranger");
  const PX_StaticDataNode leaf = NewNumber(document.root, "leaf", 1);
  ForeignStatic foreignNumber(PX_STATIC_NUMBER), unknownStatic(7);
  ForeignDynamic foreignString(PX_DYNAMIC_STRING), unknownDynamic(3);
  ASSERT_EQ(outer->AddGroupChild(inner, nullptr), 0u);
  ASSERT_EQ(inner->AddStaticChild(leaf.node, nullptr), 0u);
  ExpectRefusals({
      {[&](PX_PluginError *e) { return outer->AddStaticChild(nullptr, e); }, PX_PLUGIN_CHILD_MISSING},
      {[&](PX_PluginError *e) { return outer->AddDynamicChild(nullptr, e); }, PX_PLUGIN_CHILD_MISSING},
      {[&](PX_PluginError *e) { return outer->AddGroupChild(nullptr, e); }, PX_PLUGIN_CHILD_MISSING},
      {[&](PX_PluginError *e) { return outer->AddStaticChild(&unknownStatic, e); }, PX_PLUGIN_UNKNOWN_KIND},
      {[&](PX_PluginError *e) { return outer->AddDynamicChild(&unknownDynamic, e); }, PX_PLUGIN_UNKNOWN_KIND},
      {[&](PX_PluginError *e) { return outer->AddStaticChild(&foreignNumber, e); }, PX_PLUGIN_KIND_MISMATCH},
      {[&](PX_PluginError *e) { return outer->AddDynamicChild(&foreignString, e); }, PX_PLUGIN_KIND_MISMATCH},
      // No cycles, no root below a group, no object of another document.
      {[&](PX_PluginError *e) { return inner->AddGroupChild(outer, e); }, PX_PLUGIN_INVALID_ARGUMENT},
      {[&](PX_PluginError *e) { return inner->AddGroupChild(inner, e); }, PX_PLUGIN_INVALID_ARGUMENT},
      {[&](PX_PluginError *e) { return inner->AddGroupChild(document.root, e); }, PX_PLUGIN_INVALID_ARGUMENT},
      {[&](PX_PluginError *e) { return outer->AddGroupChild(stranger, e); }, PX_PLUGIN_INVALID_ARGUMENT},
      // A node or group has one parent.
      {[&](PX_PluginError *e) { return outer->AddStaticChild(leaf.node, e); }, PX_PLUGIN_WRONG_STATE},
      {[&](PX_PluginError *e) { return document.root->AddGroupChild(inner, e); }, PX_PLUGIN_WRONG_STATE},
  });
  EXPECT_EQ(outer->GetChildCount(), 1u);
  leaf.shared->Release();
  stranger->Release();
  inner->Release();
  outer->Release();
}

// Adds `count` groups below top, each inside the one before; returns the deepest (top
// stays the caller's, the deepest is the caller's to release).
IMgjsonGroup_v1 *Chain(IMgjsonRoot_v1 *root, IMgjsonGroup_v1 *top, int count, const std::string &prefix) {
  IMgjsonGroup_v1 *deepest = top;
  for (int level = 1; level <= count; ++level) {
    IMgjsonGroup_v1 *group = NewGroup(root, (prefix + std::to_string(level)).c_str());
    EXPECT_EQ(deepest->AddGroupChild(group, nullptr), 0u) << prefix << level;
    if (deepest != top) deepest->Release();
    deepest = group;
  }
  return deepest;
}

TEST(ObjectTree, GroupsNestFortyDeep) {
  TestDocument document;
  // Below the root: levels 1 to 40, and no 41st.
  IMgjsonGroup_v1 *top = NewGroup(document.root, "level");
  ASSERT_EQ(document.root->AddGroupChild(top, nullptr), 0u);
  // A chain built apart counts as if its top were added to the root.
  IMgjsonGroup_v1 *apart = NewGroup(document.root, "apart");
  for (IMgjsonGroup_v1 *start : {top, apart}) {
    IMgjsonGroup_v1 *deepest = Chain(document.root, start, 39, start == top ? "level" : "apart");
    IMgjsonGroup_v1 *tooDeep = NewGroup(document.root, "tooDeep");
    EXPECT_EQ(StatusOf([&](PX_PluginError *e) { return deepest->AddGroupChild(tooDeep, e); }),
              PX_PLUGIN_INVALID_ARGUMENT);
    tooDeep->Release();
    deepest->Release();
    start->Release();
  }
}

TEST(ObjectTree, FindChildGroupByMatchName) {
  TestDocument document;
  IMgjsonGroup_v1 *group = NewGroup(document.root, "speed");
  ASSERT_EQ(document.root->AddGroupChild(group, nullptr), 0u);
  IMgjsonGroup_v1 *found = nullptr;
  EXPECT_EQ(document.root->FindChildGroup("speed", 5, &found, nullptr), 0u);
  EXPECT_EQ(found, group);
  found->Release();
  EXPECT_EQ(StatusOf([&](PX_PluginError *e) { return document.root->FindChildGroup("height", 6, &found, e); }),
            PX_PLUGIN_GROUP_MISSING);
  EXPECT_EQ(found, nullptr);
  group->Release();
}

TEST(ObjectTree, EveryObjectIsGoneWhenTheDocumentIsLetGo) {
  const std::size_t before = ObjectRegistry::Instance().Size();
  {
    TestDocument document;
    IMgjsonGroup_v1 *group = NewGroup(document.root, "g");
    const PX_StaticDataNode kept = NewNumber(document.root, "kept", 1);
    const PX_StaticDataNode loose = NewNumber(document.root, "loose", 2);
    ASSERT_EQ(group->AddStaticChild(kept.node, nullptr), 0u);
    ASSERT_EQ(document.root->AddGroupChild(group, nullptr), 0u);
    EXPECT_EQ(ObjectRegistry::Instance().Size(), before + 4);
    kept.shared->Release();
    loose.shared->Release();
    group->Release();
  }
  EXPECT_EQ(ObjectRegistry::Instance().Size(), before);  // the sanitizer build checks for leaks
}

}  // namespace
}  // namespace PX_PLUGIN
