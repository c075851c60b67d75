// The library-side records of the file handler's raising forms (declared in
// palvex/interfaces.hpp). The client forms fill one of these, then hand its values to the
// host through the callback table; nothing here is ever seen by a host.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "api/px_exception.hpp"
#include "file_access/data_path.hpp"
#include "file_access/property_records.hpp"
#include "mgjson_read/time_info_extraction.hpp"
#include "mgjson_read/time_values.hpp"
#include "palvex/records.h"

namespace ns_sensor {

// Every query first checks its output record: a null one raises InvalidPointer (1) with
// the record's name quoted.
inline void RequireRecord(const void *record, std::string_view name) {
  if (record == nullptr) Raise(Msg::InvalidPointer, Quoted(name));
}

// A time as the file writes it and as seconds from the file's time origin; seconds has
// denominator 0 when the text cannot be turned into seconds (or there is no time).
struct PX_TimeValue {
  std::string text;
  RationalTime seconds{0, 0};
};

// A node's "dataType": its type and the property objects that type uses.
struct PX_DataTypeInfo {
  std::uint32_t kind = PX_TYPE_UNKNOWN;  // PX_DataTypeKind
  std::optional<PX_NumberStringProperties> numberString;
  std::optional<PX_NumberArrayProperties> numberArray;
  std::optional<PX_PaddedStringProperties> paddedString;
};

// The "value" of a static node, read by its data type.
struct PX_StaticValueInfo {
  std::uint32_t kind = PX_TYPE_UNKNOWN;  // PX_DataTypeKind
  bool boolean = false;
  double number = 0.0;
  std::string text;
  std::vector<double> numbers;
};

// The children of a group as paths: the group's own path once and each child's final
// item (a group may have a hundred thousand children, each of whose whole paths would
// repeat the group's).
struct PX_GroupChildren {
  PX_DataPath parent;               // root item first, every item named
  std::vector<PX_PathItem> children;  // one per child, in order

  std::size_t size() const { return children.size(); }
  // Child `child`'s whole path.
  PX_DataPath PathOf(std::size_t child) const {
    PX_DataPath path = parent;
    path.push_back(children[child]);
    return path;
  }
};

struct PX_GroupChildInfo {
  std::uint32_t nodeType = PX_NODE_OTHER;  // PX_NodeType
  std::string displayName;
  std::string matchName;
};

struct PX_StaticDataInfo {
  std::string displayName;
  std::string matchName;
  PX_DataTypeInfo dataType;
  PX_StaticValueInfo value;
};

struct PX_DynamicDataInfo {
  std::string displayName;
  std::string matchName;
  std::string sampleSetId;
  PX_DataTypeInfo dataType;
  std::uint32_t interpolation = PX_INTERPOLATION_NONE;  // PX_Interpolation
  bool hasExpectedFrequency = false;
  std::uint32_t sampleCount = 0;
  std::string maxInterSampleDuration;  // empty when absent
  PX_TimeValue firstSampleTime;        // both without seconds when the set has no samples
  PX_TimeValue lastSampleTime;
};

struct PX_FileInfo {
  std::uint32_t frameRateValue = 0;  // timecode frame rate; 0/1 for other files
  std::uint32_t frameRateScale = 1;
  std::string inputPath;   // the path the file was opened with
  std::string mgjsonPath;  // the MGJSON file read
  std::uint32_t schemaVersion = 0;  // 1 or 2
  std::uint32_t timeKind = PX_TIME_NONE;
  bool dropFrame = false;
  std::uint32_t utcPrecision = 0;
  bool utcIsGmt = false;
  bool converted = false;
  std::string version;
  std::string creator;
};

struct PX_VideoSyncTimeList {
  std::vector<VideoSyncEntry> entries;  // in file order
};

}  // namespace ns_sensor
