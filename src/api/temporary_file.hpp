// A file of ours that goes when its owner goes: the MGJSON file a conversion wrote, until
// the host asks to keep it somewhere.
#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace ns_sensor {

class TemporaryFile {
 public:
  TemporaryFile() = default;
  // Takes over the file at path.
  explicit TemporaryFile(std::string path) : path_(std::move(path)) {}
  // A new empty file named "PXT..." in directory (the system's temporary directory when
  // empty); the file layer's errors raise.
  static TemporaryFile Make(std::string_view directory);
  // Deletes the file; a failure to delete is dropped, since nothing could be done about it.
  ~TemporaryFile();
  TemporaryFile(TemporaryFile &&other) noexcept : path_(std::exchange(other.path_, {})) {}
  TemporaryFile &operator=(TemporaryFile &&other) noexcept;
  TemporaryFile(const TemporaryFile &) = delete;
  TemporaryFile &operator=(const TemporaryFile &) = delete;

  const std::string &path() const { return path_; }
  bool empty() const { return path_.empty(); }

 private:
  void DeleteQuietly() noexcept;

  std::string path_;
};

}  // namespace ns_sensor
