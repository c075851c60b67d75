// Sample times as the sample reader sees them: which texts a file accepts, and the quick
// seconds and order of accepted texts, held to the general time routines.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "mgjson_read/sample_seconds.hpp"
#include "mgjson_read/sample_timing.hpp"

namespace ns_sensor {
namespace {

SampleTiming Utc(unsigned precision, bool gmt = true) {
  SampleTiming timing;
  timing.known = true;
  timing.precision = precision;
  timing.utcIsGmt = gmt;
  timing.textLength = UtcTextLength(precision, !gmt);
  return timing;
}

SampleTiming Timecode(std::uint32_t value, std::uint32_t scale, bool dropFrame) {
  SampleTiming timing;
  timing.known = true;
  timing.timecode = true;
  timing.rate = FrameRate{value, scale, dropFrame};
  timing.textLength = SmpteTextLength(timing.rate);
  return timing;
}

TEST(SampleTime, AcceptsOnlyTimesOfTheFilesForm) {
  const struct {
    SampleTiming timing;
    const char *text;
    bool readable;
  } cases[] = {
      {Utc(3), "2024-02-29T23:59:60.999Z", true},
      {Utc(3), "2023-02-29T00:00:00.000Z", false},
      {Utc(3), "2024-04-31T00:00:00.000Z", false},
      {Utc(3), "2024-00-10T00:00:00.000Z", false},
      {Utc(3), "2024-01-10T24:00:00.000Z", false},
      {Utc(3), "2024-01-10T00:60:00.000Z", false},
      {Utc(3), "2024-01-10T00:00:61.000Z", false},
      {Utc(3), "2024-01-10T00:00:00.00aZ", false},
      {Utc(3), "2024-01-10T00:00:00.000+", false},
      {Utc(3), "2024-01-10T00:00:00.0000Z", false},
      {Utc(3), "2024/01/10 00.00.00,000Z", true},  // separators are not examined
      {Utc(0), "2024-01-10T00:00:00Z", true},
      {Utc(0), "2024-01-10T00:00:00.Z", false},
      {Utc(2, false), "2024-01-10T00:00:00.00-05:30", true},
      {Utc(2, false), "2024-01-10T00:00:00.00Z05:30", false},
      {Utc(2, false), "2024-01-10T00:00:00.00+24:00", false},
      {Timecode(30000, 1001, true), "23:59:59:29", true},
      {Timecode(30000, 1001, true), "99:00:00:00", true},
      {Timecode(30000, 1001, true), "00:00:00:30", false},
      {Timecode(25, 1, false), "00:00:00:24", true},
      {Timecode(25, 1, false), "00:00:00:25", false},
      {Timecode(120, 1, false), "00:00:00:119", true},
      {Timecode(120, 1, false), "00:00:00:99", false},
      {Timecode(120, 1, false), "-0:00:00:000", false},
  };
  for (const auto &c : cases) EXPECT_EQ(IsReadableTime(c.timing, c.text), c.readable) << c.text;
  EXPECT_FALSE(IsReadableTime(SampleTiming{}, "00:00:00:00"));
}

// Every frame of two hours at 29.97 and 59.94 drop frame, and a day of 25 fps in steps.
TEST(SampleTime, TimecodeSecondsAndOrderMatchTheTimeRoutines) {
  const SampleTiming timings[] = {Timecode(30000, 1001, true), Timecode(60000, 1001, true), Timecode(25, 1, false)};
  for (const SampleTiming &timing : timings) {
    TimeAxis axis;
    axis.timecode = true;
    axis.rate = timing.rate;
    const SampleSeconds seconds(timing, axis);
    const std::uint64_t frames = timing.rate.value == 25 ? 25 * 86400 : 2 * 3600 * 60;
    const std::uint64_t step = timing.rate.value == 25 ? 997 : 1;
    std::string previous = FrameNumberToSmpte(0, timing.rate);
    for (std::uint64_t frame = 0; frame < frames; frame += step) {
      const std::string text = FrameNumberToSmpte(frame, timing.rate);
      ASSERT_TRUE(IsReadableTime(timing, text)) << text;
      ASSERT_EQ(seconds.Of(text), SmpteToTime(text, timing.rate)) << text;
      ASSERT_EQ(CompareReadableTimes(timing, previous, text) < 0, CompareSMPTETime(previous, text) < 0) << text;
      ASSERT_EQ(CompareReadableTimes(timing, text, text), 0);
      previous = text;
    }
  }
}

TEST(SampleTime, UtcSecondsAndOrderMatchTheTimeRoutines) {
  const std::vector<std::string> texts = {
      "2024-01-01T00:00:00.000Z", "2024-01-01T00:00:00.001Z", "2024-02-28T23:59:59.999Z", "2024-02-29T12:00:00.500Z",
      "2024-12-31T23:59:60.250Z", "2025-01-01T00:00:00.000Z", "2100-03-01T00:00:00.000Z", "2160-01-01T00:00:00.125Z",
      "2023-12-31T23:59:59.999Z"};
  const SampleTiming timing = Utc(3);
  for (const std::string &origin : {texts[0], texts[2]}) {
    TimeAxis axis;
    axis.precision = 3;
    ASSERT_EQ(ParseUtcTime(origin, 3, axis.origin), TimeStatus::Ok);
    const SampleSeconds seconds(timing, axis);
    for (const std::string &left : texts) {
      EXPECT_EQ(seconds.Of(left), TextToSeconds(axis, left)) << origin << " " << left;
      for (const std::string &right : texts) {
        const int ours = CompareReadableTimes(timing, left, right);
        const int theirs = CompareUTCTime(left, right, 3);
        EXPECT_EQ((ours > 0) - (ours < 0), theirs) << left << " " << right;
      }
    }
  }
  // Nine fraction digits with an offset: digits are dropped until the fraction fits.
  const SampleTiming fine = Utc(9, false);
  TimeAxis axis;
  axis.precision = 9;
  ASSERT_EQ(ParseUtcTime("2024-01-01T00:00:00.000000001+01:00", 9, axis.origin), TimeStatus::Ok);
  for (const char *text : {"2024-01-01T00:00:00.000000001+01:00", "2024-01-01T00:00:01.999999999-02:00",
                           "2030-06-01T00:00:00.123456789+01:00"}) {
    EXPECT_EQ(SampleSeconds(fine, axis).Of(text), TextToSeconds(axis, text)) << text;
  }
}

}  // namespace
}  // namespace ns_sensor
