// The writer's output file: text collected in memory and appended to the file in pieces
// of about kPendingTextBound bytes, and the few ways the file is cut back when writing
// fails. Every write is checked: a full disk raises "Disk Full" (34), any other failure
// the file layer's own error, never a silently short file.
#pragma once

#include <cstdint>
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

}  // namespace PX_PLUGIN
