// The drone telemetry subtitle converter's own failure codes, handed to the library in the
// error record. detail1 is the line number (from 1), detail2 the byte offset or -1.
// docs/formats.md lists them for users.
#pragma once

#include <cstdint>

namespace srt {

enum ErrorCode : std::uint32_t {
  kUnsupportedHost = 3400,  // the library's tables are older than version 1
  kCannotRead = 3401,       // the input cannot be opened or read
  kBadBlock = 3402,         // a block does not start with a counter or a time line (line)
  kBadTimeLine = 3403,      // a block's time line is not "HH:MM:SS,mmm --> HH:MM:SS,mmm" (line)
  kBinaryData = 3404,       // a NUL byte: not a text file (line, byte offset)
  kLineTooLong = 3405,      // a line longer than kMaxLineBytes (line, byte offset)
  kBadDate = 3406,          // a date line names a day or time that does not exist (line)
};

}  // namespace srt
