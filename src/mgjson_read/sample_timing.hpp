// The timing of a file as its samples are read: which time texts it holds, how long each
// is, and the check every sample time passes when the file is opened.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "mgjson_read/time_values.hpp"

namespace ns_sensor {

struct SampleTiming {
  bool known = false;        // the file holds timecode or UTC information
  bool timecode = false;
  FrameRate rate;            // timecode
  unsigned precision = 0;    // UTC fraction digits
  bool utcIsGmt = true;      // UTC texts end in "Z", else in a signed HH:MM offset
  std::size_t textLength = 0;  // bytes of every time text of the file
};

// Whether `text` is a time text of this timing: its length, digits wherever the form has
// a number (separators are not examined, as the comparisons do not examine them), and
// every field inside its range: minutes and seconds below 60 and frames below the
// nominal rate for timecode; a real calendar day, hours below 24, minutes below 60,
// seconds up to 60 (a leap second) and a "Z" or a signed offset below 24:00 for UTC.
// Such texts are ordered by CompareSMPTETime or CompareUTCTime exactly as by time, and
// TextToSeconds reads them without a fault.
bool IsReadableTime(const SampleTiming &timing, std::string_view text);

// CompareSMPTETime or CompareUTCTime, as the timing says.
int CompareTimes(const SampleTiming &timing, std::string_view left, std::string_view right);

}  // namespace ns_sensor
