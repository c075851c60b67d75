// The path operations of the file layer: modes, deletion, renaming, swapping, folder
// listing and temporary files.
#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "platform/file_io.hpp"
#include "platform/file_test_support.hpp"

namespace ns_sensor {
namespace {

using palvex::platform::ErrorKind;
using palvex::platform::FaultPoint;
using palvex::platform::ScopedFault;
using palvex::testing::RaisesExactly;
using palvex::testing::ReadWholeFile;
using palvex::testing::ScopedEnvironment;
using palvex::testing::ScratchFolder;
using palvex::testing::kTempFolderVariable;

TEST(FileIoGetFileMode, TellsWhatAPathNames) {
  ScratchFolder folder;
  const std::string file = folder.WriteFile("f.txt", "x");
  struct Case {
    std::string path;
    std::uint32_t mode;
  };
  std::vector<Case> cases = {{folder.Path("missing"), File_IO::kNotExisting},
                             {file, File_IO::kFile},
                             {folder.Path(""), File_IO::kFolder},
                             {file + "/below-a-file", File_IO::kNotExisting}};
#ifndef _WIN32
  // Windows file attributes mark no device as one (its NUL reads as a plain file).
  cases.push_back({"/dev/null", File_IO::kDevice});
#endif
  for (const Case &c : cases) EXPECT_EQ(File_IO::GetFileMode(c.path), c.mode) << c.path;
}

TEST(FileIoDelete, DeletesFilesAndIgnoresMissingPaths) {
  ScratchFolder folder;
  const std::string file = folder.WriteFile("gone.txt", "x");
  File_IO::Delete(file);
  EXPECT_EQ(File_IO::GetFileMode(file), File_IO::kNotExisting);
  File_IO::Delete(file);  // silently accepted
  File_IO::Delete(folder.Path("never/was/here"));

  const std::string sub = folder.Path("sub");
  std::filesystem::create_directory(sub);
  EXPECT_TRUE(RaisesExactly([&] { File_IO::Delete(sub); }, {9, "File_IO::Delete, Cannot delete file."}));
  EXPECT_EQ(File_IO::GetFileMode(sub), File_IO::kFolder);
}

TEST(FileIoRename, MovesOnlyToFreeNames) {
  ScratchFolder folder;
  const std::string from = folder.WriteFile("from.txt", "payload");
  const std::string taken = folder.WriteFile("taken.txt", "other");
  EXPECT_TRUE(RaisesExactly([&] { File_IO::Rename(from, taken); },
                            {21, "File_IO::Rename, New path does not exists."}));
  EXPECT_EQ(ReadWholeFile(taken), "other");

  const std::string to = folder.Path("to.txt");
  File_IO::Rename(from, to);
  EXPECT_EQ(ReadWholeFile(to), "payload");
  EXPECT_EQ(File_IO::GetFileMode(from), File_IO::kNotExisting);

  EXPECT_TRUE(RaisesExactly([&] { File_IO::Rename(folder.Path("missing"), folder.Path("x")); },
                            {22, "File_IO::Rename, Rename failure."}));
}

TEST(FileIoSwapData, ExchangesTwoFiles) {
  ScratchFolder folder;
  const std::string a = folder.WriteFile("out.mgjson", "A");
  const std::string b = folder.WriteFile("new.mgjson", "B");
  File_IO::SwapData(a, b);
  EXPECT_EQ(ReadWholeFile(a), "B");
  EXPECT_EQ(ReadWholeFile(b), "A");
  EXPECT_EQ(folder.Entries(), (std::set<std::string>{"out.mgjson", "new.mgjson"}));
}

TEST(FileIoSwapData, ParksTheFirstFileUnderTheFirstFreeName) {
  PALVEX_SKIP_WITHOUT_FAULT_SEAM();
  struct Case {
    int alreadyTaken;  // names ._00_ .. before this number exist
    const char *parkedName;
  };
  for (const Case &c : {Case{0, "out.mgjson._00_"}, Case{1, "out.mgjson._01_"}, Case{12, "out.mgjson._12_"}}) {
    ScratchFolder folder;
    const std::string a = folder.WriteFile("out.mgjson", "A");
    const std::string b = folder.WriteFile("new.mgjson", "B");
    for (int n = 0; n < c.alreadyTaken; ++n) {
      char name[32];
      std::snprintf(name, sizeof name, "out.mgjson._%02d_", n);
      folder.WriteFile(name, "taken");
    }
    // Stop the swap after its second rename and fail its undo too, so the parked file can
    // be seen (an undo that works leaves none).
    ScopedFault fault(FaultPoint::MovePath, ErrorKind::Other, 2, 2);
    EXPECT_TRUE(RaisesExactly([&] { File_IO::SwapData(a, b); }, {22, "File_IO::Rename, Rename failure."}));
    EXPECT_EQ(ReadWholeFile(folder.Path(c.parkedName)), "A") << c.parkedName;
    EXPECT_EQ(ReadWholeFile(a), "B");
  }
}

TEST(FileIoSwapData, RollsBackWhenTheSecondRenameFails) {
  PALVEX_SKIP_WITHOUT_FAULT_SEAM();
  ScratchFolder folder;
  const std::string a = folder.WriteFile("out.mgjson", "A");
  const std::string b = folder.WriteFile("new.mgjson", "B");
  {
    ScopedFault fault(FaultPoint::MovePath, ErrorKind::Other, 1, 1);
    EXPECT_TRUE(RaisesExactly([&] { File_IO::SwapData(a, b); }, {22, "File_IO::Rename, Rename failure."}));
  }
  EXPECT_EQ(ReadWholeFile(a), "A");
  EXPECT_EQ(ReadWholeFile(b), "B");
  EXPECT_EQ(folder.Entries(), (std::set<std::string>{"out.mgjson", "new.mgjson"}));

  // B missing: the same failure and the same rollback, without any fault.
  File_IO::Delete(b);
  EXPECT_TRUE(RaisesExactly([&] { File_IO::SwapData(a, b); }, {22, "File_IO::Rename, Rename failure."}));
  EXPECT_EQ(folder.Entries(), std::set<std::string>{"out.mgjson"});
}

TEST(FileIoSwapData, GivesUpWhenEveryTemporaryNameIsTaken) {
  ScratchFolder folder;
  const std::string a = folder.WriteFile("out.mgjson", "A");
  const std::string b = folder.WriteFile("new.mgjson", "B");
  for (int n = 0; n < 100; ++n) {
    char name[32];
    std::snprintf(name, sizeof name, "out.mgjson._%02d_", n);
    folder.WriteFile(name, "taken");
  }
  EXPECT_TRUE(RaisesExactly([&] { File_IO::SwapData(a, b); },
                            {15, "File_IO::SwapData, Cannot create temp file path."}));
  EXPECT_EQ(ReadWholeFile(a), "A");
  EXPECT_EQ(ReadWholeFile(b), "B");
}

TEST(FileIoFolders, ListsEveryEntry) {
  ScratchFolder folder;
  folder.WriteFile("plugin.pxplugin", "");
  folder.WriteFile("caf\xC3\xA9.txt", "");
  std::filesystem::create_directory(folder.Path("nested"));
#ifndef _WIN32  // symbolic links need a privilege on Windows
  std::filesystem::create_directory_symlink(folder.Path("nested"), folder.Path("link"));
#endif

  const File_IO::Handle search = File_IO::OpenFolder(folder.Path(""));
  std::map<std::string, bool> seen;
  File_IO::FolderEntry entry;
  while (File_IO::NextFolderEntry(search, entry)) seen[entry.name] = entry.isFolder;
  File_IO::CloseFolder(search);
  std::map<std::string, bool> expected{{".", true},           {"..", true},
                                       {"plugin.pxplugin", false}, {"caf\xC3\xA9.txt", false},
                                       {"nested", true}};
#ifndef _WIN32
  expected["link"] = true;
#endif
  EXPECT_EQ(seen, expected);
  File_IO::CloseFolder(File_IO::kNoHandle);  // ignored
}

TEST(FileIoFolders, RefusesWhatIsNotAFolder) {
  ScratchFolder folder;
  const std::string file = folder.WriteFile("f.txt", "x");
  for (const std::string &path : {file, folder.Path("missing")}) {
    EXPECT_TRUE(RaisesExactly([&] { File_IO::OpenFolder(path); },
                              {16, "File_IO::OpenFolder,  path is not a folder."}))
        << path;
  }
}

TEST(FileIoGetTempFile, CreatesAUniqueFileInTheGivenFolder) {
  ScratchFolder folder;
  std::string first, second;
  EXPECT_TRUE(File_IO::GetTempFile(folder.Path(""), first));
  EXPECT_TRUE(File_IO::GetTempFile(folder.root().string(), second));  // without the trailing slash
  EXPECT_NE(first, second);
  for (const std::string &path : {first, second}) {
    EXPECT_EQ(std::filesystem::path(path).parent_path(), folder.root()) << path;
    EXPECT_TRUE(std::filesystem::path(path).filename().string().starts_with("PXT")) << path;
    EXPECT_EQ(File_IO::GetFileMode(path), File_IO::kFile);
    EXPECT_EQ(ReadWholeFile(path), "");
  }
}

TEST(FileIoGetTempFile, UsesTheSystemTemporaryFolderWhenNoneIsGiven) {
  ScratchFolder folder;
  std::string path;
  {
    ScopedEnvironment tmpdir(kTempFolderVariable, folder.root().string().c_str());
    ASSERT_TRUE(File_IO::GetTempFile("", path));
  }
  EXPECT_EQ(std::filesystem::path(path).parent_path(), folder.root());

  // A system temporary folder that does not exist: no unique file can be made there.
  ScopedEnvironment tmpdir(kTempFolderVariable, folder.Path("vanished").c_str());
  EXPECT_TRUE(RaisesExactly([&] { File_IO::GetTempFile("", path); },
                            {15, "File_IO::GetTempFile, Cannot find temp file name"}));
}

TEST(FileIoGetTempFile, RefusesNamesThatDoNotFitTheNameBuffer) {
#ifdef _WIN32
  GTEST_SKIP() << "Windows refuses such folders before naming a file (NativeFileWin32 tests)";
#endif
  ScratchFolder folder;
  // The unique name adds "/PXT" and six characters to the folder: a folder of 249 units
  // gives a name that with its terminator fills the 260-unit buffer; one of 248 fits.
  const std::size_t rootUnits = folder.root().string().size();
  ASSERT_LT(rootUnits, 240u);
  const std::string longFolder = folder.Path(std::string(249 - rootUnits - 1, 'd'));
  const std::string shortFolder = folder.Path(std::string(248 - rootUnits - 1, 's'));
  std::filesystem::create_directory(longFolder);
  std::filesystem::create_directory(shortFolder);

  std::string path;
  EXPECT_TRUE(File_IO::GetTempFile(shortFolder, path));
  EXPECT_TRUE(RaisesExactly([&] { File_IO::GetTempFile(longFolder, path); },
                            {12, "File_IO::GetTempFile, Cannot convert path."}));
  EXPECT_TRUE(std::filesystem::is_empty(longFolder));  // the made file was removed again
}

}  // namespace
}  // namespace ns_sensor
