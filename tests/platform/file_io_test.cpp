// The handle operations of the file layer: create, open, read, write, seek, size, close.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "platform/file_io.hpp"
#include "platform/file_test_support.hpp"

namespace ns_sensor {
namespace {

using palvex::testing::ExpectedFailure;
using palvex::testing::OpenDescriptorCount;
using palvex::testing::RaisesExactly;
using palvex::testing::ReadWholeFile;
using palvex::testing::ScratchFolder;

// A handle number no descriptor of the test has.
constexpr File_IO::Handle kUnusedHandle = 987654;

TEST(FileIoCreate, CreatesReplacesOrLeavesAlone) {
  ScratchFolder folder;
  const std::string fresh = folder.Path("fresh.mgjson");
  EXPECT_TRUE(File_IO::Create(fresh, false, false));
  EXPECT_EQ(File_IO::GetFileMode(fresh), File_IO::kFile);
  EXPECT_EQ(ReadWholeFile(fresh), "");

  // Without overwrite an existing file is left untouched.
  const std::string existing = folder.WriteFile("existing.mgjson", "keep me");
  EXPECT_FALSE(File_IO::Create(existing, false, false));
  EXPECT_EQ(ReadWholeFile(existing), "keep me");

  // With overwrite it is replaced by an empty file.
  EXPECT_TRUE(File_IO::Create(existing, false, true));
  EXPECT_EQ(ReadWholeFile(existing), "");
}

TEST(FileIoCreate, RefusesFoldersAndMissingParents) {
  ScratchFolder folder;
  const std::string sub = folder.Path("sub");
  std::filesystem::create_directory(sub);
  EXPECT_TRUE(RaisesExactly([&] { File_IO::Create(sub, false, false); },
                            {4, "File_IO::Create, path exists but is not a file."}));
  EXPECT_TRUE(RaisesExactly([&] { File_IO::Create(sub, false, true); },
                            {7, "File_IO::Create, Cannot create file."}));
  EXPECT_TRUE(RaisesExactly([&] { File_IO::Create(folder.Path("missing/x.mgjson"), false, false); },
                            {7, "File_IO::Create, Cannot create file."}));
  EXPECT_EQ(folder.Entries(), std::set<std::string>{"sub"});
}

TEST(FileIoOpen, FailuresNameTheBareOperation) {
  ScratchFolder folder;
  const std::size_t descriptorsBefore = OpenDescriptorCount();
  EXPECT_TRUE(RaisesExactly([&] { File_IO::Open(folder.Path("missing"), true, false); }, {6, "Open, failure."}));
  // A folder is refused as a file, as the Windows file API refuses it.
  EXPECT_TRUE(RaisesExactly([&] { File_IO::Open(folder.Path(""), true, false); },
                            {13, "Open, file permission error"}));
  EXPECT_TRUE(RaisesExactly([&] { File_IO::Open(folder.Path(""), false, false); },
                            {13, "Open, file permission error"}));
  EXPECT_EQ(OpenDescriptorCount(), descriptorsBefore);
}

TEST(FileIoOpen, AccessModesDecideWhereWritesGo) {
  ScratchFolder folder;
  const std::string path = folder.WriteFile("data.bin", "0123456789");

  // read and write: writes at the position
  File_IO::Handle file = File_IO::Open(path, false, false);
  File_IO::Seek(file, 2, File_IO::kFromStart);
  File_IO::Write(file, "ab", 2);
  File_IO::Close(file);
  EXPECT_EQ(ReadWholeFile(path), "01ab456789");

  // read and append: writes at the end wherever the position is
  file = File_IO::Open(path, false, true);
  File_IO::Seek(file, 0, File_IO::kFromStart);
  File_IO::Write(file, "XY", 2);
  File_IO::Close(file);
  EXPECT_EQ(ReadWholeFile(path), "01ab456789XY");

  // read-only: reading works, writing fails
  file = File_IO::Open(path, true, false);
  char buffer[4] = {};
  EXPECT_EQ(File_IO::Read(file, buffer, 4), 4u);
  EXPECT_EQ(std::string(buffer, 4), "01ab");
  EXPECT_TRUE(RaisesExactly([&] { File_IO::Write(file, "z", 1); }, {55, "File_IO::Write,WriteFile failure."}));
  EXPECT_FALSE(File_IO::WriteUnchecked(file, "z", 1));
  File_IO::Close(file);
  EXPECT_EQ(ReadWholeFile(path), "01ab456789XY");
}

TEST(FileIoReadWrite, RoundTripWithPositionsAndSize) {
  ScratchFolder folder;
  const std::string path = folder.Path("round.bin");
  ASSERT_TRUE(File_IO::Create(path, false, false));
  const File_IO::Handle file = File_IO::Open(path, false, false);
  File_IO::Write(file, "hello world", 11);
  EXPECT_TRUE(File_IO::WriteUnchecked(file, "!", 1));
  EXPECT_EQ(File_IO::Length(file), 12u);

  struct SeekCase {
    std::int64_t offset;
    std::uint32_t origin;
    std::uint64_t expected;
  };
  const SeekCase seeks[] = {{0, File_IO::kFromStart, 0},   {6, File_IO::kFromStart, 6},
                            {-3, File_IO::kFromCurrent, 3}, {-1, File_IO::kFromEnd, 11},
                            {4, File_IO::kFromEnd, 16}};
  for (const SeekCase &seek : seeks) {
    EXPECT_EQ(File_IO::Seek(file, seek.offset, seek.origin), seek.expected) << seek.offset << "/" << seek.origin;
  }

  File_IO::Seek(file, 6, File_IO::kFromStart);
  char buffer[32] = {};
  EXPECT_EQ(File_IO::Read(file, buffer, sizeof buffer), 6u);  // fewer at end of file
  EXPECT_EQ(std::string(buffer, 6), "world!");
  EXPECT_EQ(File_IO::Read(file, buffer, sizeof buffer), 0u);
  File_IO::Close(file);
}

TEST(FileIoReadWrite, OnlyTheLowWordOfAWriteCountCounts) {
  ScratchFolder folder;
  const std::string path = folder.Path("low.bin");
  File_IO::Create(path, false, false);
  const File_IO::Handle file = File_IO::Open(path, false, false);
  File_IO::Write(file, "abcd", 0x100000004ull);
  File_IO::Close(file);
  EXPECT_EQ(ReadWholeFile(path), "abcd");
}

TEST(FileIoReadWrite, LargeRequestsAndBadHandlesRaise) {
  char buffer[1] = {};
  const ExpectedFailure tooLargeRead{11, "File_IO::Read, request too large."};
  // The write's message names the read operation, on purpose.
  const ExpectedFailure tooLargeWrite{55, "File_IO::Read, request too large."};
  EXPECT_TRUE(RaisesExactly([&] { File_IO::Read(kUnusedHandle, buffer, 0x80000000ull); }, tooLargeRead));
  EXPECT_TRUE(RaisesExactly([&] { File_IO::Read(kUnusedHandle, buffer, 0x100000000ull); }, tooLargeRead));
  EXPECT_TRUE(RaisesExactly([&] { File_IO::Write(kUnusedHandle, buffer, 0x80000000ull); }, tooLargeWrite));
  EXPECT_TRUE(RaisesExactly([&] { File_IO::Write(kUnusedHandle, buffer, 0x1FFFFFFFFull); }, tooLargeWrite));

  EXPECT_TRUE(RaisesExactly([&] { File_IO::Read(kUnusedHandle, buffer, 1); }, {11, "File_IO::Read, ReadFile failure."}));
  EXPECT_TRUE(RaisesExactly([&] { File_IO::Write(kUnusedHandle, buffer, 1); }, {55, "File_IO::Write,WriteFile failure."}));
  EXPECT_FALSE(File_IO::WriteUnchecked(kUnusedHandle, buffer, 1));
  EXPECT_TRUE(RaisesExactly([&] { File_IO::Length(kUnusedHandle); }, {11, "File_IO::Length, failure."}));
  EXPECT_TRUE(RaisesExactly([&] { File_IO::Close(kUnusedHandle); }, {8, "File_IO::Close, Cannot close file."}));
  File_IO::Close(File_IO::kNoHandle);  // ignored
}

TEST(FileIoSeek, BadOriginsAndPositionsRaise) {
  ScratchFolder folder;
  const File_IO::Handle file = File_IO::Open(folder.WriteFile("s.bin", "abc"), true, false);
  EXPECT_TRUE(RaisesExactly([&] { File_IO::Seek(file, 42, 3); }, {10, "File_IO::Seek, Invalid Seek mode.", 42}));
  EXPECT_TRUE(RaisesExactly([&] { File_IO::Seek(file, -7, 0xFFFFFFFFu); },
                            {10, "File_IO::Seek, Invalid Seek mode.", -7}));
  EXPECT_TRUE(RaisesExactly([&] { File_IO::Seek(file, -1, File_IO::kFromStart); },
                            {10, "File_IO::Seek, SetFilePointerEx failure."}));
  EXPECT_TRUE(RaisesExactly([&] { File_IO::Seek(kUnusedHandle, 0, File_IO::kFromStart); },
                            {10, "File_IO::Seek, SetFilePointerEx failure."}));
  File_IO::Close(file);
}

TEST(FileIoSetEof, TruncatesAndExtends) {
  ScratchFolder folder;
  const std::string path = folder.WriteFile("eof.bin", "0123456789");
  const File_IO::Handle file = File_IO::Open(path, false, false);
  File_IO::SetEOF(file, 4);
  EXPECT_EQ(File_IO::Length(file), 4u);
  File_IO::SetEOF(file, 6);
  EXPECT_EQ(File_IO::Length(file), 6u);
  File_IO::Close(file);
  EXPECT_EQ(ReadWholeFile(path), std::string("0123\0\0", 6));

  EXPECT_TRUE(RaisesExactly([&] { File_IO::SetEOF(kUnusedHandle, 0); },
                            {10, "File_IO::SetEOF, SetFilePointerEx failure."}));
}

}  // namespace
}  // namespace ns_sensor
