#include "plugin_model/mgjson_stream.hpp"

#include <algorithm>
#include <cstring>
#include <limits>
#include <vector>

#include "api/client_table.hpp"
#include "api/guard.hpp"
#include "api/px_exception.hpp"
#include "api/px_text.hpp"

namespace ns_sensor {

using PX_PLUGIN::ScopedFile;

namespace {

// The name a missing buffer, size or path is reported with: the operation the host
// obtained the stream from.
constexpr std::string_view kStreamName = "GetMGJSONStream";

// Bytes moved per read and write when the file is copied.
constexpr std::size_t kCopyChunk = 0x100000;

uint32_t ThirtyTwoBitSize(uint64_t size) {
  return static_cast<uint32_t>(std::min<uint64_t>(size, std::numeric_limits<uint32_t>::max()));
}

}  // namespace

// ---- Client forms ------------------------------------------------------------------------------

uint32_t IMgjsonStream_I::Read(uint8_t *buffer, uint32_t *size, PX_ErrorContext errorContext) {
  return RunGuardedReturning<uint32_t>(errorContext, 0, [&] { return Read(buffer, size); });
}

void IMgjsonStream_I::SaveCopy(const char *path, PX_ErrorContext errorContext) {
  RunGuarded(errorContext, [&] { SaveCopy(path); });
}

void IMgjsonStream_I::GetPath(PX_HostString *path, PX_ErrorContext errorContext) {
  RunGuarded(errorContext, [&] {
    if (path == nullptr) Raise(Msg::InvalidPointer, Quoted("PX_HostString"));
    const PX_ClientCallbacks &table = RequireClientTable();
    if (table.setString == nullptr) Raise(Msg::ClientApisNotSet);
    PX_Text text;
    GetPath(&text);
    table.setString(path, text.text.c_str(), static_cast<uint32_t>(text.text.size()));
  });
}

int64_t IMgjsonStream_I::Rewind(PX_ErrorContext errorContext) {
  return RunGuardedReturning<int64_t>(errorContext, -1, [&] { return Rewind(); });
}

// ---- Raising forms -----------------------------------------------------------------------------

MgjsonStreamImpl::MgjsonStreamImpl(std::string path) : path_(std::move(path)) {
  file_ = ScopedFile(File_IO::Open(path_, true, false));
  totalSize_ = ThirtyTwoBitSize(File_IO::Length(file_.get()));
  remaining_ = totalSize_;
}

MgjsonStreamImpl::~MgjsonStreamImpl() = default;

uint32_t MgjsonStreamImpl::Read(uint8_t *buffer, uint32_t *size) {
  if (buffer == nullptr || size == nullptr) Raise(Msg::InvalidPointer, Quoted(kStreamName));
  std::memset(buffer, 0, *size);
  const uint32_t wanted = std::min(remaining_, *size);
  uint32_t count = 0;
  while (count < wanted) {
    const uint64_t request = std::min<uint64_t>(wanted - count, File_IO::kLargestRequest);
    const uint32_t read = File_IO::Read(file_.get(), buffer + count, request);
    if (read == 0) break;  // the file has shrunk since the stream was made
    count += read;
  }
  remaining_ -= count;
  return count;
}

void MgjsonStreamImpl::SaveCopy(const char *path) {
  if (path == nullptr) Raise(Msg::InvalidPointer, Quoted(kStreamName));
  const std::string_view destination(path);
  // Replacing the destination first would empty the very file that is to be copied.
  if (destination == path_) return;
  const bool existed = File_IO::GetFileMode(destination) == File_IO::kFile;
  File_IO::Create(destination, false, true);
  try {
    CopyTo(destination);
  } catch (...) {
    // No half-copied file stays: what was there is left empty, a new file goes.
    try {
      if (existed) {
        File_IO::Create(destination, false, true);
      } else {
        File_IO::Delete(destination);
      }
    } catch (...) {
      // The copy's own failure is the one the caller needs to hear about.
    }
    throw;
  }
}

void MgjsonStreamImpl::CopyTo(std::string_view destination) const {
  // A handle of its own, so the host's read position stays where it is.
  ScopedFile source(File_IO::Open(path_, true, false));
  ScopedFile target(File_IO::Open(destination, false, false));
  std::vector<char> chunk(kCopyChunk);
  for (;;) {
    const uint32_t read = File_IO::Read(source.get(), chunk.data(), chunk.size());
    if (read == 0) break;
    File_IO::Write(target.get(), chunk.data(), read);
  }
  target.Close();
  source.Close();
}

void MgjsonStreamImpl::GetPath(PX_Text *path) {
  if (path == nullptr) Raise(Msg::InvalidPointer, Quoted("PX_Text"));
  path->text += path_;
}

int64_t MgjsonStreamImpl::Rewind() {
  return static_cast<int64_t>(File_IO::Seek(file_.get(), 0, File_IO::kFromStart));
}

}  // namespace ns_sensor
