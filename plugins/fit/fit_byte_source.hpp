// The input as a stream of bytes read in blocks: the decoder never holds more than one
// block of the file, whatever its size, and counts the bytes it read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <optional>
#include <vector>

namespace palvex_fit {

class ByteSource {
 public:
  explicit ByteSource(std::istream &in);

  // Bytes in the whole input, when the stream can tell (a file can).
  std::optional<std::uint64_t> size() const { return size_; }

  // Copies up to `count` bytes to `out`; fewer only at the end of the input.
  std::size_t Read(std::uint8_t *out, std::size_t count);
  // Offset of the next byte from the start of the input.
  std::uint64_t offset() const { return consumed_; }
  // Bytes taken from the stream so far (a block may run ahead of offset()).
  std::uint64_t bytesRead() const { return fetched_; }

 private:
  bool Refill();

  std::istream &in_;
  std::optional<std::uint64_t> size_;
  std::vector<std::uint8_t> block_;
  std::size_t next_ = 0;
  std::size_t end_ = 0;
  std::uint64_t consumed_ = 0;
  std::uint64_t fetched_ = 0;
};

}  // namespace palvex_fit
