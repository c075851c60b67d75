// The writer's rules that the golden files do not spell out one by one: widening of
// number samples to the pattern every sample needs, output larger than a block, refused
// commits, the sync list.
#include <gtest/gtest.h>

#include <cstdio>
#include <functional>

#include "palvex/plugin_helpers.hpp"
#include "plugin_model/number_text.hpp"
#include "writer_test_support.hpp"

namespace PX_PLUGIN {
namespace {

using palvex::testing::ScratchFolder;
using testing::WritingDocument;

// The value texts of the samples in a written file, in order.
std::vector<std::string> SampleValues(const std::string &text) {
  std::vector<std::string> values;
  const std::string key = "\"value\":\"";
  for (std::size_t at = text.find(key); at != std::string::npos; at = text.find(key, at)) {
    at += key.size();
    values.push_back(text.substr(at, text.find('"', at) - at));
  }
  return values;
}

// Every sample is widened to the one pattern of its node: the least pattern given (signed,
// 3 and 2 digits) grown to the most digits any sample has before (1234.5) and after
// (0.0000001) the point.
TEST(MgjsonWriter, NumberSamplesAreWidenedToTheNodesPattern) {
  struct Case {
    double value;
    const char *text;
  };
  const Case cases[] = {
      {5, "+0005.0000000"},       {-1.5, "-0001.5000000"}, {0.25, "+0000.2500000"}, {1234.5, "+1234.5000000"},
      {-0.0, "-0000.0000000"},    {1e-7, "+0000.0000001"}, {100, "+0100.0000000"},
  };
  ScratchFolder folder;
  WritingDocument document(folder);
  Call(document.root, &IMgjsonRoot_v1::SetTimecodeInfo, 0u, 25u, 1u);
  const DynamicNode node = CreateDynamicData(document.root, PX_DYNAMIC_NUMBER, "N", "n");
  Call(node.views().number, &IMgjsonDynamicDataNum_v1::SetPattern, 1u, 3, 2);
  Call(document.root, &IMgjsonGroup_v1::AddDynamicChild, node.views().node);
  std::uint64_t frame = 0;
  for (const Case &c : cases) Call(node.views().number, &IMgjsonDynamicDataNum_v1::AddSampleAtFrame, frame++, c.value);
  ASSERT_EQ(document.Commit(), 0u);
  const std::vector<std::string> values = SampleValues(document.Text());
  ASSERT_EQ(values.size(), std::size(cases));
  for (std::size_t i = 0; i < values.size(); ++i) EXPECT_EQ(values[i], cases[i].text) << cases[i].value;
  EXPECT_NE(document.Text().find(R"("pattern":{"isSigned":true,"digitsDecimal":7,"digitsInteger":4})"),
            std::string::npos);
}

// Sample text reaches the file in blocks of about 1 MiB: a set of several blocks (whose
// samples were spilled, too) comes out whole and in order, and so does a sample that no
// block can hold (widened to 300,000 digits).
TEST(MgjsonWriter, SampleSetsLargerThanABlockComeOutWhole) {
  constexpr int kSamples = 100000;
  constexpr std::int32_t kWideDigits = 300000;
  ScratchFolder folder;
  WritingDocument document(folder);
  Call(document.root, &IMgjsonRoot_v1::SetTimecodeInfo, 0u, 25u, 1u);
  const DynamicNode many = CreateDynamicData(document.root, PX_DYNAMIC_NUMBER, "Many", "many");
  const DynamicNode wide = CreateDynamicData(document.root, PX_DYNAMIC_NUMBER, "Wide", "wide");
  Call(wide.views().number, &IMgjsonDynamicDataNum_v1::SetPattern, 0u, kWideDigits, 0);
  Call(document.root, &IMgjsonGroup_v1::AddDynamicChild, many.views().node);
  Call(document.root, &IMgjsonGroup_v1::AddDynamicChild, wide.views().node);
  const auto value = [](int i) { return (i % 1000) * 0.5 - 250; };
  for (int i = 0; i < kSamples; ++i) {
    Call(many.views().number, &IMgjsonDynamicDataNum_v1::AddSampleAtFrame, std::uint64_t(i), value(i));
  }
  for (std::uint64_t frame : {0u, 1u}) {
    Call(wide.views().number, &IMgjsonDynamicDataNum_v1::AddSampleAtFrame, frame, 5.0 + frame);
  }
  ASSERT_EQ(document.Commit(), 0u);
  const std::vector<std::string> values = SampleValues(document.Text());
  ASSERT_EQ(values.size(), kSamples + 2u);
  for (int i = 0; i < kSamples; ++i) {
    char expected[16];
    std::snprintf(expected, sizeof expected, "%+06.1f", value(i));  // signed, 3 digits, 1 decimal
    ASSERT_EQ(values[i], expected) << i;
  }
  const std::string zeros(kWideDigits - 1, '0');
  const std::string wideSet = R"({"sampleSetID":"wide","samples":[{"time":"00:00:00:00","value":")" + zeros +
                              R"(5"},{"time":"00:00:00:01","value":")" + zeros + R"(6"}]})";
  EXPECT_NE(document.Text().find(wideSet), std::string::npos);
}

// The outline, too, reaches the file in blocks: nodes spanning several blocks and an array
// written element by element come out whole and in order, and so do texts longer than a
// block has room for.
TEST(MgjsonWriter, OutlinesLargerThanABlockComeOutWhole) {
  constexpr int kNodes = 4000;  // about 1.4 MB of outline
  constexpr int kElements = 2000;
  const std::string longText(100000, 'x');
  ScratchFolder folder;
  WritingDocument document(folder);
  const Ref<IMgjsonGroup_v1> group = CreateGroup(document.root, "G", "g");
  for (int i = 0; i < kNodes; ++i) {
    const std::string name = "n" + std::to_string(i);
    const StaticNode node = CreateStaticNumber(document.root, name, name, i);
    Call(group.get(), &IMgjsonGroup_v1::AddStaticChild, node.views().node);
  }
  Call(document.root, &IMgjsonGroup_v1::AddGroupChild, group.get());
  const StaticNode text = CreateStaticString(document.root, longText, "text", longText);
  Call(document.root, &IMgjsonGroup_v1::AddStaticChild, text.views().node);
  const PX_StaticValue none{};
  const StaticNode array = CreateStaticData(document.root, PX_STATIC_NUMBER_ARRAY, "A", "a", &none);
  std::string values = R"("value":[)";
  std::string names = R"("arrayDisplayNames":[)";
  for (int i = 0; i < kElements; ++i) {
    const std::string name = "e" + std::to_string(i);
    Call(array.views().numberArray, &IMgjsonStaticDataNumArr_v1::AddElement, i * 0.5, name.c_str(),
         static_cast<std::uint32_t>(name.size()));
    values += (i == 0 ? "" : ",") + JsonNumberText(i * 0.5);
    names += (i == 0 ? "\"" : ",\"") + name + '"';
  }
  Call(document.root, &IMgjsonGroup_v1::AddStaticChild, array.views().node);
  ASSERT_EQ(document.Commit(), 0u);

  const std::string written = document.Text();
  std::size_t at = 0;
  for (int i = 0; i < kNodes; ++i) {
    at = written.find(R"("matchName":"n)" + std::to_string(i) + R"(",)", at);
    ASSERT_NE(at, std::string::npos) << i;
    at = written.find(R"("value":)" + std::to_string(i) + "}", at);
    ASSERT_NE(at, std::string::npos) << i;
  }
  // Each in its place after the group, whatever piece of memory it was written from.
  for (const std::string &piece : {R"("displayName":")" + longText + '"', R"("value":")" + longText + R"("})",
                                   names + "]", values + "]}]}"}) {
    at = written.find(piece, at);
    ASSERT_NE(at, std::string::npos) << piece.substr(0, 40);
  }
}

// What commit refuses, with an empty file left at the output path: nothing to write
// (no child, or only children without anything to show), samples promised without time
// information.
TEST(MgjsonWriter, CommitRefusalsLeaveAnEmptyFile) {
  struct Case {
    const char *what;
    std::function<void(IMgjsonRoot_v1 *)> build;
    std::uint32_t status;
  };
  const Case cases[] = {
      {"no child", [](IMgjsonRoot_v1 *) {}, PX_PLUGIN_NO_CHILDREN},
      {"an empty number array",
       [](IMgjsonRoot_v1 *root) {
         const PX_StaticValue none{};
         const StaticNode node = CreateStaticData(root, PX_STATIC_NUMBER_ARRAY, "A", "a", &none);
         Call(root, &IMgjsonGroup_v1::AddStaticChild, node.views().node);
       },
       PX_PLUGIN_NO_CHILDREN},
      {"a dynamic node without samples",
       [](IMgjsonRoot_v1 *root) {
         const DynamicNode node = CreateDynamicData(root, PX_DYNAMIC_STRING, "D", "d");
         Call(root, &IMgjsonGroup_v1::AddDynamicChild, node.views().node);
       },
       PX_PLUGIN_NO_CHILDREN},
      {"samples promised without time information",
       [](IMgjsonRoot_v1 *root) {
         Call(root, &IMgjsonRoot_v1::SetDynamicSamplesPresent, 1u);
         const StaticNode node = CreateStaticBoolean(root, "B", "b", true);
         Call(root, &IMgjsonGroup_v1::AddStaticChild, node.views().node);
       },
       PX_PLUGIN_TIME_INFO_MISSING},
  };
  for (const Case &c : cases) {
    ScratchFolder folder;
    folder.WriteFile("out.mgjson", "an older file");
    WritingDocument document(folder);
    c.build(document.root);
    EXPECT_EQ(document.Commit(), c.status) << c.what;
    EXPECT_EQ(document.Text(), "") << c.what;
  }
}

// The sync list goes out with the header, which the first sample set writes: an entry
// added later could never reach the file, so it is refused.
TEST(MgjsonWriter, TheSyncListClosesWithTheHeader) {
  ScratchFolder folder;
  WritingDocument document(folder);
  Call(document.root, &IMgjsonRoot_v1::SetTimecodeInfo, 0u, 25u, 1u);
  Call(document.root, &IMgjsonRoot_v1::AddVideoSyncFrame, "a.mov", 5u, 1u);
  const DynamicNode node = CreateDynamicData(document.root, PX_DYNAMIC_NUMBER, "N", "n");
  Call(document.root, &IMgjsonGroup_v1::AddDynamicChild, node.views().node);
  Call(node.views().number, &IMgjsonDynamicDataNum_v1::AddSampleAtFrame, std::uint64_t{0}, 1.0);
  Call(document.root, &IMgjsonRoot_v1::AddVideoSyncTime, "b.mov", 5u, "x", 1u);  // still open
  Call(node.views().node, &IMgjsonDynamicData_v1::CompleteSamples);
  EXPECT_EQ(document.root->AddVideoSyncFrame("c.mov", 5, 2, nullptr), PX_PLUGIN_WRONG_STATE);
  ASSERT_EQ(document.Commit(), 0u);
  EXPECT_NE(document.Text().find(R"("videoSyncTimeList":[{"fileName":"a.mov","frameNumber":1},)"
                                 R"({"fileName":"b.mov","timeString":"x"}])"),
            std::string::npos);
}

}  // namespace
}  // namespace PX_PLUGIN
