// The native file backend on Windows: the Win32 file, search, temporary-file and
// file-mapping calls. Every path is put in its long form (platform/long_path.hpp) and
// converted from UTF-8 to UTF-16 before it reaches the system.
#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>
// <windows.h> turns DeleteFile into DeleteFileW; the backend's own DeleteFile is meant.
#undef DeleteFile

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/fault_injection.hpp"
#include "platform/long_path.hpp"
#include "platform/native_file.hpp"
#include "platform/system_path_win32.hpp"

namespace palvex::platform {
namespace {

// The outcome of this thread's last backend call, as LastError() reports it. The system's
// own last-error value is read right after each failing call and translated.
thread_local ErrorKind lastError = ErrorKind::None;

// Buffer GetTempPathW and GetTempFileNameW write into, in UTF-16 units.
constexpr DWORD kPathBufferUnits = MAX_PATH;
// GetTempFileNameW adds up to 14 units to its folder and writes the result into a
// MAX_PATH buffer without being told its size: longer folders must not reach it.
constexpr std::size_t kLongestTempFolderUnits = MAX_PATH - 14;
constexpr UINT kUtf8 = CP_UTF8;  // code page 65001

ErrorKind FromSystemError(DWORD error) {
  switch (error) {
    case ERROR_SUCCESS: return ErrorKind::None;
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_INVALID_NAME:  // a name the system cannot parse names nothing
    case ERROR_DIRECTORY:     // a folder that is not there (temporary names)
      return ErrorKind::NotFound;
    case ERROR_ACCESS_DENIED: return ErrorKind::AccessDenied;
    case ERROR_DISK_FULL: return ErrorKind::DiskFull;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS: return ErrorKind::AlreadyExists;
    case ERROR_FILENAME_EXCED_RANGE: return ErrorKind::NameTooLong;
    default: return ErrorKind::Other;
  }
}

Status Record(ErrorKind error) {
  lastError = error;
  return Status{error};
}

template <typename T>
Result<T> Record(T value, ErrorKind error) {
  lastError = error;
  return Result<T>{std::move(value), error};
}

template <typename T>
Result<T> Failed(ErrorKind error) {
  return Record(T{}, error);
}

// Both read GetLastError(), so they must come straight after the failing call.
Status FailedFromSystem() { return Record(FromSystemError(::GetLastError())); }

template <typename T>
Result<T> FailedFromSystem() {
  return Failed<T>(FromSystemError(::GetLastError()));
}

// UTF-16 from the system to UTF-8. Unpaired surrogates (possible in names on disk)
// become U+FFFD rather than failing the whole call.
std::string Narrow(std::wstring_view wide) {
  if (wide.empty()) return {};
  const int length = static_cast<int>(wide.size());
  const int bytes = ::WideCharToMultiByte(kUtf8, 0, wide.data(), length, nullptr, 0, nullptr, nullptr);
  if (bytes <= 0) return {};
  std::string text(static_cast<std::size_t>(bytes), '\0');
  ::WideCharToMultiByte(kUtf8, 0, wide.data(), length, text.data(), bytes, nullptr, nullptr);
  return text;
}

HANDLE ToSystemHandle(NativeHandle handle) {
  return reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(handle));
}

NativeHandle FromSystemHandle(HANDLE handle) {
  return static_cast<NativeHandle>(reinterpret_cast<std::intptr_t>(handle));
}

DWORD DesiredAccess(Access access) {
  switch (access) {
    case Access::Read: return GENERIC_READ;
    case Access::ReadWrite: return GENERIC_READ | GENERIC_WRITE;
    case Access::ReadAppend: return GENERIC_READ | FILE_APPEND_DATA;
  }
  return GENERIC_READ;
}

DWORD ShareMode(Share share) {
  return share == Share::ReadWrite ? FILE_SHARE_READ | FILE_SHARE_WRITE : 0;
}

DWORD CreationDisposition(Disposition disposition) {
  return disposition == Disposition::CreateAlways ? CREATE_ALWAYS : OPEN_EXISTING;
}

DWORD FlagsAndAttributes(AccessHint hint) {
  return FILE_ATTRIBUTE_NORMAL |
         (hint == AccessHint::SequentialScan ? FILE_FLAG_SEQUENTIAL_SCAN : FILE_FLAG_RANDOM_ACCESS);
}

DWORD MoveMethod(SeekOrigin origin) {
  switch (origin) {
    case SeekOrigin::Begin: return FILE_BEGIN;
    case SeekOrigin::Current: return FILE_CURRENT;
    case SeekOrigin::End: return FILE_END;
  }
  return FILE_BEGIN;
}

// A folder search: FindFirstFileW already returns the first entry, which waits here
// until NextFolderEntry asks for it.
struct FolderSearch {
  HANDLE find = INVALID_HANDLE_VALUE;
  WIN32_FIND_DATAW pending{};
  bool hasPending = false;
};

FolderSearch *ToFolderSearch(NativeHandle handle) {
  return handle == kNoHandle ? nullptr : reinterpret_cast<FolderSearch *>(static_cast<std::intptr_t>(handle));
}

// GetTempFileNameW names the file in the form its folder was given in, long-path prefix
// included; the caller gets the name in the form it gave: whatever the long form put in
// place of the folder's beginning is put back.
std::string InCallersForm(std::string name, std::string_view folder) {
  std::string given(folder);
  std::replace(given.begin(), given.end(), '/', '\\');
  const std::string sent = ToLongPath(folder);
  std::size_t common = 0;
  while (common < given.size() && common < sent.size() &&
         given[given.size() - 1 - common] == sent[sent.size() - 1 - common]) {
    ++common;
  }
  const std::string_view sentHead = std::string_view(sent).substr(0, sent.size() - common);
  const std::string_view givenHead = std::string_view(given).substr(0, given.size() - common);
  if (sentHead == givenHead || !name.starts_with(sentHead)) return name;
  return std::string(givenHead) + name.substr(sentHead.size());
}

// "<folder>\*", or "<folder>*" when the folder already ends with a backslash.
std::string SearchPattern(std::string_view folder) {
  std::string pattern = ToLongPath(folder);
  if (pattern.empty() || pattern.back() != '\\') pattern += '\\';
  pattern += '*';
  return pattern;
}

}  // namespace

Status CheckPath(std::string_view path) {
  if (auto fault = TakeFault(FaultPoint::CheckPath)) return Record(*fault);
  return Record(SystemPath(path) ? ErrorKind::None : ErrorKind::NameTooLong);
}

Result<NativeHandle> OpenFile(std::string_view path, const OpenRequest &request) {
  if (auto fault = TakeFault(FaultPoint::OpenFile)) return Failed<NativeHandle>(*fault);
  const auto wide = SystemPath(path);
  if (!wide) return Failed<NativeHandle>(ErrorKind::NameTooLong);
  // Without FILE_FLAG_BACKUP_SEMANTICS a folder is refused with access denied.
  const HANDLE file = ::CreateFileW(wide->c_str(), DesiredAccess(request.access), ShareMode(request.share),
                                    nullptr, CreationDisposition(request.disposition),
                                    FlagsAndAttributes(request.hint), nullptr);
  if (file == INVALID_HANDLE_VALUE) return FailedFromSystem<NativeHandle>();
  return Record(FromSystemHandle(file), ErrorKind::None);
}

Status CloseFile(NativeHandle file) {
  if (auto fault = TakeFault(FaultPoint::CloseFile)) return Record(*fault);
  // INVALID_HANDLE_VALUE doubles as the current process's pseudo handle, which
  // CloseHandle would accept.
  if (file == kNoHandle) return Record(ErrorKind::Other);
  if (!::CloseHandle(ToSystemHandle(file))) return FailedFromSystem();
  return Record(ErrorKind::None);
}

Result<std::uint32_t> ReadFile(NativeHandle file, void *buffer, std::uint32_t count) {
  if (auto fault = TakeFault(FaultPoint::ReadFile)) return Failed<std::uint32_t>(*fault);
  auto *bytes = static_cast<char *>(buffer);
  std::uint32_t total = 0;
  // A file gives everything asked for in one call; pipes and devices may give less.
  while (total < count) {
    DWORD got = 0;
    if (!::ReadFile(ToSystemHandle(file), bytes + total, count - total, &got, nullptr)) {
      return Record(total, FromSystemError(::GetLastError()));
    }
    if (got == 0) break;
    total += got;
  }
  return Record(total, ErrorKind::None);
}

Result<std::uint32_t> WriteFile(NativeHandle file, const void *buffer, std::uint32_t count) {
  if (auto fault = TakeFault(FaultPoint::WriteFile)) return Failed<std::uint32_t>(*fault);
  const auto *bytes = static_cast<const char *>(buffer);
  std::uint32_t total = 0;
  while (total < count) {
    DWORD put = 0;
    if (!::WriteFile(ToSystemHandle(file), bytes + total, count - total, &put, nullptr)) {
      return Record(total, FromSystemError(::GetLastError()));
    }
    if (put == 0) return Record(total, ErrorKind::Other);  // no progress and no reason
    total += put;
  }
  return Record(total, ErrorKind::None);
}

Result<std::uint64_t> SeekFile(NativeHandle file, std::int64_t offset, SeekOrigin origin) {
  if (auto fault = TakeFault(FaultPoint::SeekFile)) return Failed<std::uint64_t>(*fault);
  LARGE_INTEGER distance;
  distance.QuadPart = offset;
  LARGE_INTEGER position;
  if (!::SetFilePointerEx(ToSystemHandle(file), distance, &position, MoveMethod(origin))) {
    return FailedFromSystem<std::uint64_t>();
  }
  return Record(static_cast<std::uint64_t>(position.QuadPart), ErrorKind::None);
}

Status SetEndOfFile(NativeHandle file) {
  if (auto fault = TakeFault(FaultPoint::SetEndOfFile)) return Record(*fault);
  if (!::SetEndOfFile(ToSystemHandle(file))) return FailedFromSystem();
  return Record(ErrorKind::None);
}

Result<std::uint64_t> FileSize(NativeHandle file) {
  if (auto fault = TakeFault(FaultPoint::FileSize)) return Failed<std::uint64_t>(*fault);
  LARGE_INTEGER size;
  if (!::GetFileSizeEx(ToSystemHandle(file), &size)) return FailedFromSystem<std::uint64_t>();
  return Record(static_cast<std::uint64_t>(size.QuadPart), ErrorKind::None);
}

Result<PathKind> QueryPathKind(std::string_view path) {
  if (auto fault = TakeFault(FaultPoint::QueryPathKind)) return Failed<PathKind>(*fault);
  const auto wide = SystemPath(path);
  if (!wide) return Failed<PathKind>(ErrorKind::NameTooLong);
  const DWORD attributes = ::GetFileAttributesW(wide->c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return FailedFromSystem<PathKind>();
  if (attributes & FILE_ATTRIBUTE_DIRECTORY) return Record(PathKind::Folder, ErrorKind::None);
  if (attributes & FILE_ATTRIBUTE_DEVICE) return Record(PathKind::Device, ErrorKind::None);
  return Record(PathKind::File, ErrorKind::None);
}

Status DeleteFile(std::string_view path) {
  if (auto fault = TakeFault(FaultPoint::DeleteFile)) return Record(*fault);
  const auto wide = SystemPath(path);
  if (!wide) return Record(ErrorKind::NameTooLong);
  if (!::DeleteFileW(wide->c_str())) return FailedFromSystem();
  return Record(ErrorKind::None);
}

Status MovePath(std::string_view from, std::string_view to) {
  if (auto fault = TakeFault(FaultPoint::MovePath)) return Record(*fault);
  const auto source = SystemPath(from);
  const auto target = SystemPath(to);
  if (!source || !target) return Record(ErrorKind::NameTooLong);
  // MoveFileW never replaces an existing target; across volumes it copies.
  if (!::MoveFileW(source->c_str(), target->c_str())) return FailedFromSystem();
  return Record(ErrorKind::None);
}

Result<NativeHandle> OpenFolderSearch(std::string_view folder) {
  if (auto fault = TakeFault(FaultPoint::OpenFolderSearch)) return Failed<NativeHandle>(*fault);
  const auto pattern = Widen(SearchPattern(folder));
  if (!pattern) return Failed<NativeHandle>(ErrorKind::NameTooLong);
  auto search = std::make_unique<FolderSearch>();
  search->find = ::FindFirstFileW(pattern->c_str(), &search->pending);
  if (search->find == INVALID_HANDLE_VALUE) return FailedFromSystem<NativeHandle>();
  search->hasPending = true;
  return Record(static_cast<NativeHandle>(reinterpret_cast<std::intptr_t>(search.release())), ErrorKind::None);
}

Result<bool> NextFolderEntry(NativeHandle search, FolderEntry &entry) {
  if (auto fault = TakeFault(FaultPoint::NextFolderEntry)) return Failed<bool>(*fault);
  FolderSearch *state = ToFolderSearch(search);
  if (state == nullptr) return Failed<bool>(ErrorKind::Other);
  if (!state->hasPending) {
    if (!::FindNextFileW(state->find, &state->pending)) {
      if (::GetLastError() == ERROR_NO_MORE_FILES) return Record(false, ErrorKind::None);
      return FailedFromSystem<bool>();
    }
  }
  state->hasPending = false;
  entry.name = Narrow(state->pending.cFileName);
  entry.isFolder = (state->pending.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  return Record(true, ErrorKind::None);
}

Status CloseFolderSearch(NativeHandle search) {
  if (auto fault = TakeFault(FaultPoint::CloseFolderSearch)) return Record(*fault);
  std::unique_ptr<FolderSearch> state(ToFolderSearch(search));
  if (!state) return Record(ErrorKind::Other);
  if (!::FindClose(state->find)) return FailedFromSystem();
  return Record(ErrorKind::None);
}

Result<std::string> TempDirectory() {
  if (auto fault = TakeFault(FaultPoint::TempDirectory)) return Failed<std::string>(*fault);
  wchar_t buffer[kPathBufferUnits + 1] = {};
  const DWORD units = ::GetTempPathW(kPathBufferUnits, buffer);
  if (units == 0) return FailedFromSystem<std::string>();
  if (units > kPathBufferUnits) return Failed<std::string>(ErrorKind::NameTooLong);
  return Record(Narrow(std::wstring_view(buffer, units)), ErrorKind::None);
}

Result<std::string> CreateUniqueTempFile(std::string_view directory, std::string_view prefix) {
  if (auto fault = TakeFault(FaultPoint::CreateUniqueTempFile)) return Failed<std::string>(*fault);
  const auto folder = SystemPath(directory);
  const auto namePrefix = Widen(prefix);
  if (!folder || !namePrefix || folder->size() > kLongestTempFolderUnits) {
    return Failed<std::string>(ErrorKind::NameTooLong);
  }
  wchar_t buffer[kPathBufferUnits + 1] = {};
  // With 0 as its number the call picks a free name and creates the file.
  if (::GetTempFileNameW(folder->c_str(), namePrefix->c_str(), 0, buffer) == 0) {
    return FailedFromSystem<std::string>();
  }
  return Record(InCallersForm(Narrow(buffer), directory), ErrorKind::None);
}

Result<MappedView> MapWholeFile(NativeHandle file, std::uint64_t size) {
  if (auto fault = TakeFault(FaultPoint::MapWholeFile)) return Failed<MappedView>(*fault);
  // Maximum size 0: the mapping spans the file as it is; an empty file cannot be mapped.
  const HANDLE mapping = ::CreateFileMappingW(ToSystemHandle(file), nullptr, PAGE_READONLY, 0, 0, nullptr);
  if (mapping == nullptr) return FailedFromSystem<MappedView>();
  const void *view = ::MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, 0);
  if (view == nullptr) {
    const ErrorKind error = FromSystemError(::GetLastError());
    ::CloseHandle(mapping);
    return Failed<MappedView>(error);
  }
  return Record(MappedView{static_cast<const std::byte *>(view), size, FromSystemHandle(mapping)},
                ErrorKind::None);
}

Status UnmapWholeFile(const MappedView &view) {
  if (auto fault = TakeFault(FaultPoint::UnmapWholeFile)) return Record(*fault);
  if (view.data == nullptr) return Record(ErrorKind::Other);
  if (!::UnmapViewOfFile(view.data)) {
    const Status failed = FailedFromSystem();
    ::CloseHandle(ToSystemHandle(view.mapping));
    return failed;
  }
  if (!::CloseHandle(ToSystemHandle(view.mapping))) return FailedFromSystem();
  return Record(ErrorKind::None);
}

ErrorKind LastError() { return lastError; }

}  // namespace palvex::platform
