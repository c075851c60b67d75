// One open File_IO handle, closed when its owner goes, so that no failure path of the
// sample store or the stream can leave a handle open.
#pragma once

#include <utility>

#include "platform/file_io.hpp"

namespace PX_PLUGIN {

class ScopedFile {
 public:
  ScopedFile() noexcept = default;
  explicit ScopedFile(ns_sensor::File_IO::Handle handle) noexcept : handle_(handle) {}
  ~ScopedFile() { CloseQuietly(); }
  ScopedFile(ScopedFile &&other) noexcept
      : handle_(std::exchange(other.handle_, ns_sensor::File_IO::kNoHandle)) {}
  ScopedFile &operator=(ScopedFile &&other) noexcept {
    if (this != &other) {
      CloseQuietly();
      handle_ = std::exchange(other.handle_, ns_sensor::File_IO::kNoHandle);
    }
    return *this;
  }
  ScopedFile(const ScopedFile &) = delete;
  ScopedFile &operator=(const ScopedFile &) = delete;

  ns_sensor::File_IO::Handle get() const noexcept { return handle_; }
  bool IsOpen() const noexcept { return handle_ != ns_sensor::File_IO::kNoHandle; }

  // Closes the handle and reports a failure to close; the handle counts as gone either way.
  void Close() { ns_sensor::File_IO::Close(std::exchange(handle_, ns_sensor::File_IO::kNoHandle)); }

  // Closes the handle on a path that is already failing or has nothing to report.
  void CloseQuietly() noexcept {
    try {
      Close();
    } catch (...) {
      // The handle is given up; a failure to close has nowhere better to go.
    }
  }

 private:
  ns_sensor::File_IO::Handle handle_ = ns_sensor::File_IO::kNoHandle;
};

}  // namespace PX_PLUGIN
