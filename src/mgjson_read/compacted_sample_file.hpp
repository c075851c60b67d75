// The temporary file that holds the compacted text of a file's "dataDynamicSamples": made
// in the system's temporary directory (a name starting "PXT") when the parser meets the
// array, written once in chunks, then mapped read-only for as long as its owner lives.
// Its owner's destruction unmaps, closes and deletes it, so no failure path and no
// ordinary close leaves it behind.
//
// Faults carry the temporary file's own messages: TempDirNotFound (14) when the
// directory is missing, TempFileNameError / TempFileNameCopyError /
// FailureOpeningTempFile (15) when no file can be made or opened, FailureWritingTempFile
// (21) when writing fails.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "file_access/file_mapper.hpp"
#include "platform/file_io.hpp"

namespace ns_sensor {

class CompactedSampleFile {
 public:
  // Creates the file and opens it for writing.
  CompactedSampleFile();
  ~CompactedSampleFile();
  CompactedSampleFile(const CompactedSampleFile &) = delete;
  CompactedSampleFile &operator=(const CompactedSampleFile &) = delete;

  // Appends text while the file is being written.
  void Append(std::string_view text);

  // Closes the writing handle and maps what was written; the text stays mapped until the
  // object goes. A file that received nothing maps to an empty text.
  void FinishWriting();

  // The mapped text; empty before FinishWriting.
  std::string_view text() const { return mapping_ ? mapping_->view() : std::string_view(); }
  std::uint64_t bytesWritten() const { return written_; }
  const std::string &path() const { return path_; }

 private:
  void DeleteQuietly() noexcept;

  std::string path_;
  File_IO::Handle handle_ = File_IO::kNoHandle;
  std::uint64_t written_ = 0;
  std::unique_ptr<FileMapper> mapping_;
};

}  // namespace ns_sensor
