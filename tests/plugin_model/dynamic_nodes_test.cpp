// Dynamic nodes: what they refuse, and what a given pattern or length does to what the
// samples imply. The written form of samples and properties is pinned by the golden files.
#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "model_test_support.hpp"

namespace PX_PLUGIN {
namespace {

using testing::StatusOf;
using testing::TestDocument;

// A dynamic node in the root's tree, released with the document's test.
PX_DynamicDataNode AddDynamic(TestDocument &document, std::uint32_t kind, const char *matchName) {
  PX_DynamicDataNode node{};
  EXPECT_EQ(document.root->CreateDynamicData(kind, "D", 1, matchName,
                                             static_cast<std::uint32_t>(std::strlen(matchName)), &node, nullptr),
            0u);
  EXPECT_EQ(document.root->AddDynamicChild(node.node, nullptr), 0u);
  node.shared->Release();  // the tree keeps it
  return node;
}

// A given pattern or length only widens what the samples need.
TEST(DynamicNodes, GivenPropertiesOnlyWiden) {
  TestDocument document;
  ASSERT_EQ(document.root->SetTimecodeInfo(0, 25, 1, nullptr), 0u);
  const PX_DynamicDataNode number = AddDynamic(document, PX_DYNAMIC_NUMBER, "speed");
  ASSERT_EQ(number.number->AddSampleAtFrame(0, -1.5, nullptr), 0u);
  ASSERT_EQ(number.number->AddSampleAtFrame(1, 1e-15, nullptr), 0u);
  ASSERT_EQ(number.number->SetPattern(0, 30, -4, nullptr), 0u);
  const NumberPattern pattern = dynamic_cast<IMgjsonDynamicDataNum_I &>(*number.number).Pattern();
  EXPECT_EQ(std::tuple(pattern.isSigned, pattern.digitsInteger, pattern.digitsDecimal), std::tuple(true, 30, 15));

  const PX_DynamicDataNode string = AddDynamic(document, PX_DYNAMIC_STRING, "events");
  ASSERT_EQ(string.string->AddSampleAtFrame(0, "say \"stop\"\n", 11, nullptr), 0u);  // measured before escaping
  ASSERT_EQ(string.string->SetPaddedStringProperties(100, 1, 1, nullptr), 0u);
  const auto properties = dynamic_cast<IMgjsonDynamicDataString_I &>(*string.string).Properties();
  EXPECT_EQ(std::tuple(properties.maxLength, properties.maxDigitsInLength, properties.eventMarker),
            std::tuple(100u, 2u, true));
}

TEST(DynamicNodes, NumberArraySamplesCarryOneValuePerComponent) {
  TestDocument document;
  ASSERT_EQ(document.root->SetTimecodeInfo(1, 30000, 1001, nullptr), 0u);
  IMgjsonDynamicDataNumArr_v1 *array = AddDynamic(document, PX_DYNAMIC_NUMBER_ARRAY, "position").numberArray;
  const double xyz[] = {1, -2.25, 300};
  EXPECT_EQ(StatusOf([&](PX_PluginError *e) { return array->AddSampleAtFrame(0, xyz, 3, e); }),
            PX_PLUGIN_INVALID_ARGUMENT);  // no component yet
  for (const char *name : {"X", "Y", "Z"}) ASSERT_EQ(array->AddComponent(name, 1, nullptr), 0u);
  EXPECT_EQ(StatusOf([&](PX_PluginError *e) { return array->AddSampleAtFrame(0, xyz, 2, e); }),
            PX_PLUGIN_INVALID_ARGUMENT);
  ASSERT_EQ(array->AddSampleAtFrame(1800, xyz, 3, nullptr), 0u);
  EXPECT_EQ(StatusOf([&](PX_PluginError *e) { return array->AddComponent("W", 1, e); }), PX_PLUGIN_WRONG_STATE);
  EXPECT_EQ(StatusOf([&](PX_PluginError *e) { return array->SetComponentOccurringRange(3, 0, 1, e); }),
            PX_PLUGIN_INVALID_ARGUMENT);
}

TEST(DynamicNodes, RefusedSamplesLeaveNothingBehind) {
  TestDocument document;
  const PX_DynamicDataNode node = AddDynamic(document, PX_DYNAMIC_NUMBER, "n");
  const auto status = [](auto operation) { return StatusOf(operation); };
  EXPECT_EQ(status([&](PX_PluginError *e) { return node.number->AddSampleAtFrame(0, 1, e); }),
            PX_PLUGIN_TIME_MISMATCH);  // no time information yet
  ASSERT_EQ(document.root->SetTimecodeInfo(0, 25, 1, nullptr), 0u);  // still allowed
  EXPECT_EQ(status([&](PX_PluginError *e) { return node.number->AddSampleAtFrame(0, std::nan(""), e); }),
            PX_PLUGIN_INVALID_ARGUMENT);
  EXPECT_EQ(status([&](PX_PluginError *e) {
              return node.number->AddSampleAtUtc("2024-01-01T00:00:00Z", 20, 0, 1, 1, e);
            }),
            PX_PLUGIN_TIME_MISMATCH);
  EXPECT_EQ(node.number->GetSampleCount(), 0u);
  EXPECT_FALSE(dynamic_cast<IMgjsonRoot_I &>(*document.root).DynamicSamplesPresent());

  ASSERT_EQ(node.number->AddSampleAtFrame(0, 1, nullptr), 0u);
  EXPECT_EQ(status([&](PX_PluginError *e) { return document.root->SetUtcInfo(0, 1, e); }), PX_PLUGIN_WRONG_STATE);
}

TEST(DynamicNodes, NodeSettings) {
  TestDocument document;
  const PX_DynamicDataNode node = AddDynamic(document, PX_DYNAMIC_NUMBER, "temp");
  const auto &internal = dynamic_cast<IMgjsonDynamicData_I &>(*node.node);
  EXPECT_EQ(StatusOf([&](PX_PluginError *e) { return node.node->SetInterpolation(3, e); }), PX_PLUGIN_UNKNOWN_KIND);
  ASSERT_EQ(node.node->SetNames("Temperature", 11, "temperature", 11, nullptr), 0u);
  EXPECT_EQ(internal.SampleSetId(), "temperature") << "the match name until an ID is given";
  // A null duration takes a given one back.
  ASSERT_EQ(node.node->SetExpectedMaxInterSampleDuration("00:00:01:00", 11, nullptr), 0u);
  ASSERT_EQ(node.node->SetExpectedMaxInterSampleDuration(nullptr, 0, nullptr), 0u);
  EXPECT_FALSE(internal.ExpectedMaxInterSampleDuration());
}

}  // namespace
}  // namespace PX_PLUGIN
