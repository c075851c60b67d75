#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <type_traits>

#include "file_access/file_mapper.hpp"
#include "platform/fault_injection.hpp"
#include "platform/file_io.hpp"
#include "platform/file_test_support.hpp"

namespace ns_sensor {
namespace {

using palvex::platform::ErrorKind;
using palvex::platform::FaultPoint;
using palvex::platform::ScopedFault;
using palvex::testing::ExpectedFailure;
using palvex::testing::OpenDescriptorCount;
using palvex::testing::RaisesExactly;
using palvex::testing::ScratchFolder;

const ExpectedFailure kCannotOpen{6, "Unable to open input file."};
const ExpectedFailure kCannotStat{5, "Unable to stat input file, probably file is corrupt."};
const ExpectedFailure kEmpty{54, "Empty Input file."};
const ExpectedFailure kCannotMap{21, "Unable to read file in memory."};

// What a mapper holds open: the file, and on Windows the file-mapping object too.
#ifdef _WIN32
constexpr std::size_t kHandlesPerMapping = 2;
#else
constexpr std::size_t kHandlesPerMapping = 1;
#endif

std::u16string Utf16(const std::string &utf8) {
  const std::filesystem::path path = palvex::testing::AsPath(utf8);
  return path.u16string();
}

static_assert(!std::is_copy_constructible_v<FileMapper> && !std::is_copy_assignable_v<FileMapper>);

TEST(FileMapper, MapsTheWholeFileByEitherPathForm) {
  ScratchFolder folder;
  const std::string text = "{\"version\":\"MGJSON2.0.0\"}";
  for (const std::string &name : {std::string("plain.mgjson"), std::string("\xC3\xA9t\xC3\xA9-\xF0\x9F\x98\x80.mgjson")}) {
    const std::string path = folder.WriteFile(name, text);
    FileMapper byUtf8(path);
    FileMapper byUtf16(Utf16(path));
    for (const FileMapper *mapper : {&byUtf8, &byUtf16}) {
      ASSERT_NE(mapper->data(), nullptr) << name;
      EXPECT_EQ(mapper->size(), text.size());
      EXPECT_EQ(mapper->view(), text);
    }
  }
}

TEST(FileMapper, ReleaseLetsEverythingGo) {
  ScratchFolder folder;
  const std::string path = folder.WriteFile("x.mgjson", "{}");
  const std::size_t descriptorsBefore = OpenDescriptorCount();
  {
    FileMapper mapper(path);
    EXPECT_EQ(OpenDescriptorCount(), descriptorsBefore + kHandlesPerMapping);
    mapper.Release();
    EXPECT_EQ(mapper.data(), nullptr);
    EXPECT_EQ(mapper.size(), 0u);
    EXPECT_EQ(OpenDescriptorCount(), descriptorsBefore);
    mapper.Release();
  }
  { FileMapper mapper(path); }  // destruction releases
  EXPECT_EQ(OpenDescriptorCount(), descriptorsBefore);
}

TEST(FileMapper, EmptyFilesFailDifferentlyByPathForm) {
  ScratchFolder folder;
  const std::string path = folder.WriteFile("empty.mgjson", "");
  const std::size_t descriptorsBefore = OpenDescriptorCount();
  EXPECT_TRUE(RaisesExactly([&] { FileMapper mapper(path); }, kEmpty));
  EXPECT_TRUE(RaisesExactly([&] { FileMapper mapper(Utf16(path)); }, kCannotMap));
  EXPECT_EQ(OpenDescriptorCount(), descriptorsBefore);
}

TEST(FileMapper, PathsThatNameNoFileCannotBeOpened) {
  ScratchFolder folder;
  const std::string file = folder.WriteFile("f.mgjson", "{}");
  struct Case {
    const char *what;
    std::string path;
    bool exists;
  };
  const Case cases[] = {
      {"folder", folder.Path(""), true},  // exists, but is no file
      {"missing", folder.Path("missing.mgjson"), false},
      {"below a file", file + "/x", false},
      {"empty path", "", false},
      {"too long", folder.Path(std::string(5000, 'a')), false},
      {"nul inside", file + std::string("\0x", 2), false},
  };
  const std::size_t descriptorsBefore = OpenDescriptorCount();
  for (const Case &c : cases) {
    EXPECT_EQ(FileMapper::FileExists(c.path), c.exists) << c.what;
    EXPECT_TRUE(RaisesExactly([&] { FileMapper mapper(c.path); }, kCannotOpen)) << c.what;
    if (c.path.find('\0') == std::string::npos) {
      EXPECT_TRUE(RaisesExactly([&] { FileMapper mapper(Utf16(c.path)); }, kCannotOpen)) << c.what;
    }
  }
  // A lone surrogate has no UTF-8 form.
  EXPECT_TRUE(RaisesExactly([&] { FileMapper mapper(Utf16(file) + u'\xD800'); }, kCannotOpen));
  EXPECT_TRUE(RaisesExactly([&] { FileMapper mapper(u"\xDC00" + Utf16(file)); }, kCannotOpen));
  EXPECT_EQ(OpenDescriptorCount(), descriptorsBefore);
}

TEST(FileMapper, FileOpenForWritingElsewhereCanBeMapped) {
  ScratchFolder folder;
  const std::string path = folder.WriteFile("busy.mgjson", "{\"a\":1}");
  // A writer that lets others read and write, as ordinary programs open files (the
  // file layer's own writers share nothing, which Windows enforces).
  std::ofstream writer(palvex::testing::AsPath(path), std::ios::binary | std::ios::app);
  ASSERT_TRUE(writer.is_open());
  {
    FileMapper mapper(path);
    EXPECT_EQ(mapper.view(), "{\"a\":1}");
  }
}

TEST(FileMapper, InjectedFailuresRaiseByStepAndCloseTheFile) {
  PALVEX_SKIP_WITHOUT_FAULT_SEAM();
  ScratchFolder folder;
  const std::string path = folder.WriteFile("x.mgjson", "{}");
  struct Case {
    FaultPoint point;
    ErrorKind error;
    ExpectedFailure failure;
  };
  const Case cases[] = {
      {FaultPoint::CheckPath, ErrorKind::NameTooLong, kCannotOpen},
      {FaultPoint::OpenFile, ErrorKind::AccessDenied, kCannotOpen},
      {FaultPoint::FileSize, ErrorKind::Other, kCannotStat},
      {FaultPoint::MapWholeFile, ErrorKind::Other, kCannotMap},
  };
  const std::size_t descriptorsBefore = OpenDescriptorCount();
  for (const Case &c : cases) {
    ScopedFault fault(c.point, c.error);
    EXPECT_TRUE(RaisesExactly([&] { FileMapper mapper(path); }, c.failure)) << c.failure.message;
    EXPECT_EQ(OpenDescriptorCount(), descriptorsBefore) << c.failure.message;
  }
  for (const Case &c : cases) {
    if (c.point == FaultPoint::CheckPath) continue;  // the UTF-16 form has no conversion step
    ScopedFault fault(c.point, c.error);
    EXPECT_TRUE(RaisesExactly([&] { FileMapper mapper(Utf16(path)); }, c.failure)) << c.failure.message;
    EXPECT_EQ(OpenDescriptorCount(), descriptorsBefore) << c.failure.message;
  }
}

TEST(FileMapper, LargeFilesMapWithTheirFullSize) {
  ScratchFolder folder;
  const std::string path = folder.Path("large.mgjson");
  constexpr std::uint64_t kSize = (5ull << 30) + 3;  // past 32 bits
  {
    std::ofstream(palvex::testing::AsPath(path), std::ios::binary).flush();
    std::error_code error;
    std::filesystem::resize_file(palvex::testing::AsPath(path), kSize, error);
    std::fstream file(palvex::testing::AsPath(path), std::ios::binary | std::ios::in | std::ios::out);
    const bool sized = !error && file.seekp(static_cast<std::streamoff>(kSize - 1)) && file.put('}') && file.flush();
    if (!sized) GTEST_SKIP() << "this file system cannot hold a sparse 5 GiB file";
  }
  FileMapper mapper(path);
  EXPECT_EQ(mapper.size(), kSize);
  EXPECT_EQ(mapper.data()[0], '\0');
  EXPECT_EQ(mapper.data()[kSize - 1], '}');
}

}  // namespace
}  // namespace ns_sensor
