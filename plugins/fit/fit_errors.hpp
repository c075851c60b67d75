// The plug-in's own error codes (docs/formats.md, section FIT, lists them with their details).
#pragma once

#include <cstdint>

namespace palvex_fit {

enum FitErrorCode : std::uint32_t {
  kUnsupportedHost = 3600,     // the library's tables are older than version 1
  kCannotRead = 3601,          // the input cannot be opened
  kNotFitHeader = 3602,        // detail1: offset of the header, detail2: its size byte (-1: file too short)
  kHeaderCrcMismatch = 3603,   // detail1: offset of the header, detail2: part number (1 = first)
  kFileCrcMismatch = 3604,     // detail1: offset of the stored CRC, detail2: part number
  kTruncated = 3605,           // detail1: size of the file, detail2: offset where the part should end
  kUndefinedLocalType = 3606,  // detail1: offset of the record, detail2: local message type
  kMessagePastData = 3607,     // detail1: offset of the record, detail2: global message number (-1: definition)
  kBadArchitecture = 3608,     // detail1: offset of the definition, detail2: architecture byte
  kTooManySessions = 3609,     // detail1: offset of the session message, detail2: the limit
};

}  // namespace palvex_fit
