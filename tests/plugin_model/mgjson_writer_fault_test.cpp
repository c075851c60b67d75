// Failures of the file system under the writer, injected through the fault seam. In each
// case the converted code reaches the caller, the output is what the writer promises (cut
// back to the last complete sample set, or empty after a failed commit), and no spill
// file and no descriptor stay behind.
#include <gtest/gtest.h>

#include <filesystem>

#include "palvex/plugin_helpers.hpp"
#include "platform/fault_injection.hpp"
#include "writer_test_support.hpp"

namespace PX_PLUGIN {
namespace {

using palvex::platform::ErrorKind;
using palvex::platform::FaultPoint;
using palvex::platform::ScopedFault;
using palvex::testing::ScratchFolder;
using testing::WritingDocument;

// Samples of the large node: its sample set is appended in several pieces of 1 MiB.
constexpr std::uint64_t kLargeSetSamples = 90000;

// A document of two dynamic numbers ("small" and, unless left out, "large") and a static
// number, at 25 frames per second.
struct TwoSets {
  explicit TwoSets(IMgjsonRoot_v1 *documentRoot, bool withLarge = true) : root(documentRoot) {
    Call(root, &IMgjsonRoot_v1::SetTimecodeInfo, 0u, 25u, 1u);
    small = Add("small", 10);
    if (withLarge) large = Add("large", kLargeSetSamples);
    const StaticNode total = CreateStaticNumber(root, "Total", "total", 7);
    Call(root, &IMgjsonGroup_v1::AddStaticChild, total.views().node);
  }

  std::optional<DynamicNode> Add(const char *name, std::uint64_t samples) {
    DynamicNode node = CreateDynamicData(root, PX_DYNAMIC_NUMBER, name, name);
    Call(root, &IMgjsonGroup_v1::AddDynamicChild, node.views().node);
    for (std::uint64_t frame = 0; frame < samples; ++frame) {
      Call(node.views().number, &IMgjsonDynamicDataNum_v1::AddSampleAtFrame, frame, frame * 0.5);
    }
    return node;
  }

  static std::uint32_t Complete(const std::optional<DynamicNode> &node) {
    return node->views().node->CompleteSamples(nullptr);
  }

  IMgjsonRoot_v1 *root;
  std::optional<DynamicNode> small;
  std::optional<DynamicNode> large;
};

class WriterFaults : public palvex::testing::FaultSeamTest {
 protected:
  // The text of the document when the large node never was in it.
  std::string WithoutLargeSet() {
    ScratchFolder folder;
    WritingDocument document(folder);
    TwoSets sets(document.root, false);
    EXPECT_EQ(TwoSets::Complete(sets.small), 0u);
    EXPECT_EQ(document.Commit(), 0u);
    return document.Text();
  }

  // Only the output may stay in the folder.
  void ExpectOnlyOutput(const ScratchFolder &folder) {
    EXPECT_EQ(folder.Entries(), std::set<std::string>{"out.mgjson"});
  }
};

// A set that fails while it is appended, at its first or a later piece, leaves the file
// as it was after the set before; the node is left out and commit completes the file.
TEST_F(WriterFaults, AFailedSampleSetIsCutBackAndLeftOut) {
  const std::string expected = WithoutLargeSet();
  struct Case {
    const char *what;
    FaultPoint point;
    ErrorKind error;
    std::uint32_t skip;  // calls that pass first, counted from the large set
    std::uint32_t code;
  };
  const Case cases[] = {
      {"disk full at the first piece", FaultPoint::WriteFile, ErrorKind::DiskFull, 0, 1034},
      {"disk full at the third piece", FaultPoint::WriteFile, ErrorKind::DiskFull, 2, 1034},
      {"write failure at the second piece", FaultPoint::WriteFile, ErrorKind::Other, 1, 1055},
      {"output cannot be opened", FaultPoint::OpenFile, ErrorKind::Other, 0, 1006},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.what);
    {
      WritingDocument document(folder_);
      TwoSets sets(document.root);
      ASSERT_EQ(TwoSets::Complete(sets.small), 0u);
      const std::string afterSmall = document.Text();
      PX_PluginError error{};
      {
        ScopedFault fault(c.point, c.error, 1, c.skip);
        EXPECT_EQ(sets.large->views().node->CompleteSamples(&error), c.code);
      }
      EXPECT_EQ(error.code, c.code);
      EXPECT_EQ(document.Text(), afterSmall) << "cut back to the last complete set";
      EXPECT_EQ(document.Commit(), 0u);
      EXPECT_EQ(document.Text(), expected);
    }
    ExpectOnlyOutput(folder_);
  }
}

// The first set fails: at its samples, the opening of the sample array goes with it and a
// later set opens the array again; at the header, no half header stays. Commit then
// writes the file whole.
TEST_F(WriterFaults, AFailedFirstSetLeavesNoHeader) {
  const std::string expected = WithoutLargeSet();
  for (const std::uint32_t skip : {1u, 0u}) {  // the header passes, or not
    SCOPED_TRACE(skip);
    {
      WritingDocument document(folder_);
      TwoSets sets(document.root);
      {
        ScopedFault fault(FaultPoint::WriteFile, ErrorKind::DiskFull, 1, skip);
        EXPECT_EQ(TwoSets::Complete(sets.large), 1034u);
      }
      if (skip == 0) {
        EXPECT_EQ(document.Text(), "");
      } else {
        EXPECT_EQ(document.Text().find("dataDynamicSamples"), std::string::npos);
      }
      EXPECT_EQ(TwoSets::Complete(sets.small), 0u);
      EXPECT_EQ(document.Commit(), 0u);
      EXPECT_EQ(document.Text(), expected);
    }
    ExpectOnlyOutput(folder_);
  }
}

// Commit fails at any of its writes: the output is empty and stays so.
TEST_F(WriterFaults, AFailedCommitLeavesAnEmptyFile) {
  struct Case {
    const char *what;
    FaultPoint point;
    ErrorKind error;
    std::uint32_t skip;
    std::uint32_t code;
  };
  const Case cases[] = {
      {"disk full at the header", FaultPoint::WriteFile, ErrorKind::DiskFull, 0, 1034},
      {"disk full at the small set", FaultPoint::WriteFile, ErrorKind::DiskFull, 1, 1034},
      {"disk full at the outline", FaultPoint::WriteFile, ErrorKind::DiskFull, 2, 1034},
      {"output cannot be opened after the header", FaultPoint::OpenFile, ErrorKind::Other, 2, 1006},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.what);
    {
      WritingDocument document(folder_);
      TwoSets sets(document.root, false);
      ScopedFault fault(c.point, c.error, 1, c.skip);
      PX_PluginError error{};
      std::uint32_t committed = 7;
      EXPECT_EQ(document.root->Commit(&committed, &error), c.code);
      EXPECT_EQ(committed, 0u);
      EXPECT_EQ(error.code, c.code);
      EXPECT_EQ(document.Text(), "");
      palvex::platform::DisarmAllFaults();
      EXPECT_EQ(document.Commit(), PX_PLUGIN_WRONG_STATE) << "a failed document is not written again";
      EXPECT_EQ(document.Text(), "");
    }
    ExpectOnlyOutput(folder_);
  }
}

// Withdrawing an unkept promise of samples cuts the header; when that fails, so does the
// commit, and the output is empty.
TEST_F(WriterFaults, AFailedWithdrawalOfThePromiseEmptiesTheOutput) {
  {
    WritingDocument document(folder_);
    TwoSets sets(document.root, false);
    // The small node's set fails at once, after its header was written with the promise.
    {
      ScopedFault fault(FaultPoint::WriteFile, ErrorKind::DiskFull, 1, 1);
      EXPECT_EQ(TwoSets::Complete(sets.small), 1034u);
    }
    ScopedFault fault(FaultPoint::SetEndOfFile, ErrorKind::Other);
    EXPECT_EQ(document.Commit(), 1010u);
    EXPECT_EQ(document.Text(), "");
  }
  ExpectOnlyOutput(folder_);
}

// A set that cannot be cut back after it failed empties the output for good: 2004 now
// and for every later stage.
TEST_F(WriterFaults, ASetThatCannotBeCutBackEmptiesTheOutput) {
  {
    WritingDocument document(folder_);
    TwoSets sets(document.root);
    ASSERT_EQ(TwoSets::Complete(sets.small), 0u);
    {
      ScopedFault diskFull(FaultPoint::WriteFile, ErrorKind::DiskFull, 1, 1);
      palvex::platform::ArmFault(FaultPoint::SetEndOfFile, ErrorKind::Other);
      EXPECT_EQ(TwoSets::Complete(sets.large), PX_PLUGIN_TRUNCATE_FAILED);
    }
    EXPECT_EQ(document.Text(), "");
    EXPECT_EQ(document.Commit(), PX_PLUGIN_TRUNCATE_FAILED);
    EXPECT_EQ(document.Text(), "");
  }
  ExpectOnlyOutput(folder_);
}

// Spilling samples fails (a full disk, or the folder of spill files has gone): the sample
// is refused with the converted code, nothing is left behind, and the document can still
// be committed with what it holds.
TEST_F(WriterFaults, FailedSpillsReachTheConverterAndLeaveNothingBehind) {
  const std::string spill = folder_.Path("spill");
  struct Case {
    const char *what;
    std::function<void()> fault;
    std::uint32_t code;
  };
  const Case cases[] = {
      {"disk full", [] { palvex::platform::ArmFault(FaultPoint::WriteFile, ErrorKind::DiskFull); }, 1034},
      {"spill folder gone", [&] { std::filesystem::remove_all(palvex::testing::AsPath(spill)); }, 1015},
      {"temporary folder gone", [] { palvex::platform::ArmFault(FaultPoint::CreateUniqueTempFile, ErrorKind::NotFound); },
       1015},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.what);
    std::filesystem::create_directory(palvex::testing::AsPath(spill));
    {
      WritingDocument document(folder_, "out.mgjson", spill);
      Call(document.root, &IMgjsonRoot_v1::SetTimecodeInfo, 0u, 25u, 1u);
      const DynamicNode node = CreateDynamicData(document.root, PX_DYNAMIC_NUMBER, "N", "n");
      Call(document.root, &IMgjsonGroup_v1::AddDynamicChild, node.views().node);
      c.fault();
      std::uint32_t status = 0;
      std::uint64_t frame = 0;
      for (; status == 0 && frame < kLargeSetSamples; ++frame) {
        status = node.views().number->AddSampleAtFrame(frame, 1.0, nullptr);
      }
      palvex::platform::DisarmAllFaults();
      EXPECT_EQ(status, c.code);
      EXPECT_EQ(node.views().number->GetSampleCount(), frame - 1) << "every sample before the failed one is kept";
      EXPECT_EQ(document.Commit(), 0u);
    }
    std::filesystem::remove_all(palvex::testing::AsPath(spill));
    ExpectOnlyOutput(folder_);
  }
}

}  // namespace
}  // namespace PX_PLUGIN
