// The native file backend on POSIX systems. docs/platform.md lists which system call
// stands in for each Windows call and how errno values become ErrorKind values.
#include <dirent.h>
#include <fcntl.h>
#include <limits.h>
#include <stdio.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <system_error>

#include "platform/fault_injection.hpp"
#include "platform/native_file.hpp"

namespace palvex::platform {
namespace {

// The last outcome of this thread's backend calls (GetLastError's counterpart).
thread_local ErrorKind lastError = ErrorKind::None;

// Characters of the unique part of a temporary file name, and its length.
constexpr std::string_view kTempNameAlphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
constexpr std::size_t kTempNameUniqueLength = 6;
constexpr int kTempNameAttempts = 128;

// Mode of created files before the process's umask: what an ordinary program makes.
constexpr mode_t kNewFileMode = 0666;

ErrorKind FromErrno(int error) {
  switch (error) {
    case 0: return ErrorKind::None;
    case ENOENT:
    case ENOTDIR: return ErrorKind::NotFound;
    case EACCES:
    case EPERM:
    case EISDIR:  // the Windows file API refuses a folder opened as a file with "access denied"
    case EROFS: return ErrorKind::AccessDenied;
    case ENOSPC:
    case EDQUOT: return ErrorKind::DiskFull;
    case EEXIST:
    case ENOTEMPTY: return ErrorKind::AlreadyExists;
    case ENAMETOOLONG: return ErrorKind::NameTooLong;
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

Status FailedFromErrno() { return Record(FromErrno(errno)); }

template <typename T>
Result<T> FailedFromErrno() {
  return Failed<T>(FromErrno(errno));
}

bool PathFits(std::string_view path) {
  return path.find('\0') == std::string_view::npos && path.size() < PATH_MAX;
}

// A handle from OpenFile as a descriptor; -1 (EBADF below) for values that cannot be one.
int ToDescriptor(NativeHandle handle) {
  return handle >= 0 && handle <= INT_MAX ? static_cast<int>(handle) : -1;
}

DIR *ToDirectoryStream(NativeHandle handle) {
  return handle == kNoHandle ? nullptr : reinterpret_cast<DIR *>(static_cast<std::intptr_t>(handle));
}

int OpenFlags(const OpenRequest &request) {
  // Non-blocking so that a FIFO named as input cannot hang the open; regular files
  // ignore the flag.
  int flags = O_CLOEXEC | O_NONBLOCK;
  switch (request.access) {
    case Access::Read: flags |= O_RDONLY; break;
    case Access::ReadWrite: flags |= O_RDWR; break;
    case Access::ReadAppend: flags |= O_RDWR | O_APPEND; break;
  }
  if (request.disposition == Disposition::CreateAlways) flags |= O_CREAT | O_TRUNC;
  return flags;
}

bool IsDevice(mode_t mode) {
  return S_ISCHR(mode) || S_ISBLK(mode) || S_ISFIFO(mode) || S_ISSOCK(mode);
}

std::string UniqueTempName(std::string_view prefix) {
  thread_local std::mt19937_64 generator{std::random_device{}() ^
                                         static_cast<std::uint64_t>(getpid())};
  std::uniform_int_distribution<std::size_t> pick(0, kTempNameAlphabet.size() - 1);
  std::string name(prefix);
  for (std::size_t i = 0; i < kTempNameUniqueLength; ++i) name += kTempNameAlphabet[pick(generator)];
  return name;
}

// rename() that never replaces its target, as MoveFileW.
int RenameWithoutReplacing(const std::string &from, const std::string &to) {
#if defined(__linux__) && defined(RENAME_NOREPLACE)
  if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS) return -1;  // else the file system lacks the flag
#endif
  struct stat target;
  if (lstat(to.c_str(), &target) == 0) {
    errno = EEXIST;
    return -1;
  }
  return rename(from.c_str(), to.c_str());
}

// MoveFileW moves a file to another volume by copying it; rename() refuses (EXDEV).
int MoveAcrossVolumes(const std::string &from, const std::string &to) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(from, error)) {
    errno = EXDEV;
    return -1;
  }
  // copy_file refuses an existing target, which is then not ours to remove.
  if (!std::filesystem::copy_file(from, to, std::filesystem::copy_options::none, error)) {
    if (error != std::errc::file_exists) unlink(to.c_str());
    errno = error ? error.value() : EIO;
    return -1;
  }
  if (unlink(from.c_str()) == 0 || errno == ENOENT) return 0;
  const int failure = errno;
  unlink(to.c_str());  // the source stays: undo the copy
  errno = failure;
  return -1;
}

}  // namespace

Status CheckPath(std::string_view path) {
  if (auto fault = TakeFault(FaultPoint::CheckPath)) return Record(*fault);
  return Record(PathFits(path) ? ErrorKind::None : ErrorKind::NameTooLong);
}

Result<NativeHandle> OpenFile(std::string_view path, const OpenRequest &request) {
  if (auto fault = TakeFault(FaultPoint::OpenFile)) return Failed<NativeHandle>(*fault);
  if (!PathFits(path)) return Failed<NativeHandle>(ErrorKind::NameTooLong);
  const std::string terminated(path);
  int fd;
  do {
    fd = open(terminated.c_str(), OpenFlags(request), kNewFileMode);
  } while (fd < 0 && errno == EINTR);
  if (fd < 0) return FailedFromErrno<NativeHandle>();

  struct stat info;
  const bool described = fstat(fd, &info) == 0;
  if (!described || S_ISDIR(info.st_mode)) {
    const ErrorKind error = described ? ErrorKind::AccessDenied : FromErrno(errno);
    close(fd);
    return Failed<NativeHandle>(error);
  }
  if (S_ISREG(info.st_mode)) {
    fcntl(fd, F_SETFL, fcntl(fd, F_GETFL) & ~O_NONBLOCK);
    posix_fadvise(fd, 0, 0,
                  request.hint == AccessHint::SequentialScan ? POSIX_FADV_SEQUENTIAL : POSIX_FADV_RANDOM);
  }
  return Record(NativeHandle{fd}, ErrorKind::None);
}

Status CloseFile(NativeHandle file) {
  if (auto fault = TakeFault(FaultPoint::CloseFile)) return Record(*fault);
  // After EINTR the descriptor is gone on Linux; retrying could close someone else's.
  if (close(ToDescriptor(file)) != 0 && errno != EINTR) return FailedFromErrno();
  return Record(ErrorKind::None);
}

Result<std::uint32_t> ReadFile(NativeHandle file, void *buffer, std::uint32_t count) {
  if (auto fault = TakeFault(FaultPoint::ReadFile)) return Failed<std::uint32_t>(*fault);
  const int fd = ToDescriptor(file);
  auto *bytes = static_cast<char *>(buffer);
  std::uint32_t total = 0;
  while (total < count) {
    const ssize_t got = read(fd, bytes + total, count - total);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return Record(total, FromErrno(errno));
    if (got == 0) break;
    total += static_cast<std::uint32_t>(got);
  }
  return Record(total, ErrorKind::None);
}

Result<std::uint32_t> WriteFile(NativeHandle file, const void *buffer, std::uint32_t count) {
  if (auto fault = TakeFault(FaultPoint::WriteFile)) return Failed<std::uint32_t>(*fault);
  const int fd = ToDescriptor(file);
  const auto *bytes = static_cast<const char *>(buffer);
  std::uint32_t total = 0;
  while (total < count) {
    const ssize_t put = write(fd, bytes + total, count - total);
    if (put < 0 && errno == EINTR) continue;
    if (put < 0) return Record(total, FromErrno(errno));
    if (put == 0) return Record(total, ErrorKind::Other);  // no progress and no reason
    total += static_cast<std::uint32_t>(put);
  }
  return Record(total, ErrorKind::None);
}

Result<std::uint64_t> SeekFile(NativeHandle file, std::int64_t offset, SeekOrigin origin) {
  if (auto fault = TakeFault(FaultPoint::SeekFile)) return Failed<std::uint64_t>(*fault);
  int whence = SEEK_SET;
  if (origin == SeekOrigin::Current) whence = SEEK_CUR;
  if (origin == SeekOrigin::End) whence = SEEK_END;
  const off_t position = lseek(ToDescriptor(file), static_cast<off_t>(offset), whence);
  if (position < 0) return FailedFromErrno<std::uint64_t>();
  return Record(static_cast<std::uint64_t>(position), ErrorKind::None);
}

Status SetEndOfFile(NativeHandle file) {
  if (auto fault = TakeFault(FaultPoint::SetEndOfFile)) return Record(*fault);
  const int fd = ToDescriptor(file);
  const off_t position = lseek(fd, 0, SEEK_CUR);
  if (position < 0) return FailedFromErrno();
  int result;
  do {
    result = ftruncate(fd, position);
  } while (result != 0 && errno == EINTR);
  if (result != 0) return FailedFromErrno();
  return Record(ErrorKind::None);
}

Result<std::uint64_t> FileSize(NativeHandle file) {
  if (auto fault = TakeFault(FaultPoint::FileSize)) return Failed<std::uint64_t>(*fault);
  struct stat info;
  if (fstat(ToDescriptor(file), &info) != 0) return FailedFromErrno<std::uint64_t>();
  return Record(static_cast<std::uint64_t>(info.st_size), ErrorKind::None);
}

Result<PathKind> QueryPathKind(std::string_view path) {
  if (auto fault = TakeFault(FaultPoint::QueryPathKind)) return Failed<PathKind>(*fault);
  if (!PathFits(path)) return Failed<PathKind>(ErrorKind::NameTooLong);
  struct stat info;
  if (stat(std::string(path).c_str(), &info) != 0) return FailedFromErrno<PathKind>();
  if (S_ISDIR(info.st_mode)) return Record(PathKind::Folder, ErrorKind::None);
  if (IsDevice(info.st_mode)) return Record(PathKind::Device, ErrorKind::None);
  return Record(PathKind::File, ErrorKind::None);
}

Status DeleteFile(std::string_view path) {
  if (auto fault = TakeFault(FaultPoint::DeleteFile)) return Record(*fault);
  if (!PathFits(path)) return Record(ErrorKind::NameTooLong);
  if (unlink(std::string(path).c_str()) != 0) return FailedFromErrno();
  return Record(ErrorKind::None);
}

Status MovePath(std::string_view from, std::string_view to) {
  if (auto fault = TakeFault(FaultPoint::MovePath)) return Record(*fault);
  if (!PathFits(from) || !PathFits(to)) return Record(ErrorKind::NameTooLong);
  const std::string source(from);
  const std::string target(to);
  int result = RenameWithoutReplacing(source, target);
  if (result != 0 && errno == EXDEV) result = MoveAcrossVolumes(source, target);
  if (result != 0) return FailedFromErrno();
  return Record(ErrorKind::None);
}

Result<NativeHandle> OpenFolderSearch(std::string_view folder) {
  if (auto fault = TakeFault(FaultPoint::OpenFolderSearch)) return Failed<NativeHandle>(*fault);
  if (!PathFits(folder)) return Failed<NativeHandle>(ErrorKind::NameTooLong);
  DIR *stream = opendir(std::string(folder).c_str());
  if (stream == nullptr) return FailedFromErrno<NativeHandle>();
  return Record(static_cast<NativeHandle>(reinterpret_cast<std::intptr_t>(stream)), ErrorKind::None);
}

Result<bool> NextFolderEntry(NativeHandle search, FolderEntry &entry) {
  if (auto fault = TakeFault(FaultPoint::NextFolderEntry)) return Failed<bool>(*fault);
  DIR *stream = ToDirectoryStream(search);
  if (stream == nullptr) return Failed<bool>(ErrorKind::Other);
  errno = 0;
  const dirent *found = readdir(stream);
  if (found == nullptr) {
    if (errno != 0) return FailedFromErrno<bool>();
    return Record(false, ErrorKind::None);
  }
  entry.name = found->d_name;
  entry.isFolder = found->d_type == DT_DIR;
  if (found->d_type == DT_UNKNOWN || found->d_type == DT_LNK) {
    struct stat info;
    entry.isFolder = fstatat(dirfd(stream), found->d_name, &info, 0) == 0 && S_ISDIR(info.st_mode);
  }
  return Record(true, ErrorKind::None);
}

Status CloseFolderSearch(NativeHandle search) {
  if (auto fault = TakeFault(FaultPoint::CloseFolderSearch)) return Record(*fault);
  DIR *stream = ToDirectoryStream(search);
  if (stream == nullptr) return Record(ErrorKind::Other);
  if (closedir(stream) != 0) return FailedFromErrno();
  return Record(ErrorKind::None);
}

Result<std::string> TempDirectory() {
  if (auto fault = TakeFault(FaultPoint::TempDirectory)) return Failed<std::string>(*fault);
  const char *fromEnvironment = std::getenv("TMPDIR");
  std::string directory = fromEnvironment != nullptr && *fromEnvironment != '\0' ? fromEnvironment : "/tmp";
  if (directory.back() != '/') directory += '/';
  if (!PathFits(directory)) return Failed<std::string>(ErrorKind::NameTooLong);
  return Record(std::move(directory), ErrorKind::None);
}

Result<std::string> CreateUniqueTempFile(std::string_view directory, std::string_view prefix) {
  if (auto fault = TakeFault(FaultPoint::CreateUniqueTempFile)) return Failed<std::string>(*fault);
  std::string folder(directory);
  if (!folder.empty() && folder.back() != '/') folder += '/';
  for (int attempt = 0; attempt < kTempNameAttempts; ++attempt) {
    std::string path = folder + UniqueTempName(prefix);
    if (!PathFits(path)) return Failed<std::string>(ErrorKind::NameTooLong);
    const int fd = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kNewFileMode);
    if (fd >= 0) {
      close(fd);
      return Record(std::move(path), ErrorKind::None);
    }
    if (errno != EEXIST && errno != EINTR) return FailedFromErrno<std::string>();
  }
  return Failed<std::string>(ErrorKind::AlreadyExists);
}

Result<MappedView> MapWholeFile(NativeHandle file, std::uint64_t size) {
  if (auto fault = TakeFault(FaultPoint::MapWholeFile)) return Failed<MappedView>(*fault);
  if (size == 0 || size > SIZE_MAX) return Failed<MappedView>(ErrorKind::Other);
  void *start = mmap(nullptr, static_cast<std::size_t>(size), PROT_READ, MAP_SHARED, ToDescriptor(file), 0);
  if (start == MAP_FAILED) return FailedFromErrno<MappedView>();
  return Record(MappedView{static_cast<const std::byte *>(start), size, kNoHandle}, ErrorKind::None);
}

Status UnmapWholeFile(const MappedView &view) {
  if (auto fault = TakeFault(FaultPoint::UnmapWholeFile)) return Record(*fault);
  if (view.data == nullptr) return Record(ErrorKind::Other);
  if (munmap(const_cast<std::byte *>(view.data), static_cast<std::size_t>(view.size)) != 0) {
    return FailedFromErrno();
  }
  return Record(ErrorKind::None);
}

ErrorKind LastError() { return lastError; }

}  // namespace palvex::platform
