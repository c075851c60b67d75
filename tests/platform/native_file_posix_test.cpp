// The POSIX backend's own choices: how system refusals become error kinds, folders
// refused as files, FIFOs that must not hang, moves that never replace, temp folders.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "platform/file_test_support.hpp"
#include "platform/native_file.hpp"

namespace palvex::platform {
namespace {

using palvex::testing::OpenDescriptorCount;
using palvex::testing::ScopedEnvironment;
using palvex::testing::ScratchFolder;

const OpenRequest kReadExisting{Access::Read, Share::ReadWrite, Disposition::OpenExisting,
                                AccessHint::SequentialScan};

TEST(NativeFilePosix, RefusalsBecomeErrorKinds) {
  ScratchFolder folder;
  const std::string file = folder.WriteFile("f.txt", "x");
  struct Case {
    const char *what;
    ErrorKind got;
    ErrorKind expected;
  };
  const Case cases[] = {
      {"open missing", OpenFile(folder.Path("missing"), kReadExisting).error, ErrorKind::NotFound},
      {"open below a file", OpenFile(file + "/x", kReadExisting).error, ErrorKind::NotFound},
      {"open folder for reading", OpenFile(folder.Path(""), kReadExisting).error, ErrorKind::AccessDenied},
      {"create over folder",
       OpenFile(folder.Path(""), {Access::ReadWrite, Share::None, Disposition::CreateAlways}).error,
       ErrorKind::AccessDenied},
      {"path too long", OpenFile(std::string(5000, 'a'), kReadExisting).error, ErrorKind::NameTooLong},
      {"name too long", QueryPathKind(folder.Path(std::string(300, 'n'))).error, ErrorKind::NameTooLong},
      {"delete folder", DeleteFile(folder.Path("")).error, ErrorKind::AccessDenied},
      {"move onto existing", MovePath(file, file).error, ErrorKind::AlreadyExists},
      {"move missing", MovePath(folder.Path("missing"), folder.Path("y")).error, ErrorKind::NotFound},
      {"temp file in missing folder", CreateUniqueTempFile(folder.Path("missing"), "PXT").error,
       ErrorKind::NotFound},
      {"unused handle", FileSize(987654).error, ErrorKind::Other},
      {"no handle", CloseFile(kNoHandle).error, ErrorKind::Other},
  };
  for (const Case &c : cases) EXPECT_EQ(c.got, c.expected) << c.what;
  EXPECT_EQ(LastError(), ErrorKind::Other);  // the last call's outcome
  EXPECT_TRUE(CheckPath(file).ok());
  EXPECT_EQ(LastError(), ErrorKind::None);
}

TEST(NativeFilePosix, FifosAreDevicesAndDoNotHang) {
  ScratchFolder folder;
  const std::string fifo = folder.Path("pipe");
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  EXPECT_EQ(QueryPathKind(fifo).value, PathKind::Device);
  const std::size_t descriptorsBefore = OpenDescriptorCount();
  const auto opened = OpenFile(fifo, kReadExisting);  // no writer: must return at once
  ASSERT_TRUE(opened.ok());
  char byte;
  EXPECT_EQ(ReadFile(opened.value, &byte, 1).value, 0u);
  EXPECT_TRUE(CloseFile(opened.value).ok());
  EXPECT_EQ(OpenDescriptorCount(), descriptorsBefore);
}

TEST(NativeFilePosix, MovesAcrossFileSystemsByCopying) {
  ScratchFolder folder;
  const std::string otherVolume = "/dev/shm";
  struct stat here, there;
  if (stat(folder.root().c_str(), &here) != 0 || stat(otherVolume.c_str(), &there) != 0 ||
      here.st_dev == there.st_dev || access(otherVolume.c_str(), W_OK) != 0) {
    GTEST_SKIP() << "no second writable file system at " << otherVolume;
  }
  const std::string source = folder.WriteFile("moving.bin", "payload");
  const std::string target = otherVolume + "/palvex-move-" + std::to_string(getpid());
  const std::string occupied = folder.WriteFile("occupied.bin", "keep");

  EXPECT_TRUE(MovePath(source, target).ok());
  EXPECT_EQ(palvex::testing::ReadWholeFile(target), "payload");
  EXPECT_EQ(folder.Entries(), std::set<std::string>{"occupied.bin"});

  // Back across, onto a name that is taken: refused, and both files stay as they were.
  EXPECT_EQ(MovePath(target, occupied).error, ErrorKind::AlreadyExists);
  EXPECT_EQ(palvex::testing::ReadWholeFile(occupied), "keep");
  EXPECT_EQ(palvex::testing::ReadWholeFile(target), "payload");
  unlink(target.c_str());
}

TEST(NativeFilePosix, TempDirectoryFollowsTmpdir) {
  struct Case {
    const char *tmpdir;
    const char *expected;
  };
  for (const Case &c : {Case{nullptr, "/tmp/"}, Case{"", "/tmp/"}, Case{"/var/tmp", "/var/tmp/"},
                        Case{"/somewhere/", "/somewhere/"}}) {
    ScopedEnvironment tmpdir("TMPDIR", c.tmpdir);
    EXPECT_EQ(TempDirectory().value, c.expected) << (c.tmpdir ? c.tmpdir : "(unset)");
  }
}

TEST(NativeFilePosix, TempFilesKeepTheUmaskMode) {
  ScratchFolder folder;
  const auto first = CreateUniqueTempFile(folder.Path(""), "PXT");
  ASSERT_TRUE(first.ok());
  struct stat info;
  ASSERT_EQ(stat(first.value.c_str(), &info), 0);
  const mode_t mask = umask(0);
  umask(mask);
  EXPECT_EQ(info.st_mode & 0777, 0666 & ~mask);
}

}  // namespace
}  // namespace palvex::platform
