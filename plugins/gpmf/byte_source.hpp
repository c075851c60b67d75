// Where the reader gets its bytes: a file read with explicit seeks (never whole), or bytes
// in memory (tests, fuzzing). Counts what it reads, so that a test can prove the video
// was skipped.
#pragma once

#include <cstdint>
#include <fstream>
#include <string>
#include <string_view>

namespace gpmf {

class ByteSource {
 public:
  virtual ~ByteSource() = default;
  virtual std::uint64_t size() const = 0;
  // Exactly count bytes at offset into out; false when they are not all there.
  bool Read(std::uint64_t offset, std::size_t count, unsigned char *out);
  std::uint64_t bytesRead() const { return bytesRead_; }

 protected:
  virtual bool ReadAt(std::uint64_t offset, std::size_t count, unsigned char *out) = 0;

 private:
  std::uint64_t bytesRead_ = 0;
};

class FileSource final : public ByteSource {
 public:
  // path is UTF-8. Throws the plug-in's kCannotRead when the file cannot be opened.
  explicit FileSource(const std::string &path);
  std::uint64_t size() const override { return size_; }

 private:
  bool ReadAt(std::uint64_t offset, std::size_t count, unsigned char *out) override;
  std::ifstream in_;
  std::uint64_t size_ = 0;
};

class MemorySource final : public ByteSource {
 public:
  explicit MemorySource(std::string_view bytes) : bytes_(bytes) {}
  std::uint64_t size() const override { return bytes_.size(); }

 private:
  bool ReadAt(std::uint64_t offset, std::size_t count, unsigned char *out) override;
  std::string_view bytes_;
};

}  // namespace gpmf
