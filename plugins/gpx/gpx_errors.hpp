// The GPX plug-in's failure codes, handed to the library in the error record. Unless a
// row says otherwise, detail1 is the line and detail2 the column (both from 1) where the
// reader stopped.
#pragma once

#include <cstdint>

namespace gpx {

enum ErrorCode : std::uint32_t {
  kUnsupportedHost = 3200,   // the library's tables are older than version 1 (no details)
  kCannotRead = 3201,        // the input cannot be opened or read (detail1: bytes read)
  kMalformedXml = 3202,      // not well-formed XML, binary data, entity declarations, too deep
  kNotGpx = 3203,            // empty, or the root element is not <gpx>
  kBadCoordinates = 3204,    // a point's lat or lon is missing, not a number, or out of range
  kBadNumber = 3205,         // a known value (ele, speed, course, hr, ...) is not a number in range
  kBadTime = 3206,           // a point's <time> is not an ISO 8601 date and time
  kNoTimedPoints = 3207,     // no track or route point has a time (no details)
  kTooManyPaths = 3208,      // more tracks and routes than kMaxPaths (line of the first too many)
};

}  // namespace gpx
