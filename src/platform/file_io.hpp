// The library's only door to the file system: free operations over UTF-8 paths and
// 64-bit handles, each of which turns every failure of the system into a PX_Exception
// with its message row (api/message_table.def, "File layer").
//
// The operations live in namespace ns_sensor::File_IO so that callers inside the
// library write File_IO::Open(...), matching the operation names the messages report
// ("File_IO::Create", ...). They sit on the native backend (platform/native_file.hpp).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ns_sensor::File_IO {

using Handle = std::int64_t;
inline constexpr Handle kNoHandle = -1;

// What GetFileMode reports.
enum FileMode : std::uint32_t { kNotExisting = 0, kFile = 1, kFolder = 2, kDevice = 3 };

// Seek origins.
enum SeekOrigin : std::uint32_t { kFromStart = 0, kFromCurrent = 1, kFromEnd = 2 };

// Largest count Read and Write accept (below 0x80000000).
inline constexpr std::uint64_t kLargestRequest = 0x7FFFFFFF;

// Creates an empty file (replacing one that exists when overwrite is set). Returns false,
// touching nothing, when overwrite is off and a file already exists; a folder there
// raises NotAFile (4). The second argument is accepted and ignored.
bool Create(std::string_view path, bool ignored, bool overwrite);

// Opens an existing file: read-only (shared for reading and writing), or read and append,
// or read and write (not shared). Raises FilePermission (13) when access is denied,
// Failure1 (6) otherwise.
Handle Open(std::string_view path, bool readOnly, bool append);

// Closes a handle from Open; kNoHandle is ignored.
void Close(Handle file);

// Deletes a file; a path that does not exist is silently accepted.
void Delete(std::string_view path);
// Delete for clean-up paths that must not raise: failures are swallowed (the file is left to
// the system's cleaning), but a deletion that ran out of memory copying the path is tried
// once more, since a file left behind costs more than the retry.
void DeleteQuietly(std::string_view path) noexcept;

// Moves the file position and returns the new one. origin is a SeekOrigin; any other
// value raises SeekFileMode (10) with the offset as detail1.
std::uint64_t Seek(Handle file, std::int64_t offset, std::uint32_t origin);

// Reads up to count bytes (fewer at end of file) and returns how many were read.
std::uint32_t Read(Handle file, void *buffer, std::uint64_t count);

// Writes all of count bytes or raises: Disk Full (34) or WriteFile failure (55). Only the
// low 32 bits of count are used (the system call's count is 32-bit).
void Write(Handle file, const void *buffer, std::uint64_t count);

// Writes once and reports whether everything was written without any error; raises
// nothing.
bool WriteUnchecked(Handle file, const void *buffer, std::uint64_t count) noexcept;

// What the path names (FileMode); kNotExisting when its attributes cannot be read.
std::uint32_t GetFileMode(std::string_view path);

// One entry of a folder listing ("." and ".." included).
struct FolderEntry {
  std::string name;
  bool isFolder = false;
};

// Starts listing a folder and returns the search handle; NextFolderEntry then gives the
// entries, the first one included, and CloseFolder ends the search.
Handle OpenFolder(std::string_view path);
bool NextFolderEntry(Handle search, FolderEntry &entry);
void CloseFolder(Handle search);

// Makes position the end of the file (truncating or extending it).
void SetEOF(Handle file, std::uint64_t position);

// Creates a new empty file with a unique name starting "PXT" in directory (the system's
// temporary directory when empty) and puts its UTF-8 path in result. Returns true.
bool GetTempFile(std::string_view directory, std::string &result);

// Exchanges the files at a and b through a temporary name "a._nn_".
void SwapData(std::string_view a, std::string_view b);

// Renames a file; the new path must not exist.
void Rename(std::string_view oldPath, std::string_view newPath);

// The file's size in bytes.
std::uint64_t Length(Handle file);

}  // namespace ns_sensor::File_IO
