#include "api/temporary_file.hpp"

#include "platform/file_io.hpp"

namespace ns_sensor {

TemporaryFile TemporaryFile::Make(std::string_view directory) {
  std::string path;
  File_IO::GetTempFile(directory, path);
  return TemporaryFile(std::move(path));
}

TemporaryFile::~TemporaryFile() { DeleteQuietly(); }

TemporaryFile &TemporaryFile::operator=(TemporaryFile &&other) noexcept {
  if (this != &other) {
    DeleteQuietly();
    path_ = std::exchange(other.path_, {});
  }
  return *this;
}

void TemporaryFile::DeleteQuietly() noexcept {
  if (path_.empty()) return;
  File_IO::DeleteQuietly(path_);
  path_.clear();
}

}  // namespace ns_sensor
