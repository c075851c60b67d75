// Reading a gust log: the text a small wind logger on a mast writes.
//
//   GUSTLOG 1 station="North Pier" mast=12.5 start=2024-05-04T06:30:00Z
//   # seconds  speed(m/s)  direction(deg)  note
//   0.0   3.2  270
//   0.5   3.6  272
//   1.0   5.9  275  gust
//
// The first line names the format and its version, then key=value fields separated by
// spaces; a value with spaces is enclosed in double quotes. "station" (the station's name)
// and "start" (the UTC time of second 0, "YYYY-MM-DDTHH:MM:SS[.fraction]" and "Z" or an
// offset) are required, "mast" (height in metres) is optional, other keys are ignored.
// Every other line is a reading: seconds since the start (at most three decimals, never
// decreasing), wind speed, wind direction in degrees (0 to 360), and an optional note (the
// rest of the line). Blank lines and lines starting with '#' are skipped.
#pragma once

#include <cstdint>
#include <istream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace gust {

// The example's own failure codes, handed to the library in the error record; the two
// details say where: detail1 the line number (from 1), detail2 the field (from 1) or -1.
enum ErrorCode : std::uint32_t {
  kUnsupportedHost = 3100,  // the library's tables are older than version 1
  kCannotRead = 3101,     // the input cannot be opened or read
  kBadHeader = 3102,      // the first line is not a gust log header of version 1
  kBadReading = 3103,     // a field of a reading is missing or not a number in range
  kTimeBackwards = 3104,  // a reading's time is before the previous one's
};

struct Header {
  std::string station;
  std::optional<double> mastHeight;
  std::string start;  // as written; the library reads it
};

struct Reading {
  std::uint32_t milliseconds = 0;  // since the start
  double speed = 0;
  double direction = 0;
  std::string note;  // empty: none
};

struct GustLog {
  Header header;
  std::vector<Reading> readings;
};

// The header of a first line, or nothing when the line is not one.
std::optional<Header> ReadHeader(std::string_view line);

// A whole log. Throws PX_PLUGIN::PX_PluginException with the codes above.
GustLog ReadGustLog(std::istream &in);

}  // namespace gust
