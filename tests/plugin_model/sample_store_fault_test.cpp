// Failures of the file system under the sample store, injected through the fault seam:
// each reaches the caller as its converted code (library code + 1000), leaves the store
// consistent, and leaves no file and no descriptor behind once the store is gone.
#include <gtest/gtest.h>

#include "platform/file_test_support.hpp"
#include "plugin_model/sample_store_test_support.hpp"

namespace PX_PLUGIN {
namespace {

using palvex::platform::ErrorKind;
using palvex::platform::FaultPoint;
using palvex::platform::ScopedFault;
using palvex::testing::ScratchFolder;
using testing::PluginCodeOf;
using testing::ReadAll;
using testing::Sample;
using testing::TimeOf;
using testing::ValueOf;

// Enough samples of 1 KB to spill `spills` times, and one more sample.
std::vector<Sample> SamplesSpilling(int spills) {
  std::vector<Sample> samples;
  const std::size_t count = spills * kSampleBufferBound / 1000 + 1;
  for (std::uint32_t n = 0; n < count; ++n) samples.emplace_back(TimeOf(n), ValueOf(n, 987));
  return samples;
}

// Adds samples until one fails; returns its code and the samples that went in.
std::uint32_t AddUntilFailure(SampleStore &store, const std::vector<Sample> &samples,
                              std::vector<Sample> &accepted) {
  for (const Sample &sample : samples) {
    const std::uint32_t code = PluginCodeOf([&] { store.Add(sample.first, sample.second); });
    if (code != 0) return code;
    accepted.push_back(sample);
  }
  return 0;
}

class SampleStoreFaults : public palvex::testing::FaultSeamTest {
 protected:
  void TearDown() override {
    FaultSeamTest::TearDown();
    if (IsSkipped()) return;
    EXPECT_TRUE(folder_.Entries().empty()) << "a spill file stayed behind";
  }
};

// A spill that fails leaves the store as it was before the sample that caused it: the
// samples accepted so far read back, and adding goes on once the fault has passed.
TEST_F(SampleStoreFaults, AFailedSpillLeavesTheStoreAsBeforeTheSample) {
  struct Case {
    const char *what;
    FaultPoint point;
    ErrorKind error;
    std::uint32_t skip;  // calls at the point that pass first
    std::uint32_t code;
  };
  const Case cases[] = {
      {"disk full at the first spill", FaultPoint::WriteFile, ErrorKind::DiskFull, 0, 1034},
      {"disk full at the third spill", FaultPoint::WriteFile, ErrorKind::DiskFull, 2, 1034},
      {"write failure at the second spill", FaultPoint::WriteFile, ErrorKind::Other, 1, 1055},
      {"spill file refused at the first spill", FaultPoint::OpenFile, ErrorKind::AccessDenied, 0, 1013},
      {"no temporary file name", FaultPoint::CreateUniqueTempFile, ErrorKind::Other, 0, 1015},
  };
  for (const Case &c : cases) {
    SampleStore store(folder_.Path(""));
    const std::vector<Sample> samples = SamplesSpilling(4);
    std::vector<Sample> accepted;
    {
      ScopedFault fault(c.point, c.error, 1, c.skip);
      EXPECT_EQ(AddUntilFailure(store, samples, accepted), c.code) << c.what;
    }
    EXPECT_LE(folder_.Entries().size(), 1u) << c.what;
    if (c.skip == 0) {
      EXPECT_TRUE(folder_.Entries().empty()) << c.what << ": a file that holds nothing";
    }
    // The failed sample was not kept; the next ones are.
    for (std::size_t n = accepted.size() + 1; n < samples.size(); ++n) {
      store.Add(samples[n].first, samples[n].second);
      accepted.push_back(samples[n]);
    }
    EXPECT_EQ(ReadAll(store), accepted) << c.what;
  }
}

TEST_F(SampleStoreFaults, AVanishedTemporaryFolderFailsTheSpill) {
  struct Case {
    const char *what;
    std::function<std::string()> directory;
    std::uint32_t code;
  };
  const ScratchFolder gone;
  const std::string goneFolder = gone.Path("removed");
  const Case cases[] = {
      {"given folder removed", [&] { return goneFolder; }, 1015},
      {"system folder cannot be found", [] {
         palvex::platform::ArmFault(FaultPoint::TempDirectory, ErrorKind::NotFound);
         return std::string();
       }, 1014},
  };
  for (const Case &c : cases) {
    SampleStore store(c.directory());
    std::vector<Sample> accepted;
    EXPECT_EQ(AddUntilFailure(store, SamplesSpilling(1), accepted), c.code) << c.what;
    palvex::platform::DisarmAllFaults();
    EXPECT_EQ(ReadAll(store), accepted) << c.what;
  }
}

TEST_F(SampleStoreFaults, AFailingReadBackIsReportedAndCleanedUp) {
  struct Case {
    const char *what;
    FaultPoint point;
    std::uint32_t code;
  };
  const Case cases[] = {
      {"mapping refused", FaultPoint::MapWholeFile, 1021},
      {"spill file cannot be opened", FaultPoint::OpenFile, 1006},
      {"spill file size unreadable", FaultPoint::FileSize, 1005},
  };
  for (const Case &c : cases) {
    SampleStore store(folder_.Path(""));
    testing::AddAll(store, SamplesSpilling(2));
    std::string_view time, value;
    {
      ScopedFault fault(c.point, ErrorKind::Other);
      EXPECT_EQ(PluginCodeOf([&] { store.Next(time, value); }), c.code) << c.what;
    }
    store.Clear();
    EXPECT_TRUE(folder_.Entries().empty()) << c.what;
  }
}

// When the spill file cannot even be cut back to its last complete record, nothing in it
// can be trusted: the store lets everything go and refuses further use until cleared.
TEST_F(SampleStoreFaults, ASpillFileThatCannotBeCutBackBreaksTheStore) {
  SampleStore store(folder_.Path(""));
  const std::vector<Sample> samples = SamplesSpilling(3);
  std::vector<Sample> accepted;
  {
    ScopedFault diskFull(FaultPoint::WriteFile, ErrorKind::DiskFull, 1, 1);
    palvex::platform::ArmFault(FaultPoint::SetEndOfFile, ErrorKind::Other);
    EXPECT_EQ(AddUntilFailure(store, samples, accepted), 1034u);
  }
  EXPECT_TRUE(folder_.Entries().empty());
  std::string_view time, value;
  EXPECT_EQ(PluginCodeOf([&] { store.Next(time, value); }), 2014u);
  EXPECT_EQ(PluginCodeOf([&] { store.Add(TimeOf(0), "0"); }), 2014u);
  store.Clear();
  store.Add(TimeOf(0), "0");
  EXPECT_EQ(ReadAll(store), (std::vector<Sample>{{TimeOf(0), "0"}}));
}

}  // namespace
}  // namespace PX_PLUGIN
