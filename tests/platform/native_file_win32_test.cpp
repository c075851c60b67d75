// What only the Windows backend does: the long form of paths as the system receives it,
// share modes, the system's error values, and its temporary-file and mapping calls.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "file_access/file_mapper.hpp"
#include "platform/file_io.hpp"
#include "platform/file_test_support.hpp"
#include "platform/native_file.hpp"

#include <windows.h>

namespace ns_sensor {
namespace {

namespace native = palvex::platform;
using palvex::testing::RaisesExactly;
using palvex::testing::ReadWholeFile;
using palvex::testing::ScratchFolder;

// The scratch folder's own path, without a trailing separator.
std::string RootOf(const ScratchFolder &folder) {
  const std::u8string text = folder.root().u8string();
  return std::string(text.begin(), text.end());
}

std::string WithForwardSlashes(std::string path) {
  std::replace(path.begin(), path.end(), '\\', '/');
  return path;
}

// Makes a folder the working directory for a scope.
class ScopedWorkingDirectory {
 public:
  explicit ScopedWorkingDirectory(const std::filesystem::path &folder) : previous_(std::filesystem::current_path()) {
    std::filesystem::current_path(folder);
  }
  ~ScopedWorkingDirectory() { std::filesystem::current_path(previous_); }
  ScopedWorkingDirectory(const ScopedWorkingDirectory &) = delete;
  ScopedWorkingDirectory &operator=(const ScopedWorkingDirectory &) = delete;

 private:
  std::filesystem::path previous_;
};

// Removes names that end in a dot, which only their long form reaches, before the
// scratch folder's own clean-up (which uses the ordinary form) meets them.
class RemovesTrailingDotNames {
 public:
  explicit RemovesTrailingDotNames(const ScratchFolder &folder) : folder_(folder) {}
  ~RemovesTrailingDotNames() {
    for (const std::string &name : folder_.Entries()) {
      if (!name.ends_with('.')) continue;
      try {
        File_IO::Delete(folder_.Path(name));
      } catch (...) {
      }
    }
  }
  RemovesTrailingDotNames(const RemovesTrailingDotNames &) = delete;
  RemovesTrailingDotNames &operator=(const RemovesTrailingDotNames &) = delete;

 private:
  const ScratchFolder &folder_;
};

// Only a path in long form keeps a trailing dot: the system trims it from every other
// path. So the names that come out show which form the system was handed.
TEST(NativeFileWin32, DrivePathsReachTheSystemInLongForm) {
  ScratchFolder folder;
  RemovesTrailingDotNames cleanUp(folder);
  ASSERT_TRUE(File_IO::Create(folder.Path("backslashes."), false, true));
  ASSERT_TRUE(File_IO::Create(WithForwardSlashes(folder.Path("slashes.")), false, true));
  ASSERT_TRUE(File_IO::Create("\\\\?\\" + folder.Path("already-long."), false, true));
  // A dot before a backslash keeps the ordinary form, which the system resolves.
  ASSERT_TRUE(File_IO::Create(RootOf(folder) + "\\.\\resolved.", false, true));
  {
    ScopedWorkingDirectory inside(folder.root());
    ASSERT_TRUE(File_IO::Create("relative.", false, true));
  }
  EXPECT_EQ(folder.Entries(),
            (std::set<std::string>{"backslashes.", "slashes.", "already-long.", "resolved", "relative"}));
  // Every other operation converts the same way.
  const std::string kept = folder.Path("backslashes.");
  EXPECT_EQ(File_IO::GetFileMode(kept), File_IO::kFile);
  File_IO::Rename(kept, folder.Path("renamed."));
  File_IO::Delete(folder.Path("renamed."));
  EXPECT_EQ(folder.Entries().count("renamed."), 0u);
}

// Removes what a test made below the 260-unit limit of ordinary paths, deepest first,
// through the long form: neither the runtime's file functions nor the scratch folder's
// clean-up reach it.
class RemovedInLongForm {
 public:
  void Add(const std::string &path) { paths_.push_back(palvex::testing::AsPath("\\\\?\\" + path).wstring()); }
  ~RemovedInLongForm() {
    for (auto path = paths_.rbegin(); path != paths_.rend(); ++path) {
      if (!RemoveDirectoryW(path->c_str())) DeleteFileW(path->c_str());
    }
  }

 private:
  std::vector<std::wstring> paths_;
};

TEST(NativeFileWin32, PathsLongerThanTheOldLimitWork) {
  ScratchFolder folder;
  RemovedInLongForm deep;
  std::string path = RootOf(folder);
  for (const char letter : {'a', 'b', 'c'}) {
    path += "\\" + std::string(100, letter);
    deep.Add(path);
    ASSERT_TRUE(CreateDirectoryW(palvex::testing::AsPath("\\\\?\\" + path).c_str(), nullptr));
  }
  path += "\\deep.txt";
  deep.Add(path);
  ASSERT_GT(path.size(), static_cast<std::size_t>(MAX_PATH));
  ASSERT_TRUE(File_IO::Create(path, false, true));
  const File_IO::Handle file = File_IO::Open(path, false, false);
  File_IO::Write(file, "deep", 4);
  File_IO::Close(file);
  {
    FileMapper mapper(path);
    EXPECT_EQ(mapper.view(), "deep");
  }
  File_IO::Delete(path);
  EXPECT_EQ(File_IO::GetFileMode(path), File_IO::kNotExisting);
}

TEST(NativeFileWin32, BytesThatAreNotUtf8CannotBeConverted) {
  ScratchFolder folder;
  const std::string bad = RootOf(folder) + "\\bad\xFF.txt";
  EXPECT_TRUE(RaisesExactly([&] { File_IO::Create(bad, false, true); }, {12, "File_IO::Create, Cannot convert path."}));
  EXPECT_TRUE(RaisesExactly([&] { FileMapper mapper(bad); }, {6, "Unable to open input file."}));
  EXPECT_TRUE(folder.Entries().empty());
}

// Writers open without sharing; read-only opens share reading and writing.
TEST(NativeFileWin32, ShareModesDecideWhoElseMayOpen) {
  ScratchFolder folder;
  const std::string path = folder.WriteFile("shared.txt", "text");
  const File_IO::Handle writer = File_IO::Open(path, false, false);
  // A sharing violation is not a permission error.
  EXPECT_TRUE(RaisesExactly([&] { File_IO::Open(path, true, false); }, {6, "Open, failure."}));
  EXPECT_TRUE(RaisesExactly([&] { FileMapper mapper(path); }, {6, "Unable to open input file."}));
  EXPECT_TRUE(RaisesExactly([&] { File_IO::Delete(path); }, {9, "File_IO::Delete, Cannot delete file."}));
  File_IO::Close(writer);

  const File_IO::Handle reader = File_IO::Open(path, true, false);
  const File_IO::Handle secondReader = File_IO::Open(path, true, false);
  {
    FileMapper mapper(path);
    EXPECT_EQ(mapper.view(), "text");
  }
  EXPECT_TRUE(RaisesExactly([&] { File_IO::Open(path, false, true); }, {6, "Open, failure."}));
  File_IO::Close(secondReader);
  File_IO::Close(reader);
  File_IO::Delete(path);
  EXPECT_TRUE(folder.Entries().empty());
}

// The system's error values as the backend reports them, from real refusals.
TEST(NativeFileWin32, SystemErrorsBecomeErrorKinds) {
  ScratchFolder folder;
  const std::string file = folder.WriteFile("f.txt", "x");
  const std::string taken = folder.WriteFile("taken.txt", "y");
  const native::OpenRequest read{};
  const native::OpenRequest exclusive{native::Access::ReadWrite, native::Share::None,
                                      native::Disposition::OpenExisting, native::AccessHint::RandomAccess};
  const auto holder = native::OpenFile(file, exclusive);
  ASSERT_TRUE(holder.ok());

  struct Case {
    const char *situation;
    native::ErrorKind expected;
    native::ErrorKind reported;
  };
  const Case cases[] = {
      {"missing file (2)", native::ErrorKind::NotFound, native::OpenFile(folder.Path("missing"), read).error},
      {"missing folder (3)", native::ErrorKind::NotFound, native::OpenFile(folder.Path("no\\f"), read).error},
      {"invalid name (123)", native::ErrorKind::NotFound, native::QueryPathKind(folder.Path("a<b")).error},
      {"no such folder (267)", native::ErrorKind::NotFound,
       native::CreateUniqueTempFile(folder.Path("gone"), "PXT").error},
      {"folder as a file (5)", native::ErrorKind::AccessDenied, native::OpenFile(RootOf(folder), read).error},
      {"move onto a file (183)", native::ErrorKind::AlreadyExists, native::MovePath(taken, file).error},
      {"sharing violation (32)", native::ErrorKind::Other, native::OpenFile(file, read).error},
  };
  for (const Case &c : cases) EXPECT_EQ(c.reported, c.expected) << c.situation;
  EXPECT_EQ(native::LastError(), native::ErrorKind::Other);
  EXPECT_TRUE(native::CloseFile(holder.value).ok());
  EXPECT_EQ(native::LastError(), native::ErrorKind::None);
  // The pseudo handle that shares -1 with "no handle" is never closed.
  EXPECT_EQ(native::CloseFile(native::kNoHandle).error, native::ErrorKind::Other);
}

TEST(NativeFileWin32, TemporaryFilesComeFromTheSystem) {
  wchar_t systemFolder[MAX_PATH + 1] = {};
  ASSERT_GT(GetTempPathW(MAX_PATH, systemFolder), 0u);
  const std::u8string systemText = std::filesystem::path(systemFolder).u8string();
  const std::string expectedFolder(systemText.begin(), systemText.end());

  std::string made;
  ASSERT_TRUE(File_IO::GetTempFile("", made));
  EXPECT_EQ(made.rfind(expectedFolder + "PXT", 0), 0u) << made;
  EXPECT_EQ(made.substr(made.size() - 4), ".tmp") << made;
  EXPECT_EQ(File_IO::GetFileMode(made), File_IO::kFile);
  File_IO::Delete(made);

  // Names come back in the form the folder was given in, whatever form reached the system.
  ScratchFolder folder;
  ASSERT_TRUE(File_IO::GetTempFile(WithForwardSlashes(RootOf(folder)), made));
  EXPECT_EQ(made.rfind(RootOf(folder) + "\\PXT", 0), 0u) << made;
  ASSERT_TRUE(File_IO::GetTempFile("\\\\?\\" + RootOf(folder), made));
  EXPECT_EQ(made.rfind("\\\\?\\" + RootOf(folder) + "\\PXT", 0), 0u) << made;
  EXPECT_EQ(folder.Entries().size(), 2u);
}

// The system's temporary names add up to 14 units to their folder and must fit 260
// units, so longer folders are refused before the system is asked.
TEST(NativeFileWin32, TemporaryFoldersLongerThanTheSystemTakesAreRefused) {
  ScratchFolder folder;
  const std::string root = RootOf(folder);
  // Sent in long form, with its four-unit prefix: 242 units are the most that fit.
  ASSERT_LT(root.size(), 230u);
  const std::string longest = root + "\\" + std::string(242 - root.size() - 1, 'f');
  const std::string tooLong = root + "\\" + std::string(243 - root.size() - 1, 't');
  for (const std::string &path : {longest, tooLong}) ASSERT_TRUE(std::filesystem::create_directory(path));

  std::string made;
  ASSERT_TRUE(File_IO::GetTempFile(longest, made));
  EXPECT_EQ(made.rfind(longest + "\\PXT", 0), 0u) << made;
  EXPECT_TRUE(RaisesExactly([&] { File_IO::GetTempFile(tooLong, made); },
                            {15, "File_IO::GetTempFile, Cannot find temp file name"}));
  EXPECT_TRUE(std::filesystem::is_empty(tooLong));
}

TEST(NativeFileWin32, FolderSearchesWithOrWithoutATrailingSeparator) {
  ScratchFolder folder;
  folder.WriteFile("one.txt", "1");
  std::filesystem::create_directory(folder.root() / "sub");
  const std::string root = RootOf(folder);
  for (const std::string &path : {root, root + "\\", WithForwardSlashes(root) + "/"}) {
    std::set<std::string> names;
    std::set<std::string> folders;
    const File_IO::Handle search = File_IO::OpenFolder(path);
    for (File_IO::FolderEntry entry; File_IO::NextFolderEntry(search, entry);) {
      names.insert(entry.name);
      if (entry.isFolder) folders.insert(entry.name);
    }
    File_IO::CloseFolder(search);
    EXPECT_EQ(names, (std::set<std::string>{".", "..", "one.txt", "sub"})) << path;
    EXPECT_EQ(folders, (std::set<std::string>{".", "..", "sub"})) << path;
  }
}

}  // namespace
}  // namespace ns_sensor
