// The path operations of the file layer: modes, deletion, renaming, swapping, folder
// listing and temporary files.
#include <cstdio>
#include <new>

#include "api/px_exception.hpp"
#include "platform/file_io.hpp"
#include "platform/file_io_detail.hpp"
#include "platform/native_file.hpp"

namespace ns_sensor::File_IO {
namespace native = palvex::platform;

namespace {

constexpr std::string_view kTempFilePrefix = "PXT";
// The temporary name is handed back through a buffer of this many UTF-16 units,
// terminator included; a name that needs more raises ConvertPath.
constexpr std::size_t kTempNameBufferUnits = 260;
// SwapData's temporary names: "<a>._00_" to "<a>._99_".
constexpr int kSwapNameCount = 100;

bool Exists(std::string_view path) { return native::QueryPathKind(path).ok(); }

// UTF-16 units of a UTF-8 text: one per lead byte, two for four-byte sequences.
std::size_t Utf16Units(std::string_view text) {
  std::size_t units = 0;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if ((byte & 0xC0) != 0x80) units += byte >= 0xF0 ? 2 : 1;
  }
  return units;
}

std::string SwapName(std::string_view path, int number) {
  char suffix[8];
  std::snprintf(suffix, sizeof suffix, "._%02d_", number);
  return std::string(path) + suffix;
}

}  // namespace

std::uint32_t GetFileMode(std::string_view path) {
  detail::RequireConvertiblePath(path, "File_IO::GetFileMode");
  const auto kind = native::QueryPathKind(path);
  if (!kind.ok()) return kNotExisting;
  switch (kind.value) {
    case native::PathKind::Folder: return kFolder;
    case native::PathKind::Device: return kDevice;
    case native::PathKind::File: break;
  }
  return kFile;
}

void Delete(std::string_view path) {
  detail::RequireConvertiblePath(path, "File_IO::Delete");
  // Only a path the system says is absent (or could not name) is skipped: a query that
  // merely failed must not leave the file behind.
  const native::ErrorKind queried = native::QueryPathKind(path).error;
  if (queried == native::ErrorKind::NotFound || queried == native::ErrorKind::NameTooLong) return;
  const auto deleted = native::DeleteFile(path);
  if (!deleted.ok() && deleted.error != native::ErrorKind::NotFound) {
    Raise(Msg::FileIoDeleteFile, "File_IO::Delete");
  }
}

void Rename(std::string_view oldPath, std::string_view newPath) {
  if (!native::CheckPath(oldPath).ok() || !native::CheckPath(newPath).ok()) {
    Raise(Msg::FileIoRenameWidePath, "File_IO::Rename");
  }
  if (Exists(newPath)) Raise(Msg::FileIoRenameTargetExists, "File_IO::Rename");
  if (!native::MovePath(oldPath, newPath).ok()) Raise(Msg::FileIoRenameFailure, "File_IO::Rename");
}

void SwapData(std::string_view a, std::string_view b) {
  std::string parked;
  for (int number = 0; number < kSwapNameCount && parked.empty(); ++number) {
    std::string candidate = SwapName(a, number);
    if (!Exists(candidate)) parked = std::move(candidate);
  }
  if (parked.empty()) Raise(Msg::FileIoSwapData, "File_IO::SwapData");

  Rename(a, parked);
  try {
    Rename(b, a);
  } catch (...) {
    try {
      Rename(parked, a);
    } catch (...) {
      // The first failure is the one to report; the file stays under its parked name.
    }
    throw;
  }
  try {
    Rename(parked, b);
  } catch (...) {
    // Undone as far as it goes, so no parked file stays beside a; the first failure is
    // the one to report.
    try {
      Rename(a, b);
      Rename(parked, a);
    } catch (...) {
    }
    throw;
  }
}

Handle OpenFolder(std::string_view path) {
  detail::RequireConvertiblePath(path, "File_IO::OpenFolder");
  if (GetFileMode(path) != kFolder) Raise(Msg::FileIoOpenFolder, "File_IO::OpenFolder");
  const auto search = native::OpenFolderSearch(path);
  if (!search.ok()) Raise(Msg::FileIoFolderFailure, "File_IO::OpenFolder", "FindFirstFileW");
  return search.value;
}

bool NextFolderEntry(Handle search, FolderEntry &entry) {
  native::FolderEntry found;
  const auto next = native::NextFolderEntry(search, found);
  if (!next.ok()) Raise(Msg::FileIoFolderFailure, "File_IO::NextFolderEntry", "FindNextFileW");
  if (!next.value) return false;
  entry.name = std::move(found.name);
  entry.isFolder = found.isFolder;
  return true;
}

void CloseFolder(Handle search) {
  if (search == kNoHandle) return;
  if (!native::CloseFolderSearch(search).ok()) Raise(Msg::FileIoFailure, "File_IO::CloseFolder", "FindClose");
}

void DeleteQuietly(std::string_view path) noexcept {
  for (int attempt = 0; attempt < 2; ++attempt) {
    try {
      Delete(path);
      return;
    } catch (const std::bad_alloc &) {
    } catch (...) {
      return;
    }
  }
}

bool GetTempFile(std::string_view directory, std::string &result) {
  std::string folder(directory);
  if (folder.empty()) {
    auto systemFolder = native::TempDirectory();
    if (!systemFolder.ok()) Raise(Msg::FileIoTempDirectory, "File_IO::GetTempFile");
    folder = std::move(systemFolder.value);
  }
  detail::RequireConvertiblePath(folder, "File_IO::GetTempFile");
  auto created = native::CreateUniqueTempFile(folder, kTempFilePrefix);
  if (!created.ok()) Raise(Msg::FileIoTempFile, "File_IO::GetTempFile");
  bool fits = false;
  try {
    fits = Utf16Units(created.value) + 1 < kTempNameBufferUnits;
  } catch (...) {
    native::DeleteFile(created.value);  // the count ran out of memory: the file is ours to remove
    throw;
  }
  if (!fits) {
    native::DeleteFile(created.value);
    Raise(Msg::FileIoConvertPath, "File_IO::GetTempFile");
  }
  result = std::move(created.value);
  return true;
}

}  // namespace ns_sensor::File_IO
