#include "mgjson_read/compacted_sample_file.hpp"

#include <algorithm>
#include <utility>

#include "api/px_exception.hpp"
#include "platform/native_file.hpp"

namespace ns_sensor {
namespace {

// Codes the file layer raises when it cannot make a temporary file.
constexpr std::uint32_t kNoTempDirectoryCode = 14;
constexpr std::uint32_t kPathNotConvertibleCode = 12;

// The file layer names its own operation; the sample reader reports what it was doing.
[[noreturn]] void RaiseTempFileFault(std::uint32_t fileLayerCode,
                                     palvex::platform::ErrorKind systemError) {
  // A directory that has gone shows only as the unique file that cannot be made in it.
  if (fileLayerCode == kNoTempDirectoryCode || systemError == palvex::platform::ErrorKind::NotFound) {
    Raise(Msg::TempDirNotFound);
  }
  if (fileLayerCode == kPathNotConvertibleCode) Raise(Msg::TempFileNameCopyError);
  Raise(Msg::TempFileNameError);
}

}  // namespace

CompactedSampleFile::CompactedSampleFile() {
  try {
    File_IO::GetTempFile("", path_);
  } catch (const PX_Exception &failure) {
    RaiseTempFileFault(failure.code(), palvex::platform::LastError());
  }
  try {
    handle_ = File_IO::Open(path_, false, false);
  } catch (const PX_Exception &) {
    DeleteQuietly();
    Raise(Msg::FailureOpeningTempFile);
  } catch (...) {
    DeleteQuietly();  // memory ran out: no destructor runs for a half-made object
    throw;
  }
}

CompactedSampleFile::~CompactedSampleFile() {
  mapping_.reset();  // a mapped file cannot be deleted everywhere
  try {
    File_IO::Close(std::exchange(handle_, File_IO::kNoHandle));
  } catch (...) {
    // The handle is given up either way; the file is deleted below.
  }
  DeleteQuietly();
}

void CompactedSampleFile::Append(std::string_view text) {
  try {
    while (!text.empty()) {
      const std::size_t piece = static_cast<std::size_t>(std::min<std::uint64_t>(text.size(), File_IO::kLargestRequest));
      File_IO::Write(handle_, text.data(), piece);
      written_ += piece;
      text.remove_prefix(piece);
    }
  } catch (const PX_Exception &) {
    Raise(Msg::FailureWritingTempFile);
  }
}

void CompactedSampleFile::FinishWriting() {
  try {
    File_IO::Close(std::exchange(handle_, File_IO::kNoHandle));
  } catch (const PX_Exception &) {
    // What was written may not have reached the file.
    Raise(Msg::FailureWritingTempFile);
  }
  if (written_ == 0) return;
  try {
    mapping_ = std::make_unique<FileMapper>(path_);
  } catch (const PX_Exception &) {
    Raise(Msg::FailureOpeningTempFile);
  }
  if (mapping_->size() != written_) {
    mapping_.reset();
    Raise(Msg::FailureWritingTempFile);
  }
}

void CompactedSampleFile::DeleteQuietly() noexcept {
  if (!path_.empty()) File_IO::DeleteQuietly(path_);
}

}  // namespace ns_sensor
