// The frozen table layout: operations called through raw table entries at the indexes
// docs/plugin-abi.md gives, as a separately built module would reach them. Reordering a
// declaration in the public headers breaks this test.
#include <gtest/gtest.h>

#include "model_test_support.hpp"

namespace PX_PLUGIN {
namespace {

#if defined(__GNUC__)  // the Itanium layout of g++ and clang, on Linux and with mingw

// The entry of a table at an index from the table's address point.
template <class Function, class Interface>
Function Entry(Interface *object, std::size_t index) {
  void *const *table = *reinterpret_cast<void *const *const *>(object);
  return reinterpret_cast<Function>(table[index]);
}

template <class Interface>
using Query = std::uint32_t (*)(Interface *);
template <class Interface>
using Count = std::uint64_t (*)(Interface *);

TEST(AbiLayout, OperationsSitAtTheirDocumentedEntries) {
  testing::TestDocument document;
  IMgjsonRoot_v1 *root = document.root;
  ASSERT_EQ(root->SetTimecodeInfo(0, 25, 1, nullptr), 0u);

  // IMgjsonRoot_v1: group entries 0-11, own operations from 12; SetCreator is own slot 5.
  using SetText = std::uint32_t (*)(IMgjsonRoot_v1 *, const char *, std::uint32_t, PX_PluginError *);
  ASSERT_EQ(Entry<SetText>(root, 12 + 5)(root, "layout", 6, nullptr), 0u);
  EXPECT_EQ(dynamic_cast<IMgjsonRoot_I &>(*root).Creator(), "layout");

  PX_DynamicDataNode dynamic{};
  using CreateDynamic = std::uint32_t (*)(IMgjsonRoot_v1 *, std::uint32_t, const char *, std::uint32_t,
                                          const char *, std::uint32_t, PX_DynamicDataNode *, PX_PluginError *);
  ASSERT_EQ(Entry<CreateDynamic>(root, 12 + 9)(root, PX_DYNAMIC_NUMBER_ARRAY, "A", 1, "a", 1, &dynamic, nullptr), 0u);
  ASSERT_NE(dynamic.numberArray, nullptr);

  // IMgjsonGroup_v1 (the root's group view): ISharedObject entries 0-4, own from 5.
  IMgjsonGroup_v1 *group = root;
  using AddDynamic = std::uint32_t (*)(IMgjsonGroup_v1 *, IMgjsonDynamicData_v1 *, PX_PluginError *);
  ASSERT_EQ(Entry<AddDynamic>(group, 5 + 0)(group, dynamic.node, nullptr), 0u);
  EXPECT_EQ(Entry<Query<IMgjsonGroup_v1>>(group, 5 + 5)(group), 1u);  // GetChildCount

  // IMgjsonDynamicData_v1: own entries 0-6, destructor 7 and 8; kinds continue at 9.
  EXPECT_EQ(Entry<Query<IMgjsonDynamicData_v1>>(dynamic.node, 0)(dynamic.node), PX_DYNAMIC_NUMBER_ARRAY);
  IMgjsonDynamicDataNumArr_v1 *array = dynamic.numberArray;
  using AddComponent = std::uint32_t (*)(IMgjsonDynamicDataNumArr_v1 *, const char *, std::uint32_t, PX_PluginError *);
  ASSERT_EQ(Entry<AddComponent>(array, 9 + 1)(array, "X", 1, nullptr), 0u);
  EXPECT_EQ(Entry<Query<IMgjsonDynamicDataNumArr_v1>>(array, 9 + 5)(array), 1u);  // GetComponentCount
  const double value = 4;
  using AddAtFrame = std::uint32_t (*)(IMgjsonDynamicDataNumArr_v1 *, std::uint64_t, const double *, std::uint32_t,
                                       PX_PluginError *);
  ASSERT_EQ(Entry<AddAtFrame>(array, 9 + 6)(array, 0, &value, 1, nullptr), 0u);
  EXPECT_EQ(Entry<Count<IMgjsonDynamicDataNumArr_v1>>(array, 9 + 8)(array), 1u);  // GetSampleCount

  // IMgjsonStaticData_v1: own entries 0-1, destructor 2 and 3; kinds continue at 4.
  const PX_StaticValue none{0, nullptr, 0, 0};
  PX_StaticDataNode node{};
  ASSERT_EQ(root->CreateStaticData(PX_STATIC_NUMBER_ARRAY, "S", 1, "s", 1, &none, &node, nullptr), 0u);
  EXPECT_EQ(Entry<Query<IMgjsonStaticData_v1>>(node.node, 0)(node.node), PX_STATIC_NUMBER_ARRAY);
  ASSERT_EQ(node.numberArray->AddElement(1, "E", 1, nullptr), 0u);
  EXPECT_EQ(Entry<Query<IMgjsonStaticDataNumArr_v1>>(node.numberArray, 4 + 5)(node.numberArray), 1u);

  // ISharedObject: Acquire 0, Release 1, GetInternalObject 2, destructor 3 and 4.
  using Internal = ISharedObject_I *(*)(ISharedObject *);
  EXPECT_EQ(Entry<Internal>(node.shared, 2)(node.shared), node.shared->GetInternalObject());
  using Release = void (*)(ISharedObject *);
  Entry<Release>(node.shared, 1)(node.shared);
  Entry<Release>(dynamic.shared, 1)(dynamic.shared);
}

#endif

}  // namespace
}  // namespace PX_PLUGIN
