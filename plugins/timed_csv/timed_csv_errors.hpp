// The timed CSV converter's own failure codes, handed to the library in the error record.
// detail1 is the line number (from 1) and detail2 the column (from 1) or byte offset, -1
// when not set. docs/formats.md lists them for users.
#pragma once

#include <cstdint>

namespace timed_csv {

enum ErrorCode : std::uint32_t {
  kUnsupportedHost = 3300,  // the library's tables are older than version 1
  kCannotRead = 3301,       // the input cannot be opened or read
  kNoTimeColumn = 3302,     // the header has no time column whose first value is a time
  kBadTime = 3303,          // a time cell is not in the form of the column's first time (line, column)
  kZoneMismatch = 3304,     // a time with a zone among times without one, or the reverse (line, column)
  kNotANumber = 3305,       // a cell of a numeric column is not a number (line, column)
  kBinaryData = 3306,       // a NUL byte: not a text file (line, byte offset)
  kRecordTooLong = 3307,    // a record longer than kMaxRecordBytes (line, byte offset)
  kTooManyColumns = 3308,   // a header with more than kMaxColumns columns (line 1, column count)
};

}  // namespace timed_csv
