// What a point's elements mean: the quantities the reader knows by local name (any
// namespace prefix), with the display name and match name their streams get.
#pragma once

#include <string_view>

namespace gpx {

enum class FieldRole {
  kSpeed,    // folded into the point's speed (m/s)
  kCourse,   // folded into the point's heading (degrees from north)
  kMeasure,  // a stream of its own
};

struct PointField {
  std::string_view localName;  // lower case; matched without regard to case
  FieldRole role;
  std::string_view displayName;
  std::string_view matchName;
};

// The known field of a local name ("gpxtpx:hr" and "HR" both give heart rate), or null.
const PointField *FindPointField(std::string_view localName);

// The part of a qualified XML name after its prefix.
std::string_view LocalName(std::string_view qualifiedName);

}  // namespace gpx
