// The stream of a produced MGJSON file: reading with its zero fill and remaining count,
// rewinding, the path, copies, and the client forms that report instead of raising.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "api/client_table.hpp"
#include "api/px_text.hpp"
#include "platform/file_test_support.hpp"
#include "plugin_model/mgjson_stream.hpp"
#include "support/test_host.hpp"

namespace ns_sensor {
namespace {

using palvex::testing::ExpectedFailure;
using palvex::testing::RaisesExactly;
using palvex::testing::ReadWholeFile;

constexpr std::string_view kContents = R"({"version":"mgjson2.0.0"})";

class MgjsonStreamTest : public palvex::testing::FolderTest {
 protected:
  void SetUp() override {
    FolderTest::SetUp();
    SetClientTableOnce(palvex::testing::TestCallbacks());
    ASSERT_EQ(ClientTable(), palvex::testing::TestCallbacks()) << "another table was stored first";
    path_ = folder_.WriteFile("produced.mgjson", kContents);
    stream_ = std::make_unique<MgjsonStreamImpl>(path_);
  }
  void TearDown() override {
    stream_.reset();
    FolderTest::TearDown();
  }

  // Reads with a buffer of `size` bytes prefilled with 0x55.
  std::string ReadChunk(uint32_t size, uint32_t &count) {
    std::vector<uint8_t> buffer(size, 0x55);
    count = stream_->Read(buffer.data(), &size);
    for (std::size_t i = count; i < buffer.size(); ++i) EXPECT_EQ(buffer[i], 0) << "byte " << i << " not zeroed";
    return std::string(buffer.begin(), buffer.begin() + count);
  }

  std::string path_;
  std::unique_ptr<MgjsonStreamImpl> stream_;
};

TEST_F(MgjsonStreamTest, ReadsInPiecesUntilNothingRemains) {
  EXPECT_EQ(stream_->GetTotalSize(), kContents.size());
  EXPECT_EQ(stream_->GetRemainingSize(), kContents.size());
  uint32_t count = 0;
  std::string read = ReadChunk(10, count);
  EXPECT_EQ(count, 10u);
  EXPECT_EQ(stream_->GetRemainingSize(), kContents.size() - 10);
  // A larger buffer than what remains: only the rest, the whole buffer zero-filled.
  read += ReadChunk(100, count);
  EXPECT_EQ(count, kContents.size() - 10);
  EXPECT_EQ(read, kContents);
  EXPECT_EQ(stream_->GetRemainingSize(), 0u);
  ReadChunk(8, count);
  EXPECT_EQ(count, 0u);
  EXPECT_EQ(stream_->GetTotalSize(), kContents.size());
}

TEST_F(MgjsonStreamTest, RewindKeepsTheRemainingCount) {
  uint32_t count = 0;
  ReadChunk(4, count);
  EXPECT_EQ(stream_->Rewind(), 0);
  EXPECT_EQ(stream_->GetRemainingSize(), kContents.size() - 4);
  // From the start again, but no further than the count that remained.
  EXPECT_EQ(ReadChunk(100, count), kContents.substr(0, kContents.size() - 4));
  EXPECT_EQ(stream_->Rewind(), 0);
  ReadChunk(100, count);
  EXPECT_EQ(count, 0u);
}

TEST_F(MgjsonStreamTest, PathIsAppendedAndMissingArgumentsAreRefusedByName) {
  uint8_t buffer[4];
  uint32_t size = 4;
  const ExpectedFailure stream{1, "Invalid pointer to \"GetMGJSONStream\"."};
  EXPECT_TRUE(RaisesExactly([&] { stream_->Read(nullptr, &size); }, stream));
  EXPECT_TRUE(RaisesExactly([&] { stream_->Read(buffer, nullptr); }, stream));
  EXPECT_TRUE(RaisesExactly([&] { stream_->SaveCopy(nullptr); }, stream));
  EXPECT_TRUE(RaisesExactly([&] { stream_->GetPath(nullptr); }, {1, "Invalid pointer to \"PX_Text\"."}));
  EXPECT_EQ(stream_->GetRemainingSize(), kContents.size());
  PX_Text text{"path: "};
  stream_->GetPath(&text);
  EXPECT_EQ(text.text, "path: " + path_) << "the path is appended";
}

TEST_F(MgjsonStreamTest, SaveCopyWritesTheWholeFileWhateverWasRead) {
  uint32_t count = 0;
  ReadChunk(5, count);
  const std::string fresh = folder_.Path("fresh.mgjson");
  const std::string replaced = folder_.WriteFile("replaced.mgjson", std::string(500, 'z'));
  for (const std::string &destination : {fresh, replaced}) {
    stream_->SaveCopy(destination.c_str());
    EXPECT_EQ(ReadWholeFile(destination), kContents) << destination;
  }
  // The host's position is its own.
  EXPECT_EQ(ReadChunk(100, count), kContents.substr(5));
  // A copy onto the produced file itself leaves it as it is.
  stream_->SaveCopy(path_.c_str());
  EXPECT_EQ(ReadWholeFile(path_), kContents);
}

TEST_F(MgjsonStreamTest, SaveCopyOfALargeFileIsExact) {
  std::string large(3 * 0x100000 + 17, ' ');
  for (std::size_t i = 0; i < large.size(); ++i) large[i] = static_cast<char>('a' + i % 26);
  stream_ = std::make_unique<MgjsonStreamImpl>(folder_.WriteFile("large.mgjson", large));
  const std::string destination = folder_.Path("copy.mgjson");
  stream_->SaveCopy(destination.c_str());
  EXPECT_EQ(ReadWholeFile(destination), large);
}

TEST_F(MgjsonStreamTest, AMissingFileMakesNoStream) {
  EXPECT_TRUE(RaisesExactly([&] { MgjsonStreamImpl(folder_.Path("absent.mgjson")); },
                            {6, "Open, failure."}));
}

// The client forms deliver through the callback table and report every failure through
// entry 11 instead of raising.
TEST_F(MgjsonStreamTest, ClientFormsReportInsteadOfRaising) {
  IMgjsonStream &client = *stream_;
  palvex::host::ErrorLog log;
  PX_HostString path;
  client.GetPath(&path, &log);
  EXPECT_EQ(path.text, path_);
  std::vector<uint8_t> buffer(100, 0x55);
  uint32_t size = 100;
  EXPECT_EQ(client.Read(buffer.data(), &size, &log), kContents.size());
  EXPECT_EQ(client.Rewind(&log), 0);
  const std::string copy = folder_.Path("copy.mgjson");
  client.SaveCopy(copy.c_str(), &log);
  EXPECT_EQ(ReadWholeFile(copy), kContents);
  EXPECT_TRUE(log.empty());

  EXPECT_EQ(client.Read(nullptr, &size, &log), 0u);
  client.GetPath(nullptr, &log);
  client.SaveCopy(folder_.Path("no/such/folder/copy.mgjson").c_str(), &log);
  std::vector<std::string> reported;
  for (const auto &error : log.errors) {
    reported.push_back(std::to_string(error.code) + " " + error.message + " " + std::to_string(error.detail1) + " " +
                       std::to_string(error.detail2));
  }
  EXPECT_EQ(reported, (std::vector<std::string>{"1 Invalid pointer to \"GetMGJSONStream\". -1 -1",
                                                "1 Invalid pointer to \"PX_HostString\". -1 -1",
                                                "7 File_IO::Create, Cannot create file. -1 -1"}));
}

}  // namespace
}  // namespace ns_sensor
