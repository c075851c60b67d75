// Paths the system cannot be handed, and names beyond ASCII.
#include <gtest/gtest.h>

#include <functional>
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

// Every path-taking operation with a path that cannot be converted.
void ExpectEveryOperationRefuses(const std::string &bad, const std::string &good) {
  struct Case {
    const char *operation;
    std::function<void()> call;
    ExpectedFailure failure;
  };
  std::string ignored;
  const Case cases[] = {
      {"Create", [&] { File_IO::Create(bad, false, true); }, {12, "File_IO::Create, Cannot convert path."}},
      {"Open", [&] { File_IO::Open(bad, true, false); }, {12, "File_IO::Open, Cannot convert path."}},
      {"Delete", [&] { File_IO::Delete(bad); }, {12, "File_IO::Delete, Cannot convert path."}},
      {"GetFileMode", [&] { File_IO::GetFileMode(bad); }, {12, "File_IO::GetFileMode, Cannot convert path."}},
      {"OpenFolder", [&] { File_IO::OpenFolder(bad); }, {12, "File_IO::OpenFolder, Cannot convert path."}},
      {"GetTempFile", [&] { File_IO::GetTempFile(bad, ignored); }, {12, "File_IO::GetTempFile, Cannot convert path."}},
      {"Rename from", [&] { File_IO::Rename(bad, good + ".new"); }, {22, "File_IO::Rename, GetWidePath failure."}},
      {"Rename to", [&] { File_IO::Rename(good, bad); }, {22, "File_IO::Rename, GetWidePath failure."}},
  };
  for (const Case &c : cases) EXPECT_TRUE(RaisesExactly(c.call, c.failure)) << c.operation;
}

// The shortest path (of ASCII characters) the system cannot take.
#ifdef _WIN32
// Its long form, "\\?\" and the path, with the terminator must fit 32767 UTF-16 units.
constexpr std::size_t kShortestRefusedPath = 32767 - 4;
#else
// PATH_MAX: 4096 bytes with the terminator.
constexpr std::size_t kShortestRefusedPath = 4096;
#endif

TEST(FileIoBadPaths, PathsLongerThanTheSystemTakesRaiseConvertPath) {
  ScratchFolder folder;
  const std::string good = folder.WriteFile("good.txt", "x");
  const std::size_t descriptorsBefore = OpenDescriptorCount();
  ExpectEveryOperationRefuses(folder.Path(std::string(kShortestRefusedPath + 1000, 'a')), good);
  // Exactly at the limit.
  const std::string root = folder.Path("");
  ExpectEveryOperationRefuses(root + std::string(kShortestRefusedPath - root.size(), 'b'), good);
  EXPECT_EQ(OpenDescriptorCount(), descriptorsBefore);
  EXPECT_EQ(ReadWholeFile(good), "x");
}

TEST(FileIoBadPaths, PathsWithANulByteRaiseConvertPath) {
  ScratchFolder folder;
  const std::string good = folder.WriteFile("good.txt", "x");
  ExpectEveryOperationRefuses(good + std::string("\0tail", 5), good);
}

TEST(FileIoBadPaths, OverlongNamesFailLikeMissingFiles) {
  ScratchFolder folder;
  const std::string longName = folder.Path(std::string(300, 'n'));  // past the 255-byte name limit
  EXPECT_EQ(File_IO::GetFileMode(longName), File_IO::kNotExisting);
  EXPECT_TRUE(RaisesExactly([&] { File_IO::Open(longName, true, false); }, {6, "Open, failure."}));
  EXPECT_TRUE(RaisesExactly([&] { File_IO::Create(longName, false, false); },
                            {7, "File_IO::Create, Cannot create file."}));
  File_IO::Delete(longName);
}

TEST(FileIoBadPaths, NonAsciiNamesWorkThroughEveryOperation) {
  ScratchFolder folder;
  // Latin with accents, CJK, and a character outside the basic plane.
  const std::string name = folder.Path("donn\xC3\xA9" "es-\xE6\x97\xA5\xE6\x9C\xAC-\xF0\x9F\x98\x80.mgjson");
  ASSERT_TRUE(File_IO::Create(name, false, false));
  const File_IO::Handle file = File_IO::Open(name, false, false);
  File_IO::Write(file, "\xC3\xA9t\xC3\xA9", 5);
  File_IO::Close(file);
  EXPECT_EQ(File_IO::GetFileMode(name), File_IO::kFile);

  const std::string renamed = folder.Path("\xD0\xBF\xD1\x83\xD1\x82\xD1\x8C.mgjson");
  File_IO::Rename(name, renamed);
  EXPECT_EQ(ReadWholeFile(renamed), "\xC3\xA9t\xC3\xA9");
  std::string temp;
  const std::string subfolder = folder.Path("\xE7\x9B\xAE\xE5\xBD\x95");
  std::filesystem::create_directory(palvex::testing::AsPath(subfolder));
  EXPECT_TRUE(File_IO::GetTempFile(subfolder, temp));
  EXPECT_TRUE(temp.starts_with(subfolder));
  File_IO::Delete(temp);
  File_IO::Delete(renamed);
  EXPECT_EQ(File_IO::GetFileMode(renamed), File_IO::kNotExisting);
}

}  // namespace
}  // namespace ns_sensor
