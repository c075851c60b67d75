#include "plugin_model/writer_output.hpp"

#include <algorithm>

#include "platform/file_io.hpp"

namespace PX_PLUGIN {

namespace File_IO = ns_sensor::File_IO;

WriterOutput::WriterOutput(std::string path) : path_(std::move(path)) {}

void WriterOutput::Create(std::string_view text) {
  file_.CloseQuietly();
  File_IO::Create(path_, false, true);
  ScopedFile file(File_IO::Open(path_, false, true));
  File_IO::Write(file.get(), text.data(), text.size());
  file.Close();
}

void WriterOutput::Flush() {
  if (pending_.empty()) return;
  AppendToFile(pending_);
  pending_.clear();
}

void WriterOutput::WriteThrough(std::string_view text) {
  Flush();
  if (!text.empty()) AppendToFile(text);
}

void WriterOutput::AppendToFile(std::string_view text) {
  if (!file_.IsOpen()) file_ = ScopedFile(File_IO::Open(path_, false, true));
  if (!pieceStart_) pieceStart_ = File_IO::Seek(file_.get(), 0, File_IO::kFromEnd);
  // Write takes at most kLargestRequest bytes at a time; only a sample widened to an
  // outlandish pattern comes near that.
  while (!text.empty()) {
    const auto piece = static_cast<std::size_t>(std::min<std::uint64_t>(text.size(), File_IO::kLargestRequest));
    File_IO::Write(file_.get(), text.data(), piece);
    text.remove_prefix(piece);
  }
}

void WriterOutput::FlushAndClose() {
  Flush();
  if (file_.IsOpen()) file_.Close();
}

void WriterOutput::Abandon() noexcept {
  pending_.clear();
  file_.CloseQuietly();
}

void WriterOutput::CutBackTo(std::uint64_t position) {
  Abandon();
  ScopedFile file(File_IO::Open(path_, false, false));
  File_IO::SetEOF(file.get(), position);
  file.Close();
}

void WriterOutput::Empty() noexcept {
  Abandon();
  try {
    File_IO::Create(path_, false, true);
  } catch (...) {
    // Nothing better can be done: the caller's own failure is what gets reported.
  }
}

OutputBlock::OutputBlock(WriterOutput &output, std::size_t slack)
    : output_(output), slack_(slack), capacity_(kPendingTextBound + slack), data_(new char[capacity_]) {}

void OutputBlock::HandOn() {
  output_.WriteThrough({data_.get(), used_});
  used_ = 0;
}

void OutputBlock::HandOnToPending() {
  output_.Pending().append(data_.get(), used_);
  used_ = 0;
}

}  // namespace PX_PLUGIN
