// The round trip: random documents of every node kind and time form, written through the
// object model and read back through the manager as a host reads them. Whatever the
// writer produces must open with the library's own reader and give back what was put in.
#include <gtest/gtest.h>

#include "api/manager_lifetime.hpp"
#include "palvex/plugin_helpers.hpp"
#include "roundtrip_check.hpp"
#include "support/test_host.hpp"
#include "writer_test_support.hpp"

namespace PX_PLUGIN {
namespace {

using palvex::testing::ScratchFolder;
using roundtrip::DocumentBuilder;
using roundtrip::ExpectedDocument;
using roundtrip::FileComparison;
using roundtrip::RandomChoices;
using testing::WritingDocument;

constexpr std::uint64_t kDocuments = 300;

class RoundTrip : public ::testing::Test {
 protected:
  void SetUp() override {
    CreatePalvex_1(&manager_, nullptr, nullptr, nullptr, &log_, palvex::testing::TestCallbacks(), nullptr);
    ASSERT_NE(manager_, nullptr);
  }
  void TearDown() override { DestroyPalvex_1(&manager_, &log_); }

  // Builds the document of a seed, commits it and compares the file with it.
  void Run(std::uint64_t seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    const std::string name = "doc" + std::to_string(seed) + ".mgjson";
    ExpectedDocument expected;
    {
      WritingDocument document(folder_, name);
      RandomChoices choices(seed);
      DocumentBuilder builder(choices, document.root);
      expected = builder.Build();
      for (const std::string &problem : builder.problems()) ADD_FAILURE() << problem;
      ASSERT_EQ(document.Commit(), expected.CommitStatus());
    }
    const std::string path = folder_.Path(name);
    if (expected.CommitStatus() != PX_PLUGIN_OK) {
      EXPECT_EQ(palvex::testing::ReadWholeFile(path), "") << "a failed commit leaves an empty file";
    } else {
      for (const std::string &difference : FileComparison(*manager_, expected).Compare(path)) {
        ADD_FAILURE() << difference << "\n" << palvex::testing::ReadWholeFile(path).substr(0, 4000);
      }
    }
    EXPECT_EQ(folder_.Entries(), std::set<std::string>{name}) << "only the output may stay";
    std::filesystem::remove(palvex::testing::AsPath(path));
  }

  IPalvex *manager_ = nullptr;
  palvex::host::ErrorLog log_;
  ScratchFolder folder_;
};

TEST_F(RoundTrip, RandomDocumentsReadBackAsBuilt) {
  for (std::uint64_t seed = 1; seed <= kDocuments && !HasFailure(); ++seed) Run(seed);
}

// Sets far beyond the memory bounds: samples spilled by the store and read back through
// its mapping, text appended to the file in many pieces.
TEST_F(RoundTrip, LargeSpilledSetsReadBack) {
  constexpr std::uint64_t kSamples = 60000;
  ExpectedDocument expected;
  expected.time = roundtrip::TimeKind::Timecode;
  expected.rate = {30000, 1001, true};
  {
    WritingDocument document(folder_);
    Call(document.root, &IMgjsonRoot_v1::SetTimecodeInfo, 1u, 30000u, 1001u);
    const DynamicNode numbers = CreateDynamicData(document.root, PX_DYNAMIC_NUMBER, "Numbers", "numbers");
    const DynamicNode texts = CreateDynamicData(document.root, PX_DYNAMIC_STRING, "Texts", "texts");
    Call(document.root, &IMgjsonGroup_v1::AddDynamicChild, numbers.views().node);
    Call(document.root, &IMgjsonGroup_v1::AddDynamicChild, texts.views().node);
    const auto expectedNode = [](roundtrip::NodeKind kind, const char *display, const char *match) {
      roundtrip::ExpectedNode node;
      node.kind = kind;
      node.displayName = display;
      node.matchName = node.sampleSetId = match;
      return node;
    };
    roundtrip::ExpectedNode numberNode = expectedNode(roundtrip::NodeKind::DynamicNumber, "Numbers", "numbers");
    roundtrip::ExpectedNode textNode = expectedNode(roundtrip::NodeKind::DynamicString, "Texts", "texts");
    for (std::uint64_t frame = 0; frame < kSamples; ++frame) {
      const double value = static_cast<double>(frame) / 8 - 1000;
      const std::string text = "sample \"" + std::to_string(frame) + "\"";
      Call(numbers.views().number, &IMgjsonDynamicDataNum_v1::AddSampleAtFrame, frame, value);
      Call(texts.views().string, &IMgjsonDynamicDataString_v1::AddSampleAtFrame, frame, text.data(),
           static_cast<std::uint32_t>(text.size()));
      const std::string time = ns_sensor::FrameNumberToSmpte(frame, expected.rate);
      numberNode.samples.push_back({time, {value}, {}});
      textNode.samples.push_back({time, {}, text});
    }
    expected.root.children = {numberNode, textNode};
    ASSERT_EQ(document.Commit(), 0u);
  }
  for (const std::string &difference : FileComparison(*manager_, expected).Compare(folder_.Path("out.mgjson"))) {
    ADD_FAILURE() << difference;
  }
  EXPECT_EQ(folder_.Entries(), std::set<std::string>{"out.mgjson"});
}

}  // namespace
}  // namespace PX_PLUGIN
