// The writer's output file: text collected in memory and appended to the file in pieces
// of about kPendingTextBound bytes, and the few ways the file is cut back when writing
// fails. Every write is checked: a full disk raises "Disk Full" (34), any other failure
// the file layer's own error, never a silently short file.
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "plugin_model/scoped_file.hpp"

namespace PX_PLUGIN {

// Pending text is appended to the file once it grows past this many bytes.
inline constexpr std::size_t kPendingTextBound = 0x100000;

class WriterOutput {
 public:
  explicit WriterOutput(std::string path);

  const std::string &Path() const { return path_; }

  // Replaces whatever is at the path by a file holding exactly text, and closes it.
  void Create(std::string_view text);

  // The text waiting to be appended. Callers append to it and then call FlushIfFull.
  std::string &Pending() { return pending_; }
  void FlushIfFull() {
    if (pending_.size() > kPendingTextBound) Flush();
  }
  // Appends the pending text at the end of the file (opening it when closed). The first
  // append of a piece of work records where the file ended before it (PieceStart).
  void Flush();
  // Flush, then close the file.
  void FlushAndClose();
  // Flush, then append text straight from the caller's memory: for text assembled in a
  // block of its own (a sample set), which would only be copied if it went through the
  // pending text.
  void WriteThrough(std::string_view text);

  // Starts a piece of work that can be withdrawn (a sample set): its start is not known
  // until its first append.
  void BeginPiece() { pieceStart_.reset(); }
  // Where the file ended before the current piece's first append; empty while the piece
  // has appended nothing.
  const std::optional<std::uint64_t> &PieceStart() const { return pieceStart_; }

  // Drops the pending text and closes the file, on a path that is already failing.
  void Abandon() noexcept;
  // Makes position the end of the file (the file is closed afterwards).
  void CutBackTo(std::uint64_t position);
  // Leaves an empty file at the path, as far as the file system lets it. Never fails.
  void Empty() noexcept;

 private:
  void AppendToFile(std::string_view text);

  std::string path_;
  std::string pending_;
  ScopedFile file_;
  std::optional<std::uint64_t> pieceStart_;
};

// Copies a text to out and returns its end: the one step of every piece an OutputBlock
// is given.
inline char *Put(char *out, std::string_view text) {
  std::memcpy(out, text.data(), text.size());
  return out + text.size();
}

// Text written through a pointer into a block of its own, after one room check per piece,
// and handed to the file straight from there once the block holds more than
// kPendingTextBound bytes: for the large parts of a file (the outline, a sample set),
// where appending to a string byte by byte would cost more than making the text.
class OutputBlock {
 public:
  // slack: room beyond the bound, the largest piece the block itself takes.
  OutputBlock(WriterOutput &output, std::size_t slack);

  // Writes a piece of at most bound bytes: write(out) writes at out and returns the end. A
  // piece larger than the slack is written into memory of its own and goes to the file
  // from there.
  template <class Write>
  void Piece(std::size_t bound, Write &&write) {
    if (bound <= slack_) {
      if (used_ + bound > capacity_) HandOn();
      Written(write(data_.get() + used_));
    } else {
      HandOn();
      const std::unique_ptr<char[]> text(new char[bound]);
      const char *const end = write(text.get());
      output_.WriteThrough({text.get(), static_cast<std::size_t>(end - text.get())});
    }
  }
  // The text so far to the file.
  void HandOn();
  // The text so far to the output's pending text instead, for what follows to join it.
  void HandOnToPending();

 private:
  void Written(const char *end) {
    used_ = static_cast<std::size_t>(end - data_.get());
    if (used_ > kPendingTextBound) HandOn();
  }

  WriterOutput &output_;
  std::size_t slack_;
  std::size_t capacity_;
  std::unique_ptr<char[]> data_;
  std::size_t used_ = 0;
};

}  // namespace PX_PLUGIN
