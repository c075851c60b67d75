// What `info` and `validate` report of an opened file besides its outline: the file
// information, the video sync list, and the words and numbers both print.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "palvex/host.hpp"

namespace palvex::cli {

struct FileReport {
  PX_FileInfo info;
  PX_VideoSyncTimeList sync;
};

// False when a query reported an error (in errors).
bool ReadFileReport(ISensorFileHandler *file, palvex::host::ErrorLog &errors, FileReport &report);

// The words of the codes: "group", "dynamic", "static", "other"; the dataType "type"
// ("number", "paddedString", ...; "unknown"); "linear", "hold" (empty when neither);
// "timecode", "utc", "none".
const char *NodeTypeWord(uint32_t nodeType);
const char *DataTypeWord(uint32_t kind);
const char *InterpolationWord(uint32_t interpolation);
const char *TimeKindWord(uint32_t timeKind);

// A time's seconds as a number; empty when the library could not express them.
std::optional<double> SecondsOf(const palvex::host::Time &time);

// Where seconds count from. Timecode: 00:00:00:00 (three frame digits above 99 frames per
// second). UTC: the earliest sample time of the file, which is the time that reads as 0
// seconds; it is looked for among the first and last sample times of the dynamic nodes
// seen, and failing that (sets whose earliest sample stands inside) by asking each set for
// its samples at 0 seconds. Empty for files without time information or samples.
class TimeOriginFinder {
 public:
  void See(const PX_DynamicDataInfo &node);
  std::optional<std::string> Origin(ISensorFileHandler *file, const PX_FileInfo &info) const;

 private:
  std::optional<std::string> atZero_;
  std::vector<std::string> sampleSetIds_;
};

}  // namespace palvex::cli
