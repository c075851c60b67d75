// Output text kept in blocks of a fixed size rather than in one block that grows: the
// text of a large outline (tens of megabytes) is then never copied into a bigger block as
// it grows, and takes the memory it needs instead of up to three times as much. It is
// also RapidJSON's output stream for the --json outputs.
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

  void Put(char c) {
    if (used_ == kChunkBytes) NextChunk();
    current_[used_++] = c;
  }
  void Append(std::string_view text) {
    while (!text.empty()) {
      if (used_ == kChunkBytes) NextChunk();
      const std::size_t piece = std::min(text.size(), kChunkBytes - used_);
      std::memcpy(current_ + used_, text.data(), piece);
      used_ += piece;
      text.remove_prefix(piece);
    }
  }
  void Flush() {}

  // Empties the text, keeping its first block for what comes next.
  void Clear() {
    if (chunks_.size() > 1) chunks_.resize(1);
    current_ = chunks_.empty() ? nullptr : chunks_.front().get();
    used_ = chunks_.empty() ? kChunkBytes : 0;
  }

  void WriteTo(std::FILE *out) const {
    for (std::size_t chunk = 0; chunk < chunks_.size(); ++chunk) {
      const bool last = chunk + 1 == chunks_.size();
      std::fwrite(chunks_[chunk].get(), 1, last ? used_ : kChunkBytes, out);
    }
  }

 private:
  static constexpr std::size_t kChunkBytes = 256 * 1024;

  void NextChunk() {
    chunks_.push_back(std::make_unique<char[]>(kChunkBytes));
    current_ = chunks_.back().get();
    used_ = 0;
  }

  std::vector<std::unique_ptr<char[]>> chunks_;
  char *current_ = nullptr;
  std::size_t used_ = kChunkBytes;  // full: the first character starts a block
};

}  // namespace palvex::cli
