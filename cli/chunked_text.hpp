// Output text kept in blocks rather than in one block that grows: the text of a large
// outline (tens of megabytes) is then never copied into a bigger block as it grows, and
// takes the memory it needs instead of up to three times as much. It is also RapidJSON's
// output stream for the --json outputs (PutReserve and PutUnsafe below are the writer's
// fast path, found by argument-dependent look-up).
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

namespace palvex::cli {

class ChunkedText {
 public:
  using Ch = char;  // what RapidJSON's writer asks of a stream

  // Room for `count` more characters in the current block.
  void Reserve(std::size_t count) {
    if (current_ == nullptr || current_->size - current_->used < count) NextChunk(count);
  }
  // After Reserve only.
  void PutUnsafe(char c) { current_->bytes[current_->used++] = c; }
  void Put(char c) {
    Reserve(1);
    PutUnsafe(c);
  }
  void Append(std::string_view text) {
    Reserve(text.size());
    std::memcpy(current_->bytes.get() + current_->used, text.data(), text.size());
    current_->used += text.size();
  }
  void Flush() {}

  // Empties the text, keeping its first block for what comes next.
  void Clear() {
    if (chunks_.size() > 1) chunks_.resize(1);
    current_ = chunks_.empty() ? nullptr : &chunks_.front();
    if (current_ != nullptr) current_->used = 0;
  }

  void WriteTo(std::FILE *out) const {
    for (const Chunk &chunk : chunks_) std::fwrite(chunk.bytes.get(), 1, chunk.used, out);
  }

 private:
  static constexpr std::size_t kChunkBytes = 256 * 1024;

  struct Chunk {
    std::unique_ptr<char[]> bytes;
    std::size_t size = 0;
    std::size_t used = 0;
  };

  void NextChunk(std::size_t atLeast) {
    const std::size_t size = std::max(kChunkBytes, atLeast);
    chunks_.push_back(Chunk{std::make_unique_for_overwrite<char[]>(size), size, 0});
    current_ = &chunks_.back();
  }

  std::vector<Chunk> chunks_;
  Chunk *current_ = nullptr;  // the last block
};

inline void PutReserve(ChunkedText &text, std::size_t count) { text.Reserve(count); }
inline void PutUnsafe(ChunkedText &text, char c) { text.PutUnsafe(c); }

}  // namespace palvex::cli
