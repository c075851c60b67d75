// The bytes of a stream, read in blocks so that a file of any size costs one block, with
// the count of bytes taken: the offset a reader reports with a fault. The text readers of
// the bundled plug-ins share it; each keeps its own rules (lines, quotes, NUL bytes).
#pragma once

#include <array>
#include <cstdint>
#include <istream>

namespace palvex_plugins {

class ByteReader {
 public:
  static constexpr int kEnd = -1;
  // The stream failed to read (not the end of it).
  static constexpr int kReadFailed = -2;

  explicit ByteReader(std::istream &in) : in_(in) {}

  // The next byte (0 to 255) without taking it, kEnd or kReadFailed.
  int Peek() {
    if (at_ == end_) {
      in_.read(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
      if (in_.bad()) return kReadFailed;
      at_ = 0;
      end_ = static_cast<std::size_t>(in_.gcount());
      if (end_ == 0) return kEnd;
    }
    return static_cast<unsigned char>(buffer_[at_]);
  }
  // The next byte, taken; kEnd or kReadFailed as Peek.
  int Get() {
    const int c = Peek();
    if (c >= 0) {
      ++at_;
      ++taken_;
    }
    return c;
  }
  std::uint64_t taken() const { return taken_; }

 private:
  std::istream &in_;
  std::array<char, 65536> buffer_{};
  std::size_t at_ = 0;
  std::size_t end_ = 0;
  std::uint64_t taken_ = 0;
};

}  // namespace palvex_plugins
