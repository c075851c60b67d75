// The sample store: the in-memory bound and the spill to a temporary file, the order of
// reading back, what it refuses, and that nothing stays behind (checked after every test).
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "platform/file_test_support.hpp"
#include "plugin_model/sample_store_test_support.hpp"

namespace PX_PLUGIN {
namespace {

using testing::PluginCodeOf;
using testing::ReadAll;
using testing::Sample;
using testing::TimeOf;
using testing::ValueOf;

constexpr std::size_t kRecordOverhead = testing::kTimeLength + kRecordLengthBytes;

// Samples whose records fill exactly `bytes` bytes: records of about 1 KB, the last one
// sized to land on the total.
std::vector<Sample> SamplesFilling(std::size_t bytes) {
  constexpr std::size_t kValueLength = 1000;
  std::vector<Sample> samples;
  std::size_t filled = 0;
  std::uint32_t n = 0;
  while (bytes - filled > 2 * (kRecordOverhead + kValueLength)) {
    samples.emplace_back(TimeOf(n), ValueOf(n, kValueLength));
    filled += kRecordOverhead + kValueLength;
    ++n;
  }
  samples.emplace_back(TimeOf(n), ValueOf(n, bytes - filled - kRecordOverhead));
  return samples;
}

class SampleStoreTest : public palvex::testing::FolderTest {
 protected:
  void TearDown() override {
    FolderTest::TearDown();
    EXPECT_TRUE(folder_.Entries().empty()) << "a spill file stayed behind";
  }
};

TEST_F(SampleStoreTest, SpillsOnlyWhenARecordWouldPassTheBound) {
  struct Case {
    std::size_t filledBytes;
    bool spills;
  };
  const Case cases[] = {{kSampleBufferBound, false}, {kSampleBufferBound + 1, true}};
  for (const Case &c : cases) {
    SampleStore store(folder_.Path(""));
    const std::vector<Sample> samples = SamplesFilling(c.filledBytes);
    testing::AddAll(store, samples);
    EXPECT_EQ(store.ByteSize(), c.filledBytes);
    EXPECT_EQ(!store.SpillPath().empty(), c.spills) << c.filledBytes;
    EXPECT_EQ(folder_.Entries().size(), c.spills ? 1u : 0u) << c.filledBytes;
    if (c.spills) {
      // Everything before the last record went out; the last record alone is in memory.
      const Sample &last = samples.back();
      EXPECT_EQ(store.BufferedBytes(), RecordSize(last.first, last.second));
      EXPECT_EQ(std::filesystem::file_size(palvex::testing::AsPath(store.SpillPath())),
                c.filledBytes - store.BufferedBytes());
    }
    EXPECT_EQ(ReadAll(store), samples) << c.filledBytes;
  }
}

TEST_F(SampleStoreTest, ReadsBackInTheOrderOfAddingAcrossManySpills) {
  SampleStore store(folder_.Path(""));
  std::vector<Sample> samples;
  std::size_t largestCapacity = 0;
  for (std::uint32_t n = 0; n < 60000; ++n) {
    samples.emplace_back(TimeOf(n), ValueOf(n, n % 97));
    store.Add(samples.back().first, samples.back().second);
    largestCapacity = std::max(largestCapacity, store.BufferCapacity());
  }
  ASSERT_GT(store.ByteSize(), 3 * kSampleBufferBound);
  EXPECT_LE(largestCapacity, kSampleBufferBound) << "memory stays within the bound whatever the count";
  EXPECT_EQ(store.SpillPath().rfind(folder_.Path("PXT"), 0), 0u) << store.SpillPath();
  EXPECT_EQ(store.Count(), samples.size());
  EXPECT_EQ(ReadAll(store), samples);
  // Exhausted: empty texts and no further sample.
  std::string_view time = "x", value = "x";
  EXPECT_FALSE(store.Next(time, value));
  EXPECT_TRUE(time.empty() && value.empty());
}

TEST_F(SampleStoreTest, FewSamplesTakeLittleMemoryAndNoFile) {
  SampleStore store(folder_.Path(""));
  store.Add(TimeOf(1), "1.5");
  EXPECT_LT(store.BufferCapacity(), kSampleBufferBound / 16);
  EXPECT_TRUE(store.SpillPath().empty());
}

TEST_F(SampleStoreTest, EmptyTextsAndEmptyStoresReadBack) {
  SampleStore store(folder_.Path(""));
  std::string_view time, value;
  EXPECT_FALSE(store.Next(time, value));

  SampleStore untimed(folder_.Path(""));
  untimed.Add("", "");
  untimed.Add("", "v");
  EXPECT_EQ(ReadAll(untimed), (std::vector<Sample>{{"", ""}, {"", "v"}}));
}

TEST_F(SampleStoreTest, RefusesWhatARecordCannotHold) {
  SampleStore store(folder_.Path(""));
  store.Add(TimeOf(0), "0");
  const std::string largest(kLargestSampleValueText, '7');
  struct Case {
    const char *what;
    std::string time;
    std::string value;
    std::uint32_t code;
  };
  const Case cases[] = {
      {"time of another length", "00:00:00:001", "1", 2030},
      {"value too long for its length field", TimeOf(1), largest + "7", 2029},
  };
  for (const Case &c : cases) EXPECT_EQ(PluginCodeOf([&] { store.Add(c.time, c.value); }), c.code) << c.what;
  store.Add(TimeOf(2), largest);
  EXPECT_EQ(ReadAll(store), (std::vector<Sample>{{TimeOf(0), "0"}, {TimeOf(2), largest}}));
  // Once reading has begun, the set is closed.
  EXPECT_EQ(PluginCodeOf([&] { store.Add(TimeOf(3), "3"); }), 2031u);
}

TEST_F(SampleStoreTest, ClearDeletesTheSpillFileAndLeavesAUsableStore) {
  SampleStore store(folder_.Path(""));
  testing::AddAll(store, SamplesFilling(3 * kSampleBufferBound));
  std::string_view time, value;
  ASSERT_TRUE(store.Next(time, value));  // the spill file is mapped now
  ASSERT_EQ(folder_.Entries().size(), 1u);
  store.Clear();
  EXPECT_TRUE(folder_.Entries().empty());
  EXPECT_EQ(store.Count(), 0u);
  EXPECT_EQ(store.BufferCapacity(), 0u);
  store.Add("00:00:00:00:00", "again");  // a new set may have times of another length
  EXPECT_EQ(ReadAll(store), (std::vector<Sample>{{"00:00:00:00:00", "again"}}));
}

TEST_F(SampleStoreTest, ASpillFileThatLostRecordsIsReportedNotMisread) {
  SampleStore store(folder_.Path(""));
  testing::AddAll(store, SamplesFilling(2 * kSampleBufferBound));
  const auto spilled = palvex::testing::AsPath(store.SpillPath());
  std::filesystem::resize_file(spilled, std::filesystem::file_size(spilled) - 1);
  std::string_view time, value;
  EXPECT_EQ(PluginCodeOf([&] { store.Next(time, value); }), 2014u);
}

TEST_F(SampleStoreTest, SpillsIntoTheSystemTemporaryFolderByDefault) {
  palvex::testing::ScopedEnvironment temp(palvex::testing::kTempFolderVariable, folder_.Path("").c_str());
  auto store = MakeSampleStore();
  testing::AddAll(*store, SamplesFilling(2 * kSampleBufferBound));
  ASSERT_EQ(folder_.Entries().size(), 1u);
  EXPECT_EQ(folder_.Entries().begin()->rfind("PXT", 0), 0u);
  store.reset();
}

}  // namespace
}  // namespace PX_PLUGIN
