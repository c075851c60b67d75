// The frame rate of a motion capture file from its frame time.
#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "api/px_exception.hpp"
#include "converters/bvh_timing.hpp"

namespace ns_sensor {
namespace {

// The rate read as "value/scale", with " DF" for drop frame, or the failure's code.
template <typename Read>
std::string RateText(Read &&read) {
  try {
    const BvhFrameRate rate = read();
    return std::to_string(rate.value) + "/" + std::to_string(rate.scale) + (rate.dropFrame ? " DF" : "");
  } catch (const PX_Exception &failure) {
    return std::to_string(failure.code());
  }
}

TEST(BvhTiming, FrameTimesGiveTruncatedRates) {
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const struct {
    double seconds;
    const char *rate;
  } cases[] = {
      {0.0333333, "30/1"}, {0.0333667, "30000/1001 DF"}, {0.0166833, "60000/1001 DF"}, {0.041666, "24/1"},
      {0.04, "25/1"},      {0.016666, "60/1"},           {0.008333333, "120/1"},       {1.0, "1/1"},
      // Hundredths of a frame per second are cut, not rounded: 2399, 5999, 2999, 99900.
      {0.0416667, "23/1"}, {0.0166667, "59/1"}, {0.0333334, "29/1"}, {0.00100001, "999/1"},
      // Too fast, none, or below one frame per second (no timecode rate).
      {0.001, "1508"}, {0.0, "1508"}, {-0.0333333, "1508"}, {1.0001, "1508"}, {kNaN, "1508"}, {kInfinity, "1508"},
  };
  for (const auto &c : cases) EXPECT_EQ(RateText([&] { return FrameRateOf(c.seconds); }), c.rate) << c.seconds;
}

TEST(BvhTiming, MotionHeaderLines) {
  const struct {
    const char *text;
    const char *rate;
  } cases[] = {
      {"MOTION\nFrames: 2\nFrame Time: 0.04\n", "25/1"},
      {"\n  Frames:\t7 more\nnoise\nFrame Time:0.0333667\n", "30000/1001 DF"},
      {"MOTION\nFrames: 2\n", "1509"},           {"MOTION\nFrame Time: 0.04\n", "1509"},
      {"Frames:\nFrame Time: 0.04\n", "1509"},   {"Frames: two\nFrame Time: 0.04\n", "1509"},
      {"Frames: 2.5\nFrame Time: 0.04\n", "1509"}, {"Frames: 2\nFrame Time:\n", "1508"},
      {"Frames: 2\nFrame Time: fast\n", "1508"}, {"Frames: 2\nFrame Time: -0.04\n", "1508"},
  };
  for (const auto &c : cases) {
    EXPECT_EQ(RateText([&] {
                BvhLines lines(c.text);
                return ReadFrameRate(lines);
              }),
              c.rate)
        << c.text;
  }
}

}  // namespace
}  // namespace ns_sensor
