// The timing of a motion capture file: its frame time turned into the timecode frame rate
// of the document.
#pragma once

#include <cstdint>

#include "converters/bvh_reader.hpp"

namespace ns_sensor {

struct BvhFrameRate {
  std::uint32_t value;  // frames per second = value / scale
  std::uint32_t scale;
  bool dropFrame;       // only at 29.97 and 59.94

  bool operator==(const BvhFrameRate &) const = default;
};

// The rate of a frame time in seconds: n = 100 / seconds truncated; 2997 and 5994 are the
// two drop-frame rates, every other n gives n / 100 whole frames per second, truncated
// (0.0417 s gives 23). Raises BvhBadFrameTime (1508) unless that gives 1 to 999 frames per
// second: a frame time of 0.001 s or less, or above 1 s.
BvhFrameRate FrameRateOf(double frameSeconds);

// Reads the MOTION header from lines: skips to the line holding "Frames:" and reads the
// count after it, then to the line holding "Frame Time:" and reads the time after it; lines
// is left at the first frame. Raises BvhMalformed (1509) when either line is missing or
// the count is not a whole number, BvhBadFrameTime (1508) for a time that is not a number
// or as FrameRateOf.
BvhFrameRate ReadFrameRate(BvhLines &lines);

}  // namespace ns_sensor
