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
using palvex::testing::RaisesExactly;
using palvex::testing::ReadWholeFile;

class FileIoFaults : public palvex::testing::FaultSeamTest {
 protected:
  void SetUp() override {
    FaultSeamTest::SetUp();
    if (IsSkipped()) return;
    existing_ = folder_.WriteFile("existing.bin", "0123456789");
  }

  std::string existing_;
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

// Operations on paths, each with the failure it raises when the system call under it
// fails: none leaves a file behind or touches the existing one.
TEST_F(FileIoFaults, PathOperationsReportTheirFailures) {
  struct Case {
    FaultPoint point;
    ErrorKind error;
    std::function<void()> call;
    ExpectedFailure failure;
  };
  const std::string fresh = folder_.Path("new.bin");
  const std::string target = folder_.Path("target.bin");
  std::string temp;
  const auto create = [&] { File_IO::Create(fresh, false, false); };
  const auto rename = [&] { File_IO::Rename(existing_, target); };
  const auto tempFile = [&] { File_IO::GetTempFile(folder_.Path(""), temp); };
  const ExpectedFailure cannotCreate{7, "File_IO::Create, Cannot create file."};
  const ExpectedFailure renameFailure{22, "File_IO::Rename, Rename failure."};
  const ExpectedFailure noTempName{15, "File_IO::GetTempFile, Cannot find temp file name"};
  const Case cases[] = {
      {FaultPoint::OpenFile, ErrorKind::AccessDenied, [&] { File_IO::Open(existing_, true, false); },
       {13, "Open, file permission error"}},
      {FaultPoint::OpenFile, ErrorKind::NotFound, [&] { File_IO::Open(existing_, false, false); }, {6, "Open, failure."}},
      {FaultPoint::OpenFile, ErrorKind::Other, [&] { File_IO::Open(existing_, true, false); }, {6, "Open, failure."}},
      {FaultPoint::OpenFile, ErrorKind::AccessDenied, create, cannotCreate},
      {FaultPoint::OpenFile, ErrorKind::DiskFull, create, cannotCreate},
      {FaultPoint::DeleteFile, ErrorKind::AccessDenied, [&] { File_IO::Delete(existing_); },
       {9, "File_IO::Delete, Cannot delete file."}},
      {FaultPoint::MovePath, ErrorKind::AccessDenied, rename, renameFailure},
      {FaultPoint::MovePath, ErrorKind::AlreadyExists, rename, renameFailure},
      {FaultPoint::OpenFolderSearch, ErrorKind::AccessDenied, [&] { File_IO::OpenFolder(folder_.Path("")); },
       {16, "File_IO::OpenFolder, FindFirstFileW failure."}},
      {FaultPoint::TempDirectory, ErrorKind::NotFound, [&] { File_IO::GetTempFile("", temp); },
       {14, "File_IO::GetTempFile, Cannot find temp file directory"}},
      {FaultPoint::CreateUniqueTempFile, ErrorKind::NotFound, tempFile, noTempName},
      {FaultPoint::CreateUniqueTempFile, ErrorKind::DiskFull, tempFile, noTempName},
  };
  for (const Case &c : cases) {
    ScopedFault fault(c.point, c.error);
    EXPECT_TRUE(RaisesExactly(c.call, c.failure)) << c.failure.message;
  }
  EXPECT_TRUE(temp.empty());
  EXPECT_EQ(folder_.Entries(), std::set<std::string>{"existing.bin"});
  EXPECT_EQ(ReadWholeFile(existing_), "0123456789");
  // Gone between the existence check and the deletion: silent, as a missing file is.
  ScopedFault gone(FaultPoint::DeleteFile, ErrorKind::NotFound);
  File_IO::Delete(existing_);
}

// An injected failure to close or to step through a folder closes nothing: the real call
// still works afterwards.
TEST_F(FileIoFaults, ReleasesReportTheirFailures) {
  const File_IO::Handle file = File_IO::Open(existing_, true, false);
  {
    ScopedFault fault(FaultPoint::CloseFile, ErrorKind::Other);
    EXPECT_TRUE(RaisesExactly([&] { File_IO::Close(file); }, {8, "File_IO::Close, Cannot close file."}));
  }
  File_IO::Close(file);
  const File_IO::Handle search = File_IO::OpenFolder(folder_.Path(""));
  File_IO::FolderEntry entry;
  {
    ScopedFault fault(FaultPoint::NextFolderEntry, ErrorKind::Other);
    EXPECT_TRUE(RaisesExactly([&] { File_IO::NextFolderEntry(search, entry); },
                              {16, "File_IO::NextFolderEntry, FindNextFileW failure."}));
  }
  {
    ScopedFault fault(FaultPoint::CloseFolderSearch, ErrorKind::Other);
    EXPECT_TRUE(RaisesExactly([&] { File_IO::CloseFolder(search); }, {17, "File_IO::CloseFolder, FindClose failure."}));
  }
  File_IO::CloseFolder(search);
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
