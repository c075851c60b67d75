// Failures under the stream, injected through the fault seam: a copy that fails leaves
// no half-copied file (an existing destination is left empty, a new one is removed), a
// failing read or rewind raises the file layer's error, and no descriptor stays open.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "api/client_table.hpp"
#include "file_access/file_mapper.hpp"
#include "platform/file_test_support.hpp"
#include "plugin_model/mgjson_stream.hpp"
#include "support/test_host.hpp"

namespace ns_sensor {
namespace {

using palvex::platform::ErrorKind;
using palvex::platform::FaultPoint;
using palvex::platform::ScopedFault;
using palvex::testing::ExpectedFailure;
using palvex::testing::RaisesExactly;
using palvex::testing::ReadWholeFile;

class MgjsonStreamFaults : public palvex::testing::FaultSeamTest {
 protected:
  void SetUp() override {
    FaultSeamTest::SetUp();
    if (IsSkipped()) return;
    SetClientTableOnce(palvex::testing::TestCallbacks());
    ASSERT_EQ(ClientTable(), palvex::testing::TestCallbacks()) << "another table was stored first";
    // Larger than one copy chunk, so a copy fails after part of it went out.
    contents_.assign(0x100000 + 1000, 'm');
    stream_ = std::make_unique<MgjsonStreamImpl>(folder_.WriteFile("produced.mgjson", contents_));
  }
  void TearDown() override {
    stream_.reset();
    FaultSeamTest::TearDown();
  }

  std::string contents_;
  std::unique_ptr<MgjsonStreamImpl> stream_;
};

TEST_F(MgjsonStreamFaults, AFailedCopyLeavesNoPartialFile) {
  struct Case {
    const char *what;
    FaultPoint point;
    ErrorKind error;
    std::uint32_t skip;
    ExpectedFailure failure;
  };
  const Case cases[] = {
      {"disk full after the first chunk", FaultPoint::WriteFile, ErrorKind::DiskFull, 1,
       {34, "File_IO::Write, Disk Full."}},
      {"disk full at once", FaultPoint::WriteFile, ErrorKind::DiskFull, 0, {34, "File_IO::Write, Disk Full."}},
      {"source unreadable", FaultPoint::ReadFile, ErrorKind::Other, 1, {11, "File_IO::Read, ReadFile failure."}},
  };
  for (const Case &c : cases) {
    const std::string existing = folder_.WriteFile("existing.mgjson", "old contents");
    const std::string fresh = folder_.Path("fresh.mgjson");
    for (const std::string &destination : {existing, fresh}) {
      {
        ScopedFault fault(c.point, c.error, 1, c.skip);
        EXPECT_TRUE(RaisesExactly([&] { stream_->SaveCopy(destination.c_str()); }, c.failure)) << c.what;
      }
      const bool existed = destination == existing;
      EXPECT_EQ(FileMapper::FileExists(destination), existed) << c.what << ' ' << destination;
      if (existed) {
        EXPECT_EQ(ReadWholeFile(destination), "") << c.what;
      }
    }
  }
  // The stream itself is untouched.
  EXPECT_EQ(stream_->GetRemainingSize(), contents_.size());
}

TEST_F(MgjsonStreamFaults, ReadAndRewindRaiseTheFileLayerErrors) {
  uint8_t buffer[16];
  uint32_t size = sizeof buffer;
  {
    ScopedFault fault(FaultPoint::ReadFile, ErrorKind::Other);
    EXPECT_TRUE(RaisesExactly([&] { stream_->Read(buffer, &size); }, {11, "File_IO::Read, ReadFile failure."}));
  }
  EXPECT_EQ(stream_->GetRemainingSize(), contents_.size());
  {
    ScopedFault fault(FaultPoint::SeekFile, ErrorKind::Other);
    EXPECT_TRUE(RaisesExactly([&] { stream_->Rewind(); }, {10, "File_IO::Seek, SetFilePointerEx failure."}));
  }
  // The client form reports and returns -1.
  palvex::host::ErrorLog log;
  IMgjsonStream &client = *stream_;
  {
    ScopedFault fault(FaultPoint::SeekFile, ErrorKind::Other);
    EXPECT_EQ(client.Rewind(&log), -1);
  }
  ASSERT_EQ(log.errors.size(), 1u);
  EXPECT_EQ(log.errors[0].code, 10u);
  EXPECT_EQ(log.errors[0].message, "File_IO::Seek, SetFilePointerEx failure.");
  EXPECT_EQ(stream_->Read(buffer, &size), sizeof buffer);
}

TEST_F(MgjsonStreamFaults, AFileWhoseSizeCannotBeReadMakesNoStream) {
  const std::string path = folder_.WriteFile("other.mgjson", "{}");
  ScopedFault fault(FaultPoint::FileSize, ErrorKind::Other);
  EXPECT_TRUE(RaisesExactly([&] { MgjsonStreamImpl stream(path); }, {11, "File_IO::Length, failure."}));
}

}  // namespace
}  // namespace ns_sensor
