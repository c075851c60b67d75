// Completing sample sets and committing the root, with a writer that records its calls.
#include <gtest/gtest.h>

#include "model_test_support.hpp"

namespace PX_PLUGIN {
namespace {

using testing::StatusOf;
using testing::TestDocument;

PX_DynamicDataNode NewDynamicNumber(TestDocument &document, const char *matchName) {
  PX_DynamicDataNode node{};
  EXPECT_EQ(document.root->CreateDynamicData(PX_DYNAMIC_NUMBER, "D", 1, matchName,
                                             static_cast<std::uint32_t>(std::strlen(matchName)), &node, nullptr),
            0u);
  return node;
}

std::uint32_t Commit(TestDocument &document, std::uint32_t &committed) {
  return StatusOf([&](PX_PluginError *e) { return document.root->Commit(&committed, e); });
}

TEST(Commit, SecondCommitReturnsFalseAndWritesNothing) {
  TestDocument document;
  std::uint32_t committed = 7;
  EXPECT_EQ(Commit(document, committed), 0u);
  EXPECT_EQ(committed, 1u);
  EXPECT_EQ(Commit(document, committed), 0u);
  EXPECT_EQ(committed, 0u);
  EXPECT_EQ(document.log.finishes, 1);
  EXPECT_TRUE(dynamic_cast<IMgjsonRoot_I &>(*document.root).IsCommitted());
}

TEST(Commit, FailedFinishLeavesTheRootUncommittedForGood) {
  TestDocument document;
  document.log.finishFault = [] { throw ns_sensor::PX_Exception(34, "Disk Full"); };
  std::uint32_t committed = 7;
  EXPECT_EQ(Commit(document, committed), 1034u);
  EXPECT_EQ(committed, 0u);
  const auto &root = dynamic_cast<IMgjsonRoot_I &>(*document.root);
  EXPECT_FALSE(root.IsCommitted());
  EXPECT_FALSE(root.IsWritten());
  document.log.finishFault = nullptr;
  EXPECT_EQ(Commit(document, committed), PX_PLUGIN_WRONG_STATE);  // the output is gone; no retry
}

TEST(Commit, WithoutAWriterItIsRefused) {
  TestDocument document(false);
  std::uint32_t committed = 7;
  EXPECT_EQ(Commit(document, committed), PX_PLUGIN_WRONG_STATE);
}

TEST(Commit, DuplicateMatchNamesOrSampleSetIdsEmptyTheOutput) {
  for (const bool sameId : {false, true}) {
    TestDocument document;
    IMgjsonGroup_v1 *group = nullptr;
    ASSERT_EQ(document.root->CreateGroup("G", 1, "twin", 4, &group, nullptr), 0u);
    const PX_DynamicDataNode node = NewDynamicNumber(document, sameId ? "a" : "twin");
    const PX_DynamicDataNode other = NewDynamicNumber(document, "b");
    if (sameId) {
      ASSERT_EQ(node.node->SetSampleSetId("set", 3, nullptr), 0u);
      ASSERT_EQ(other.node->SetSampleSetId("set", 3, nullptr), 0u);
    }
    ASSERT_EQ(group->AddDynamicChild(node.node, nullptr), 0u);
    ASSERT_EQ(document.root->AddGroupChild(group, nullptr), 0u);
    ASSERT_EQ(document.root->AddDynamicChild(other.node, nullptr), 0u);
    std::uint32_t committed = 7;
    EXPECT_EQ(Commit(document, committed), PX_PLUGIN_DUPLICATE_MATCH_NAME) << sameId;
    EXPECT_EQ(document.log.discards, 1);
    EXPECT_EQ(document.log.finishes, 0);
    node.shared->Release();
    other.shared->Release();
    group->Release();
  }
}

TEST(Commit, CompletesPendingSampleSetsInOutlineOrder) {
  TestDocument document;
  ASSERT_EQ(document.root->SetTimecodeInfo(0, 25, 1, nullptr), 0u);
  IMgjsonGroup_v1 *group = nullptr;
  ASSERT_EQ(document.root->CreateGroup("G", 1, "g", 1, &group, nullptr), 0u);
  const PX_DynamicDataNode first = NewDynamicNumber(document, "first");
  const PX_DynamicDataNode second = NewDynamicNumber(document, "second");
  const PX_DynamicDataNode empty = NewDynamicNumber(document, "empty");
  const PX_DynamicDataNode outside = NewDynamicNumber(document, "outside");
  ASSERT_EQ(group->AddDynamicChild(first.node, nullptr), 0u);
  ASSERT_EQ(document.root->AddGroupChild(group, nullptr), 0u);
  ASSERT_EQ(document.root->AddDynamicChild(second.node, nullptr), 0u);
  ASSERT_EQ(document.root->AddDynamicChild(empty.node, nullptr), 0u);
  ASSERT_EQ(second.number->AddSampleAtFrame(0, 2, nullptr), 0u);
  ASSERT_EQ(first.number->AddSampleAtFrame(0, 1, nullptr), 0u);
  ASSERT_EQ(outside.number->AddSampleAtFrame(0, 3, nullptr), 0u);
  // A node outside the root's tree cannot be written: its sample set would name no node.
  EXPECT_EQ(StatusOf([&](PX_PluginError *e) { return outside.node->CompleteSamples(e); }), PX_PLUGIN_WRONG_STATE);

  std::uint32_t committed = 0;
  EXPECT_EQ(Commit(document, committed), 0u);
  ASSERT_EQ(document.log.sampleSets.size(), 2u);
  EXPECT_EQ(document.log.sampleSets[0].id, "first");
  EXPECT_EQ(document.log.sampleSets[1].id, "second");
  EXPECT_EQ(document.log.sampleSets[1].samples.front().second, "2");
  const auto &emptyNode = dynamic_cast<IMgjsonDynamicData_I &>(*empty.node);
  EXPECT_TRUE(emptyNode.IsCompleted());
  EXPECT_FALSE(emptyNode.IsWritten());
  EXPECT_EQ(StatusOf([&](PX_PluginError *e) { return second.number->AddSampleAtFrame(1, 2, e); }),
            PX_PLUGIN_WRONG_STATE);

  for (const auto &node : {first, second, empty, outside}) node.shared->Release();
  group->Release();
}

TEST(Commit, CompletedNodeIsWrittenOnceAndFreezesItsLayout) {
  TestDocument document;
  ASSERT_EQ(document.root->SetTimecodeInfo(0, 25, 1, nullptr), 0u);
  const PX_DynamicDataNode node = NewDynamicNumber(document, "n");
  ASSERT_EQ(document.root->AddDynamicChild(node.node, nullptr), 0u);
  ASSERT_EQ(node.number->AddSampleAtFrame(0, 1.5, nullptr), 0u);
  ASSERT_EQ(node.node->CompleteSamples(nullptr), 0u);
  ASSERT_EQ(node.node->CompleteSamples(nullptr), 0u);  // once per node
  ASSERT_EQ(document.log.sampleSets.size(), 1u);
  const auto &internal = dynamic_cast<IMgjsonDynamicData_I &>(*node.node);
  EXPECT_TRUE(internal.IsWritten());
  EXPECT_FALSE(internal.IsLeftOut());
  const auto status = [](auto operation) { return StatusOf(operation); };
  EXPECT_EQ(status([&](PX_PluginError *e) { return node.number->AddSampleAtFrame(1, 2, e); }), PX_PLUGIN_WRONG_STATE);
  EXPECT_EQ(status([&](PX_PluginError *e) { return node.number->SetPattern(1, 5, 5, e); }), PX_PLUGIN_WRONG_STATE);
  EXPECT_EQ(status([&](PX_PluginError *e) { return node.node->SetSampleSetId("x", 1, e); }), PX_PLUGIN_WRONG_STATE);
  EXPECT_EQ(node.number->SetRanges(0, 1, 0, 1, nullptr), 0u);  // the outline is written at commit
  ASSERT_EQ(node.node->SetNames("N", 1, "renamed", 7, nullptr), 0u);
  EXPECT_EQ(internal.SampleSetId(), "n");  // fixed when its sample set was written
  node.shared->Release();
}

TEST(Commit, FailedSampleSetLeavesTheNodeOutAndTheErrorReachesTheConverter) {
  TestDocument document;
  ASSERT_EQ(document.root->SetTimecodeInfo(0, 25, 1, nullptr), 0u);
  const PX_DynamicDataNode node = NewDynamicNumber(document, "n");
  ASSERT_EQ(document.root->AddDynamicChild(node.node, nullptr), 0u);
  ASSERT_EQ(node.number->AddSampleAtFrame(0, 1, nullptr), 0u);
  document.log.sampleSetFault = [] { throw ns_sensor::PX_Exception(55, "write failed", 1, 2); };
  PX_PluginError error{};
  EXPECT_EQ(node.node->CompleteSamples(&error), 1055u);
  EXPECT_EQ(error.detail1, 1);
  const auto &internal = dynamic_cast<IMgjsonDynamicData_I &>(*node.node);
  EXPECT_TRUE(internal.IsFailed());
  EXPECT_TRUE(internal.IsLeftOut());
  document.log.sampleSetFault = nullptr;
  std::uint32_t committed = 0;
  EXPECT_EQ(Commit(document, committed), 0u);  // the node is simply left out
  EXPECT_EQ(committed, 1u);
  node.shared->Release();
}

// What the root refuses; what it accepts is pinned by the golden files.
TEST(Commit, RootRefusesValuesTheFileCannotHold) {
  TestDocument document;
  EXPECT_EQ(StatusOf([&](PX_PluginError *e) { return document.root->AddVideoSyncFrame("x", 1, 0x80000000u, e); }),
            PX_PLUGIN_INVALID_ARGUMENT);
  EXPECT_EQ(StatusOf([&](PX_PluginError *e) { return document.root->SetTimecodeInfo(1, 25, 1, e); }),
            PX_PLUGIN_INVALID_ARGUMENT);
}

}  // namespace
}  // namespace PX_PLUGIN
