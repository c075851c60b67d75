// What the parser keeps of validated time information: the file's frame rate or UTC form,
// the length of one of its time strings, and the video sync list.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "mgjson_read/rapidjson_config.hpp"
#include "palvex/records.h"

namespace ns_sensor {

struct TimecodeSettings {
  std::uint32_t frameRateValue = 0;
  std::uint32_t frameRateScale = 1;
  bool dropFrame = false;
  std::uint16_t timeStringLength = 0;  // 11 (HH:MM:SS:FF) or 12 (HH:MM:SS:FFF)
};

struct UtcSettings {
  std::uint16_t precisionLength = 0;  // fraction digits of a time
  bool isGmt = false;
  std::uint16_t timeStringLength = 0;
};

struct VideoSyncEntry {
  std::string fileName;
  std::uint32_t kind = PX_SYNC_NEITHER;  // PX_SyncKind
  std::string timeString;                // kind PX_SYNC_TIME_STRING
  std::int32_t frameNumber = 0;          // kind PX_SYNC_FRAME_NUMBER
};

// From a timecodeInfo object that passed ValidateTimecodeInfo. Refuses (code 41) a scale
// of 0, a drop-frame rate other than 29.97 or 59.94, and a nominal rate outside 1 to 999
// frames per second, which timecode strings cannot express.
TimecodeSettings ExtractTimecode(const JsonValue &timecodeInfo);

// From a utcInfo object that passed ValidateUtcInfo. Refuses (code 44) a precisionLength
// outside 0 to 9: fractions are counted in 32 bits.
UtcSettings ExtractUtc(const JsonValue &utcInfo);

// From a videoSyncTimeList array that passed ValidateVideoSyncTimeList.
std::vector<VideoSyncEntry> ExtractVideoSyncList(const JsonValue &list);

}  // namespace ns_sensor
