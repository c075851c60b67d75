#include "api/temporary_file.hpp"

#include <new>

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
  // The deletion copies the path for the system call; when that copy finds no memory,
  // one more try is cheaper than a file left behind.
  for (int attempt = 0; attempt < 2; ++attempt) {
    try {
      File_IO::Delete(path_);
      break;
    } catch (const std::bad_alloc &) {
    } catch (...) {
      break;
    }
  }
  path_.clear();
}

}  // namespace ns_sensor
