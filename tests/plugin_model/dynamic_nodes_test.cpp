// Dynamic nodes: samples as the writer will read them, and what the outline says of them.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "model_test_support.hpp"

namespace PX_PLUGIN {
namespace {

using testing::StatusOf;
using testing::TestDocument;
using Samples = std::vector<std::pair<std::string, std::string>>;

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

Samples Kept(IMgjsonDynamicData_v1 *node) {
  auto &internal = dynamic_cast<IMgjsonDynamicData_I &>(*node);
  Samples samples;
  std::string_view time, value;
  while (internal.Samples().Next(time, value)) samples.emplace_back(time, value);
  return samples;
}

TEST(DynamicNodes, NumberSamplesAndWhatTheyImply) {
  TestDocument document;
  ASSERT_EQ(document.root->SetTimecodeInfo(0, 25, 1, nullptr), 0u);
  const PX_DynamicDataNode node = AddDynamic(document, PX_DYNAMIC_NUMBER, "speed");
  for (const auto &[frame, value] : std::vector<std::pair<std::uint64_t, double>>{{0, 5}, {1, -1.5}, {2, 1e20}, {3, 1e-15}}) {
    ASSERT_EQ(node.number->AddSampleAtFrame(frame, value, nullptr), 0u);
  }
  EXPECT_EQ(node.number->GetSampleCount(), 4u);
  EXPECT_EQ(Kept(node.node), (Samples{{"00:00:00:00", "5"},
                                      {"00:00:00:01", "-1.5"},
                                      {"00:00:00:02", "100000000000000000000"},
                                      {"00:00:00:03", "0.000000000000001"}}));
  const auto &internal = dynamic_cast<IMgjsonDynamicDataNum_I &>(*node.number);
  const NumberPattern pattern = internal.Pattern();
  EXPECT_TRUE(pattern.isSigned);
  EXPECT_EQ(pattern.digitsInteger, 21);
  EXPECT_EQ(pattern.digitsDecimal, 15);
  EXPECT_EQ(internal.Range().occurring.min, -1.5);
  EXPECT_EQ(internal.Range().legal.max, 1e20);
  EXPECT_TRUE(dynamic_cast<IMgjsonRoot_I &>(*document.root).DynamicSamplesPresent());

  ASSERT_EQ(node.number->SetRanges(-10, 10, -100, 100, nullptr), 0u);
  EXPECT_EQ(internal.Range().occurring.max, 10);
  EXPECT_EQ(internal.Range().legal.min, -100);
  ASSERT_EQ(node.number->SetPattern(0, 30, -4, nullptr), 0u);  // a least pattern: only widens
  EXPECT_EQ(internal.Pattern().digitsInteger, 30);
  EXPECT_EQ(internal.Pattern().digitsDecimal, 15);
  EXPECT_TRUE(internal.Pattern().isSigned);
}

TEST(DynamicNodes, StringSamplesAreEscapedAndMeasuredBeforeEscaping) {
  TestDocument document;
  ASSERT_EQ(document.root->SetUtcInfo(3, 1, nullptr), 0u);
  const PX_DynamicDataNode node = AddDynamic(document, PX_DYNAMIC_STRING, "events");
  const char *base = "2024-01-01T00:00:00Z";
  ASSERT_EQ(node.string->AddSampleAtUtc(base, 20, 0, 1, "go", 2, nullptr), 0u);
  ASSERT_EQ(node.string->AddSampleAtUtc(base, 20, 3, 2, "say \"stop\"\n", 11, nullptr), 0u);
  EXPECT_EQ(Kept(node.node), (Samples{{"2024-01-01T00:00:00.000Z", "go"},
                                      {"2024-01-01T00:00:01.500Z", "say \\\"stop\\\"\\n"}}));
  const auto &internal = dynamic_cast<IMgjsonDynamicDataString_I &>(*node.string);
  EXPECT_EQ(internal.Properties().maxLength, 11u);
  EXPECT_EQ(internal.Properties().maxDigitsInLength, 2u);
  ASSERT_EQ(node.string->SetPaddedStringProperties(100, 1, 1, nullptr), 0u);
  EXPECT_EQ(internal.Properties().maxLength, 100u);
  EXPECT_EQ(internal.Properties().maxDigitsInLength, 2u);
  EXPECT_TRUE(internal.Properties().eventMarker);
}

TEST(DynamicNodes, NumberArraySamplesCarryOneValuePerComponent) {
  TestDocument document;
  ASSERT_EQ(document.root->SetTimecodeInfo(1, 30000, 1001, nullptr), 0u);
  const PX_DynamicDataNode node = AddDynamic(document, PX_DYNAMIC_NUMBER_ARRAY, "position");
  const auto status = [](auto operation) { return StatusOf(operation); };
  const double xyz[] = {1, -2.25, 300};
  EXPECT_EQ(status([&](PX_PluginError *e) { return node.numberArray->AddSampleAtFrame(0, xyz, 3, e); }),
            PX_PLUGIN_INVALID_ARGUMENT);  // no component yet
  for (const char *name : {"X", "Y", "Z"}) ASSERT_EQ(node.numberArray->AddComponent(name, 1, nullptr), 0u);
  EXPECT_EQ(status([&](PX_PluginError *e) { return node.numberArray->AddSampleAtFrame(0, xyz, 2, e); }),
            PX_PLUGIN_INVALID_ARGUMENT);
  ASSERT_EQ(node.numberArray->AddSampleAtFrame(1800, xyz, 3, nullptr), 0u);
  EXPECT_EQ(status([&](PX_PluginError *e) { return node.numberArray->AddComponent("W", 1, e); }),
            PX_PLUGIN_WRONG_STATE);
  EXPECT_EQ(Kept(node.node), (Samples{{"00:01:00:02", "1,-2.25,300"}}));
  ASSERT_EQ(node.numberArray->SetComponentLegalRange(1, -5, 5, nullptr), 0u);
  EXPECT_EQ(status([&](PX_PluginError *e) { return node.numberArray->SetComponentOccurringRange(3, 0, 1, e); }),
            PX_PLUGIN_INVALID_ARGUMENT);
  ASSERT_EQ(node.numberArray->SetPoint(1, nullptr), 0u);

  const NumberArrayProperties properties = dynamic_cast<IMgjsonDynamicDataNumArr_I &>(*node.numberArray).Properties();
  EXPECT_EQ(properties.displayNames, (std::vector<std::string>{"X", "Y", "Z"}));
  ASSERT_EQ(properties.ranges.size(), 3u);
  EXPECT_EQ(properties.ranges[1].occurring.min, -2.25);
  EXPECT_EQ(properties.ranges[1].legal.min, -5);
  EXPECT_EQ(properties.ranges[2].legal.max, 300);
  EXPECT_TRUE(properties.isPoint);
  EXPECT_EQ(properties.pattern.digitsInteger, 3);
  EXPECT_EQ(properties.pattern.digitsDecimal, 2);
  EXPECT_TRUE(properties.pattern.isSigned);
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
  EXPECT_EQ(internal.SampleSetId(), "temp");  // until one is given
  EXPECT_EQ(internal.Interpolation(), PX_INTERPOLATION_LINEAR);
  EXPECT_FALSE(internal.ExpectedMaxInterSampleDuration());
  ASSERT_EQ(node.node->SetSampleSetId("set\t1", 5, nullptr), 0u);
  ASSERT_EQ(node.node->SetInterpolation(PX_INTERPOLATION_HOLD, nullptr), 0u);
  EXPECT_EQ(StatusOf([&](PX_PluginError *e) { return node.node->SetInterpolation(3, e); }), PX_PLUGIN_UNKNOWN_KIND);
  ASSERT_EQ(node.node->SetHasExpectedFrequency(1, nullptr), 0u);
  ASSERT_EQ(node.node->SetExpectedMaxInterSampleDuration("00:00:01:00", 11, nullptr), 0u);
  ASSERT_EQ(node.node->SetNames("Temperature", 11, "temperature", 11, nullptr), 0u);
  EXPECT_EQ(internal.SampleSetId(), "set\\t1");
  EXPECT_EQ(internal.Interpolation(), PX_INTERPOLATION_HOLD);
  EXPECT_TRUE(internal.HasExpectedFrequency());
  EXPECT_EQ(internal.ExpectedMaxInterSampleDuration().value_or(""), "00:00:01:00");
  EXPECT_EQ(internal.Names().matchName, "temperature");
  ASSERT_EQ(node.node->SetExpectedMaxInterSampleDuration(nullptr, 0, nullptr), 0u);
  EXPECT_FALSE(internal.ExpectedMaxInterSampleDuration());
}

}  // namespace
}  // namespace PX_PLUGIN
