// The operating system's file services, reduced to the primitives the file layer
// (platform/file_io) and the input file mapper (file_access/file_mapper) are built on.
//
// One header, one backend per platform: native_file_posix.cpp and native_file_win32.cpp.
// The shapes follow the Windows file API (access, sharing and disposition flags, search
// handles, file-mapping handles) because that is what the callers' behaviour is defined
// against; the POSIX backend maps each call onto its counterpart (docs/platform.md).
//
// Rules every backend keeps:
// - Paths come in as UTF-8. The Windows backend converts them (long-path form, then
//   UTF-16); the POSIX backend passes the bytes on unchanged.
// - Handles are 64-bit values; kNoHandle (-1) means "no handle".
// - No call raises. Each returns success or failure with an OS-neutral ErrorKind, and
//   records that outcome as the calling thread's last error (ErrorKind::None after a
//   call that succeeded), which LastError() reads back.
// - Each call first asks the fault-injection seam (platform/fault_injection.hpp) whether
//   it has been told to fail; if so it fails with the armed kind without touching the
//   system, exactly as if the system had refused.
// - Nothing here includes code of ours from outside src/platform.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace palvex::platform {

using NativeHandle = std::int64_t;
inline constexpr NativeHandle kNoHandle = -1;

// Why a call failed, in terms the callers act on.
enum class ErrorKind : std::uint8_t {
  None = 0,      ///< the call succeeded
  NotFound,      ///< path or file does not exist (Windows errors 2 and 3; ENOENT, ENOTDIR)
  AccessDenied,  ///< refused for permission, or a folder opened as a file (error 5; EACCES, EPERM)
  DiskFull,      ///< no space left (error 112; ENOSPC, EDQUOT)
  AlreadyExists, ///< the target of a create-new or a move exists (errors 80, 183; EEXIST)
  NameTooLong,   ///< the path cannot be handed to the system: too long, or not convertible
  Other,         ///< anything else
};

// Outcome of a call that returns nothing.
struct Status {
  ErrorKind error = ErrorKind::None;
  bool ok() const noexcept { return error == ErrorKind::None; }
};

// Outcome of a call that returns a value; value is meaningful only when ok(), except
// where a function says otherwise (a partial write reports the bytes it wrote).
template <typename T>
struct Result {
  T value{};
  ErrorKind error = ErrorKind::None;
  bool ok() const noexcept { return error == ErrorKind::None; }
};

// ---- opening files (CreateFileW) -----------------------------------------------------

enum class Access : std::uint8_t {
  Read,           ///< GENERIC_READ; O_RDONLY
  ReadWrite,      ///< GENERIC_READ | GENERIC_WRITE; O_RDWR
  ReadAppend,     ///< GENERIC_READ | FILE_APPEND_DATA; O_RDWR | O_APPEND
};

enum class Share : std::uint8_t {
  None,           ///< no sharing (POSIX has no share modes: ignored there)
  ReadWrite,      ///< FILE_SHARE_READ | FILE_SHARE_WRITE
};

enum class Disposition : std::uint8_t {
  OpenExisting,   ///< OPEN_EXISTING; fails with NotFound when the file is missing
  CreateAlways,   ///< CREATE_ALWAYS; creates or truncates; O_CREAT | O_TRUNC
};

enum class AccessHint : std::uint8_t {
  RandomAccess,   ///< FILE_FLAG_RANDOM_ACCESS; POSIX_FADV_RANDOM
  SequentialScan, ///< FILE_FLAG_SEQUENTIAL_SCAN; POSIX_FADV_SEQUENTIAL
};

struct OpenRequest {
  Access access = Access::Read;
  Share share = Share::ReadWrite;
  Disposition disposition = Disposition::OpenExisting;
  AccessHint hint = AccessHint::RandomAccess;
};

// Whether the path can be handed to the system at all (the "path conversion" step).
// Windows: the long-path form converts to UTF-16. POSIX: no NUL byte inside and shorter
// than PATH_MAX (4096 bytes with the terminator). Fails with NameTooLong.
Status CheckPath(std::string_view path);

// Opens (or creates) a file with normal attributes. A folder is never opened as a file:
// it fails with AccessDenied, as the Windows file API does.
Result<NativeHandle> OpenFile(std::string_view path, const OpenRequest &request);

// Closes a handle from OpenFile. kNoHandle fails with Other.
Status CloseFile(NativeHandle file);

// ---- reading and writing (ReadFile, WriteFile) -----------------------------------------

// Reads up to count bytes at the file position; fewer only at end of file. value is the
// number read (0 at end of file).
Result<std::uint32_t> ReadFile(NativeHandle file, void *buffer, std::uint32_t count);

// Writes count bytes at the file position (at the end for ReadAppend access). value is
// the number written, also on failure (a disk that fills up midway reports how much
// went out before it did).
Result<std::uint32_t> WriteFile(NativeHandle file, const void *buffer, std::uint32_t count);

// ---- position and size (SetFilePointerEx, SetEndOfFile, GetFileSizeEx) ---------------

enum class SeekOrigin : std::uint8_t {
  Begin = 0,    ///< FILE_BEGIN; SEEK_SET
  Current = 1,  ///< FILE_CURRENT; SEEK_CUR
  End = 2,      ///< FILE_END; SEEK_END
};

// Moves the file position; value is the new position from the start.
Result<std::uint64_t> SeekFile(NativeHandle file, std::int64_t offset, SeekOrigin origin);

// Makes the current file position the end of the file (truncates or extends).
Status SetEndOfFile(NativeHandle file);

// The file's size in bytes.
Result<std::uint64_t> FileSize(NativeHandle file);

// ---- paths (GetFileAttributesW, DeleteFileW, MoveFileW) --------------------------------

enum class PathKind : std::uint8_t {
  File,     ///< a regular file (anything not below)
  Folder,   ///< FILE_ATTRIBUTE_DIRECTORY; S_ISDIR
  Device,   ///< FILE_ATTRIBUTE_DEVICE; character or block device, FIFO, socket
};

// What the path names; fails (NotFound in the usual case) when its attributes cannot be
// read. Symbolic links are followed.
Result<PathKind> QueryPathKind(std::string_view path);

// Deletes a file (not a folder: that fails with AccessDenied or Other).
Status DeleteFile(std::string_view path);

// Moves (renames) a file or folder. Never replaces: an existing target fails with
// AlreadyExists.
Status MovePath(std::string_view from, std::string_view to);

// ---- folder enumeration (FindFirstFileW, FindNextFileW, FindClose) -----------------------

struct FolderEntry {
  std::string name;       ///< UTF-8 name within the folder ("." and ".." included)
  bool isFolder = false;
};

// Starts listing a folder; the Windows backend searches "<folder>\*" (only "*" when the
// path already ends with a backslash). The search handle is closed by CloseFolderSearch.
Result<NativeHandle> OpenFolderSearch(std::string_view folder);

// The next entry of a search, the first one included: value true and entry filled, or
// value false once every entry has been given.
Result<bool> NextFolderEntry(NativeHandle search, FolderEntry &entry);

// Ends a search. kNoHandle fails with Other.
Status CloseFolderSearch(NativeHandle search);

// ---- temporary files (GetTempPathW, GetTempFileNameW) -----------------------------------

// The system's directory for temporary files, ending with a separator. Windows: the
// GetTempPathW result. POSIX: $TMPDIR when set and not empty, else /tmp. The directory
// is not checked for existence (neither system does).
Result<std::string> TempDirectory();

// Creates a new empty file with a unique name "<prefix><unique part>" in the directory
// and returns its full path; the file is closed. Fails with NotFound when the directory
// does not exist.
Result<std::string> CreateUniqueTempFile(std::string_view directory, std::string_view prefix);

// ---- read-only mapping of a whole file (CreateFileMappingW, MapViewOfFile) ----------------

struct MappedView {
  const std::byte *data = nullptr;  ///< start of the view; null when nothing is mapped
  std::uint64_t size = 0;           ///< bytes in the view
  NativeHandle mapping = kNoHandle; ///< the file-mapping handle (Windows); kNoHandle on POSIX
};

// Maps the whole file (of the given size) read-only. A zero-length file fails (both
// systems refuse to map nothing). On failure nothing stays mapped or open except the
// file handle, which the caller still owns.
Result<MappedView> MapWholeFile(NativeHandle file, std::uint64_t size);

// Unmaps a view from MapWholeFile and closes its mapping handle. The file handle is
// the caller's to close.
Status UnmapWholeFile(const MappedView &view);

// ---- the thread's last error (GetLastError) -----------------------------------------------

// The outcome recorded by this thread's most recent call above; None after a success.
ErrorKind LastError();

}  // namespace palvex::platform
