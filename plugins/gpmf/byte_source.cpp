#include "byte_source.hpp"

#include <cstring>
#include <filesystem>

#include "gpmf_errors.hpp"

namespace gpmf {

bool ByteSource::Read(std::uint64_t offset, std::size_t count, unsigned char *out) {
  if (offset > size() || count > size() - offset) return false;
  if (count == 0) return true;
  if (!ReadAt(offset, count, out)) return false;
  bytesRead_ += count;
  return true;
}

// Paths arrive as UTF-8; on Windows the narrow open would read them in the ANSI code page.
FileSource::FileSource(const std::string &path)
    : in_(std::filesystem::path(std::u8string(path.begin(), path.end())), std::ios::binary) {
  if (!in_) Fail(kCannotRead);
  in_.seekg(0, std::ios::end);
  const std::streamoff end = in_.tellg();
  if (!in_ || end < 0) Fail(kCannotRead);
  size_ = static_cast<std::uint64_t>(end);
}

bool FileSource::ReadAt(std::uint64_t offset, std::size_t count, unsigned char *out) {
  in_.clear();
  in_.seekg(static_cast<std::streamoff>(offset));
  in_.read(reinterpret_cast<char *>(out), static_cast<std::streamsize>(count));
  return in_.gcount() == static_cast<std::streamsize>(count);
}

bool MemorySource::ReadAt(std::uint64_t offset, std::size_t count, unsigned char *out) {
  std::memcpy(out, bytes_.data() + offset, count);
  return true;
}

}  // namespace gpmf
