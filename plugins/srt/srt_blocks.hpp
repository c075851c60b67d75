// The blocks of an SRT file, read as a stream: a counter line, a time line
// "HH:MM:SS,mmm --> HH:MM:SS,mmm", text lines, a blank line.
#pragma once

#include <cstdint>
#include <istream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "srt_lines.hpp"

namespace srt {

// Text lines a block keeps; telemetry needs a handful, further lines are dropped.
constexpr std::size_t kMaxBlockLines = 64;

struct SrtBlock {
  std::uint64_t line = 0;               // of the time line
  std::int64_t startMilliseconds = 0;   // from the start of the video
  std::uint64_t firstTextLine = 0;      // line of text[0]
  std::vector<std::string> text;
};

class SrtBlocks {
 public:
  explicit SrtBlocks(std::istream &in) : lines_(in) {}

  // The next block; false at the end of the input. A block cut off at the end before its
  // time line is dropped; a block without text comes back with none. Throws
  // PX_PluginException with the codes of srt_errors.hpp.
  bool Next(SrtBlock &block);

 private:
  // Throws code for the line just read, unless it was the file's last line (cut off).
  void FailUnlessLast(std::uint32_t code);

  LineReader lines_;
  std::string line_;
};

// The start of a time line in milliseconds; nullopt when the line is not one.
std::optional<std::int64_t> ReadStartTime(std::string_view line);

}  // namespace srt
