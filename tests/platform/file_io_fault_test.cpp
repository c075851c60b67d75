// Failures of the system, injected through the fault seam: each raises its exact error
// and leaves no file and no descriptor behind.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "platform/file_io.hpp"
#include "platform/file_test_support.hpp"
#include "platform/native_file.hpp"

namespace ns_sensor {
namespace {

using palvex::platform::ErrorKind;
using palvex::platform::FaultPoint;
using palvex::platform::ScopedFault;
using palvex::testing::ExpectedFailure;
using palvex::testing::OpenDescriptorCount;
using palvex::testing::RaisesExactly;
using palvex::testing::ReadWholeFile;
using palvex::testing::ScratchFolder;

class FileIoFaults : public ::testing::Test {
 protected:
  void SetUp() override {
    PALVEX_SKIP_WITHOUT_FAULT_SEAM();
    existing_ = folder_.WriteFile("existing.bin", "0123456789");
    descriptorsBefore_ = OpenDescriptorCount();
  }
  void TearDown() override {
    if (palvex::platform::FaultInjectionAvailable()) {
      EXPECT_EQ(OpenDescriptorCount(), descriptorsBefore_);
    }
  }

  ScratchFolder folder_;
  std::string existing_;
  std::size_t descriptorsBefore_ = 0;
};

// Operations on an open handle, each with the failure it raises when the system call
// under it fails.
TEST_F(FileIoFaults, HandleOperationsReportTheirFailures) {
  struct Case {
    FaultPoint point;
    ErrorKind error;
    std::function<void(File_IO::Handle)> call;
    ExpectedFailure failure;
  };
  char buffer[4] = {};
  const Case cases[] = {
      {FaultPoint::WriteFile, ErrorKind::DiskFull, [&](File_IO::Handle f) { File_IO::Write(f, "abc", 3); },
       {34, "File_IO::Write, Disk Full."}},
      {FaultPoint::WriteFile, ErrorKind::Other, [&](File_IO::Handle f) { File_IO::Write(f, "abc", 3); },
       {55, "File_IO::Write,WriteFile failure."}},
      {FaultPoint::WriteFile, ErrorKind::AccessDenied, [&](File_IO::Handle f) { File_IO::Write(f, "abc", 3); },
       {55, "File_IO::Write,WriteFile failure."}},
      {FaultPoint::ReadFile, ErrorKind::Other, [&](File_IO::Handle f) { File_IO::Read(f, buffer, 4); },
       {11, "File_IO::Read, ReadFile failure."}},
      {FaultPoint::SeekFile, ErrorKind::Other, [&](File_IO::Handle f) { File_IO::Seek(f, 1, 0); },
       {10, "File_IO::Seek, SetFilePointerEx failure."}},
      {FaultPoint::SeekFile, ErrorKind::Other, [&](File_IO::Handle f) { File_IO::SetEOF(f, 1); },
       {10, "File_IO::SetEOF, SetFilePointerEx failure."}},
      {FaultPoint::SetEndOfFile, ErrorKind::DiskFull, [&](File_IO::Handle f) { File_IO::SetEOF(f, 1); },
       {10, "File_IO::SetEOF, SetEndOfFile failure."}},
      {FaultPoint::FileSize, ErrorKind::Other, [&](File_IO::Handle f) { File_IO::Length(f); },
       {11, "File_IO::Length, failure."}},
  };
  for (const Case &c : cases) {
    const File_IO::Handle file = File_IO::Open(existing_, false, false);
    {
      ScopedFault fault(c.point, c.error);
      EXPECT_TRUE(RaisesExactly([&] { c.call(file); }, c.failure)) << c.failure.message;
    }
    File_IO::Close(file);
    EXPECT_EQ(ReadWholeFile(existing_), "0123456789") << c.failure.message;
  }
}

TEST_F(FileIoFaults, UncheckedWriteReportsFailureWithoutRaising) {
  const File_IO::Handle file = File_IO::Open(existing_, false, false);
  {
    ScopedFault fault(FaultPoint::WriteFile, ErrorKind::DiskFull);
    EXPECT_FALSE(File_IO::WriteUnchecked(file, "abc", 3));
  }
  EXPECT_TRUE(File_IO::WriteUnchecked(file, "abc", 3));
  File_IO::Close(file);
}

TEST_F(FileIoFaults, RefusedOpensRaisePermissionOrFailure) {
  struct Case {
    ErrorKind error;
    ExpectedFailure failure;
  };
  const Case cases[] = {{ErrorKind::AccessDenied, {13, "Open, file permission error"}},
                        {ErrorKind::NotFound, {6, "Open, failure."}},
                        {ErrorKind::Other, {6, "Open, failure."}}};
  for (const Case &c : cases) {
    for (const bool readOnly : {true, false}) {
      ScopedFault fault(FaultPoint::OpenFile, c.error);
      EXPECT_TRUE(RaisesExactly([&] { File_IO::Open(existing_, readOnly, false); }, c.failure));
    }
  }
}

TEST_F(FileIoFaults, RefusedCreateLeavesNothing) {
  for (const ErrorKind error : {ErrorKind::AccessDenied, ErrorKind::DiskFull}) {
    ScopedFault fault(FaultPoint::OpenFile, error);
    EXPECT_TRUE(RaisesExactly([&] { File_IO::Create(folder_.Path("new.bin"), false, false); },
                              {7, "File_IO::Create, Cannot create file."}));
  }
  EXPECT_EQ(folder_.Entries(), std::set<std::string>{"existing.bin"});
}

TEST_F(FileIoFaults, RefusedCloseRaises) {
  const File_IO::Handle file = File_IO::Open(existing_, true, false);
  {
    ScopedFault fault(FaultPoint::CloseFile, ErrorKind::Other);
    EXPECT_TRUE(RaisesExactly([&] { File_IO::Close(file); }, {8, "File_IO::Close, Cannot close file."}));
  }
  File_IO::Close(file);  // the injected failure closed nothing
}

TEST_F(FileIoFaults, DeleteIgnoresOnlyMissingFiles) {
  {
    ScopedFault fault(FaultPoint::DeleteFile, ErrorKind::AccessDenied);
    EXPECT_TRUE(RaisesExactly([&] { File_IO::Delete(existing_); }, {9, "File_IO::Delete, Cannot delete file."}));
  }
  EXPECT_EQ(File_IO::GetFileMode(existing_), File_IO::kFile);
  {
    // Gone between the existence check and the deletion: still silent.
    ScopedFault fault(FaultPoint::DeleteFile, ErrorKind::NotFound);
    File_IO::Delete(existing_);
  }
}

TEST_F(FileIoFaults, RefusedRenameLeavesBothNames) {
  const std::string target = folder_.Path("target.bin");
  for (const ErrorKind error : {ErrorKind::AccessDenied, ErrorKind::Other, ErrorKind::AlreadyExists}) {
    ScopedFault fault(FaultPoint::MovePath, error);
    EXPECT_TRUE(RaisesExactly([&] { File_IO::Rename(existing_, target); }, {22, "File_IO::Rename, Rename failure."}));
  }
  EXPECT_EQ(folder_.Entries(), std::set<std::string>{"existing.bin"});
}

TEST_F(FileIoFaults, FolderSearchFailures) {
  {
    ScopedFault fault(FaultPoint::OpenFolderSearch, ErrorKind::AccessDenied);
    EXPECT_TRUE(RaisesExactly([&] { File_IO::OpenFolder(folder_.Path("")); },
                              {16, "File_IO::OpenFolder, FindFirstFileW failure."}));
  }
  const File_IO::Handle search = File_IO::OpenFolder(folder_.Path(""));
  File_IO::FolderEntry entry;
  {
    ScopedFault fault(FaultPoint::NextFolderEntry, ErrorKind::Other);
    EXPECT_TRUE(RaisesExactly([&] { File_IO::NextFolderEntry(search, entry); },
                              {16, "File_IO::NextFolderEntry, FindNextFileW failure."}));
  }
  {
    ScopedFault fault(FaultPoint::CloseFolderSearch, ErrorKind::Other);
    EXPECT_TRUE(RaisesExactly([&] { File_IO::CloseFolder(search); },
                              {17, "File_IO::CloseFolder, FindClose failure."}));
  }
  File_IO::CloseFolder(search);
}

TEST_F(FileIoFaults, VanishedTemporaryFolderLeavesNothing) {
  std::string path;
  {
    ScopedFault fault(FaultPoint::TempDirectory, ErrorKind::NotFound);
    EXPECT_TRUE(RaisesExactly([&] { File_IO::GetTempFile("", path); },
                              {14, "File_IO::GetTempFile, Cannot find temp file directory"}));
  }
  for (const ErrorKind error : {ErrorKind::NotFound, ErrorKind::DiskFull, ErrorKind::AccessDenied}) {
    ScopedFault fault(FaultPoint::CreateUniqueTempFile, error);
    EXPECT_TRUE(RaisesExactly([&] { File_IO::GetTempFile(folder_.Path(""), path); },
                              {15, "File_IO::GetTempFile, Cannot find temp file name"}));
  }
  EXPECT_TRUE(path.empty());
  EXPECT_EQ(folder_.Entries(), std::set<std::string>{"existing.bin"});
}

TEST_F(FileIoFaults, ArmedFaultsFireOnlyWhereAndWhenAsked) {
  // Two calls pass, the next two fail, then calls pass again.
  ScopedFault fault(FaultPoint::QueryPathKind, ErrorKind::Other, 2, 2);
  const File_IO::FileMode expected[] = {File_IO::kFile, File_IO::kFile, File_IO::kNotExisting,
                                        File_IO::kNotExisting, File_IO::kFile};
  for (const File_IO::FileMode mode : expected) EXPECT_EQ(File_IO::GetFileMode(existing_), mode);
  EXPECT_EQ(palvex::platform::FaultsTriggered(FaultPoint::QueryPathKind), 2u);
  EXPECT_EQ(palvex::platform::FaultsTriggered(FaultPoint::OpenFile), 0u);
  EXPECT_EQ(palvex::platform::LastError(), ErrorKind::None);
}

}  // namespace
}  // namespace ns_sensor
