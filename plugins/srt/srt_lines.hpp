// Lines of a text file read as a stream: LF or CRLF ends, a UTF-8 mark at the start
// skipped, every line bounded.
#pragma once

#include <cstdint>
#include <istream>
#include <string>

#include "byte_reader.hpp"

namespace srt {

// A subtitle line longer than this is not one; it must not take all memory either.
constexpr std::size_t kMaxLineBytes = 65536;

class LineReader {
 public:
  explicit LineReader(std::istream &in) : bytes_(in) {}

  // The next line without its end; false at the end of the input. Throws
  // PX_PluginException for a NUL byte (kBinaryData) or an over-long line (kLineTooLong).
  bool Next(std::string &line);
  // The line last read (from 1).
  std::uint64_t line() const { return line_; }

 private:
  int Get();
  [[noreturn]] void Fail(std::uint32_t code) const;

  palvex_plugins::ByteReader bytes_;
  std::uint64_t line_ = 0;
};

}  // namespace srt
