// Building a tree through the `_v1` operations: factories, children and their checks.
#include <gtest/gtest.h>

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

TEST(ObjectTree, RootWithoutOutputPathIsRefused) {
  EXPECT_EQ(RunWithStatus(nullptr, [] { MgjsonRootImpl::Create({}); }), PX_PLUGIN_NO_OUTPUT_PATH);
}

TEST(ObjectTree, RootIsAGroupNamedRoot) {
  TestDocument document;
  const auto &root = dynamic_cast<IMgjsonRoot_I &>(*document.root);
  EXPECT_EQ(root.Names().matchName, "root");
  EXPECT_EQ(root.Names().displayName, "root");
  EXPECT_EQ(root.OutputPath(), "out.mgjson");
  EXPECT_EQ(document.root->GetInternalGroup(), static_cast<IMgjsonGroup_I *>(document.owner.get()));
  EXPECT_EQ(StatusOf([&](PX_PluginError *e) { return document.root->SetNames("x", 1, "x", 1, e); }),
            PX_PLUGIN_INVALID_ARGUMENT);
}

TEST(ObjectTree, FactoriesHandOutOneReferenceAndTheRightViews) {
  TestDocument document;
  const PX_StaticValue text{0, "hello", 5, 0};
  PX_StaticDataNode node{};
  ASSERT_EQ(document.root->CreateStaticData(PX_STATIC_STRING, "S", 1, "s", 1, &text, &node, nullptr), 0u);
  EXPECT_NE(node.string, nullptr);
  EXPECT_EQ(node.number, nullptr);
  EXPECT_EQ(node.numberArray, nullptr);
  EXPECT_EQ(node.boolean, nullptr);
  EXPECT_EQ(node.node->GetKind(), PX_STATIC_STRING);
  auto &shared = dynamic_cast<SharedObjectImpl &>(*node.shared);
  EXPECT_EQ(shared.ReferenceCount(), 2u);  // the registry's and the converter's
  EXPECT_EQ(shared.PendingAcquireCount(), 1u);
  node.shared->Release();

  PX_DynamicDataNode dynamic{};
  ASSERT_EQ(document.root->CreateDynamicData(PX_DYNAMIC_NUMBER_ARRAY, "D", 1, "d", 1, &dynamic, nullptr), 0u);
  EXPECT_NE(dynamic.numberArray, nullptr);
  EXPECT_EQ(dynamic.number, nullptr);
  EXPECT_EQ(dynamic.node->GetKind(), PX_DYNAMIC_NUMBER_ARRAY);
  dynamic.shared->Release();
}

TEST(ObjectTree, FactoryRefusalsLeaveNoViews) {
  TestDocument document;
  const PX_StaticValue value{1, nullptr, 0, 0};
  PX_StaticDataNode node{};
  node.shared = reinterpret_cast<ISharedObject *>(&document);  // must be cleared
  EXPECT_EQ(StatusOf([&](PX_PluginError *e) {
              return document.root->CreateStaticData(9, "N", 1, "n", 1, &value, &node, e);
            }),
            PX_PLUGIN_UNKNOWN_KIND);
  EXPECT_EQ(node.shared, nullptr);
  EXPECT_EQ(StatusOf([&](PX_PluginError *e) {
              return document.root->CreateStaticData(PX_STATIC_NUMBER, "N", 1, "1n", 2, &value, &node, e);
            }),
            PX_PLUGIN_INVALID_MATCH_NAME);
  EXPECT_EQ(StatusOf([&](PX_PluginError *e) {
              return document.root->CreateStaticData(PX_STATIC_BOOLEAN, "N", 1, "n", 1, nullptr, &node, e);
            }),
            PX_PLUGIN_INVALID_ARGUMENT);
  const PX_StaticValue notANumber{std::nan(""), nullptr, 0, 0};
  EXPECT_EQ(StatusOf([&](PX_PluginError *e) {
              return document.root->CreateStaticData(PX_STATIC_NUMBER, "N", 1, "n", 1, &notANumber, &node, e);
            }),
            PX_PLUGIN_INVALID_ARGUMENT);
  PX_DynamicDataNode dynamic{};
  EXPECT_EQ(StatusOf([&](PX_PluginError *e) {
              return document.root->CreateDynamicData(3, "D", 1, "d", 1, &dynamic, e);
            }),
            PX_PLUGIN_UNKNOWN_KIND);
  EXPECT_EQ(StatusOf([&](PX_PluginError *e) { return document.root->CreateGroup("G", 1, "g", 1, nullptr, e); }),
            PX_PLUGIN_INVALID_ARGUMENT);
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

TEST(ObjectTree, ChildChecks) {
  TestDocument document;
  IMgjsonGroup_v1 *group = NewGroup(document.root, "g");
  ForeignStatic foreignNumber(PX_STATIC_NUMBER), unknownStatic(7);
  ForeignDynamic foreignString(PX_DYNAMIC_STRING), unknownDynamic(3);
  const auto status = [](auto operation) { return StatusOf(operation); };
  EXPECT_EQ(status([&](PX_PluginError *e) { return group->AddStaticChild(nullptr, e); }), PX_PLUGIN_CHILD_MISSING);
  EXPECT_EQ(status([&](PX_PluginError *e) { return group->AddDynamicChild(nullptr, e); }), PX_PLUGIN_CHILD_MISSING);
  EXPECT_EQ(status([&](PX_PluginError *e) { return group->AddGroupChild(nullptr, e); }), PX_PLUGIN_CHILD_MISSING);
  EXPECT_EQ(status([&](PX_PluginError *e) { return group->AddStaticChild(&unknownStatic, e); }), PX_PLUGIN_UNKNOWN_KIND);
  EXPECT_EQ(status([&](PX_PluginError *e) { return group->AddDynamicChild(&unknownDynamic, e); }), PX_PLUGIN_UNKNOWN_KIND);
  EXPECT_EQ(status([&](PX_PluginError *e) { return group->AddStaticChild(&foreignNumber, e); }), PX_PLUGIN_KIND_MISMATCH);
  EXPECT_EQ(status([&](PX_PluginError *e) { return group->AddDynamicChild(&foreignString, e); }), PX_PLUGIN_KIND_MISMATCH);
  EXPECT_EQ(group->GetChildCount(), 0u);
  group->Release();
}

TEST(ObjectTree, TreeRules) {
  TestDocument document;
  TestDocument other;
  IMgjsonGroup_v1 *outer = NewGroup(document.root, "outer");
  IMgjsonGroup_v1 *inner = NewGroup(document.root, "inner");
  IMgjsonGroup_v1 *stranger = NewGroup(other.root, "stranger");
  const PX_StaticDataNode leaf = NewNumber(document.root, "leaf", 1);
  const auto status = [](auto operation) { return StatusOf(operation); };

  EXPECT_EQ(outer->AddGroupChild(inner, nullptr), 0u);
  EXPECT_EQ(status([&](PX_PluginError *e) { return inner->AddGroupChild(outer, e); }), PX_PLUGIN_INVALID_ARGUMENT);
  EXPECT_EQ(status([&](PX_PluginError *e) { return inner->AddGroupChild(inner, e); }), PX_PLUGIN_INVALID_ARGUMENT);
  EXPECT_EQ(status([&](PX_PluginError *e) { return inner->AddGroupChild(document.root, e); }),
            PX_PLUGIN_INVALID_ARGUMENT);
  EXPECT_EQ(status([&](PX_PluginError *e) { return outer->AddGroupChild(stranger, e); }), PX_PLUGIN_INVALID_ARGUMENT);
  EXPECT_EQ(inner->AddStaticChild(leaf.node, nullptr), 0u);
  EXPECT_EQ(status([&](PX_PluginError *e) { return outer->AddStaticChild(leaf.node, e); }), PX_PLUGIN_WRONG_STATE);
  EXPECT_EQ(status([&](PX_PluginError *e) { return document.root->AddGroupChild(inner, e); }),
            PX_PLUGIN_WRONG_STATE);

  leaf.shared->Release();
  stranger->Release();
  inner->Release();
  outer->Release();
}

TEST(ObjectTree, GroupsNestFortyDeep) {
  TestDocument document;
  IMgjsonGroup_v1 *top = NewGroup(document.root, "level1");
  ASSERT_EQ(document.root->AddGroupChild(top, nullptr), 0u);
  IMgjsonGroup_v1 *deepest = top;
  for (int level = 2; level <= 40; ++level) {
    const std::string name = "level" + std::to_string(level);
    IMgjsonGroup_v1 *group = NewGroup(document.root, name.c_str());
    ASSERT_EQ(deepest->AddGroupChild(group, nullptr), 0u) << level;
    deepest->Release();
    deepest = group;
  }
  IMgjsonGroup_v1 *tooDeep = NewGroup(document.root, "level41");
  EXPECT_EQ(StatusOf([&](PX_PluginError *e) { return deepest->AddGroupChild(tooDeep, e); }),
            PX_PLUGIN_INVALID_ARGUMENT);
  tooDeep->Release();
  deepest->Release();

  // A chain built apart counts as if its top were added to the root.
  IMgjsonGroup_v1 *a = NewGroup(document.root, "a");
  IMgjsonGroup_v1 *b = NewGroup(document.root, "b");
  ASSERT_EQ(a->AddGroupChild(b, nullptr), 0u);  // b at level 2 at least
  IMgjsonGroup_v1 *chain = b;
  for (int level = 3; level <= 40; ++level) {
    const std::string name = "c" + std::to_string(level);
    IMgjsonGroup_v1 *group = NewGroup(document.root, name.c_str());
    ASSERT_EQ(chain->AddGroupChild(group, nullptr), 0u) << level;
    if (chain != b) chain->Release();
    chain = group;
  }
  IMgjsonGroup_v1 *extra = NewGroup(document.root, "extra");
  EXPECT_EQ(StatusOf([&](PX_PluginError *e) { return chain->AddGroupChild(extra, e); }), PX_PLUGIN_INVALID_ARGUMENT);
  extra->Release();
  chain->Release();
  b->Release();
  a->Release();
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
