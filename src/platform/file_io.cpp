// The handle operations of the file layer: open, close, read, write, seek, size.
#include "platform/file_io.hpp"

#include "api/px_exception.hpp"
#include "platform/file_io_detail.hpp"
#include "platform/native_file.hpp"

namespace ns_sensor::File_IO {
namespace native = palvex::platform;

namespace {

// The count the 32-bit system calls see.
std::uint32_t LowWord(std::uint64_t count) { return static_cast<std::uint32_t>(count); }

}  // namespace

bool Create(std::string_view path, bool /*ignored*/, bool overwrite) {
  detail::RequireConvertiblePath(path, "File_IO::Create");
  if (!overwrite) {
    const auto existing = native::QueryPathKind(path);
    if (existing.ok()) {
      if (existing.value == native::PathKind::Folder) Raise(Msg::FileIoNotAFile, "File_IO::Create");
      return false;
    }
  }
  const native::OpenRequest request{native::Access::ReadAppend, native::Share::None,
                                    native::Disposition::CreateAlways, native::AccessHint::RandomAccess};
  const auto created = native::OpenFile(path, request);
  if (!created.ok()) Raise(Msg::FileIoCreateFile, "File_IO::Create");
  native::CloseFile(created.value);  // the file exists now; a refused close changes nothing
  return true;
}

Handle Open(std::string_view path, bool readOnly, bool append) {
  detail::RequireConvertiblePath(path, "File_IO::Open");
  native::OpenRequest request{native::Access::Read, native::Share::ReadWrite,
                              native::Disposition::OpenExisting, native::AccessHint::RandomAccess};
  if (!readOnly) {
    request.access = append ? native::Access::ReadAppend : native::Access::ReadWrite;
    request.share = native::Share::None;
  }
  const auto opened = native::OpenFile(path, request);
  if (!opened.ok()) {
    // These two report the bare operation name.
    if (opened.error == native::ErrorKind::AccessDenied) Raise(Msg::FileIoFilePermission, "Open");
    Raise(Msg::FileIoOpenFailure, "Open");
  }
  return opened.value;
}

void Close(Handle file) {
  if (file == kNoHandle) return;
  if (!native::CloseFile(file).ok()) Raise(Msg::FileIoCloseFile, "File_IO::Close");
}

std::uint64_t Seek(Handle file, std::int64_t offset, std::uint32_t origin) {
  if (origin > kFromEnd) {
    const MessageRow &row = Message(Msg::FileIoSeekFileMode);
    RaiseError(PX_ErrorInfo{row.code, row.literal.data(), offset, -1}, "File_IO::Seek");
  }
  const auto moved = native::SeekFile(file, offset, static_cast<native::SeekOrigin>(origin));
  if (!moved.ok()) Raise(Msg::FileIoSeekFailure, "File_IO::Seek", "SetFilePointerEx");
  return moved.value;
}

std::uint32_t Read(Handle file, void *buffer, std::uint64_t count) {
  if (count > kLargestRequest) Raise(Msg::FileIoReadLargeRequest, "File_IO::Read");
  const auto read = native::ReadFile(file, buffer, LowWord(count));
  if (!read.ok()) Raise(Msg::FileIoReadFailure, "File_IO::Read", "ReadFile");
  return read.value;
}

void Write(Handle file, const void *buffer, std::uint64_t count) {
  // The read operation's name, kept on purpose.
  if (LowWord(count) > kLargestRequest) Raise(Msg::FileIoWriteLargeRequest, "File_IO::Read");
  const auto written = native::WriteFile(file, buffer, LowWord(count));
  if (written.ok() && written.value == LowWord(count)) return;
  if (written.error == native::ErrorKind::DiskFull) Raise(Msg::FileIoDiskFull, "File_IO::Write");
  Raise(Msg::FileIoWriteFailure, "File_IO::Write");
}

bool WriteUnchecked(Handle file, const void *buffer, std::uint64_t count) noexcept {
  const auto written = native::WriteFile(file, buffer, LowWord(count));
  return written.ok() && written.value == LowWord(count) && native::LastError() == native::ErrorKind::None;
}

void SetEOF(Handle file, std::uint64_t position) {
  if (!native::SeekFile(file, static_cast<std::int64_t>(position), native::SeekOrigin::Begin).ok()) {
    Raise(Msg::FileIoSeekFailure, "File_IO::SetEOF", "SetFilePointerEx");
  }
  if (!native::SetEndOfFile(file).ok()) Raise(Msg::FileIoSeekFailure, "File_IO::SetEOF", "SetEndOfFile");
}

std::uint64_t Length(Handle file) {
  const auto size = native::FileSize(file);
  if (!size.ok()) Raise(Msg::FileIoLength, "File_IO::Length");
  return size.value;
}

}  // namespace ns_sensor::File_IO
