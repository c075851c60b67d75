// A file's time texts as seconds, and the texts that requested times are searched with.
#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

#include "api/px_exception.hpp"
#include "mgjson_read/time_values.hpp"

namespace ns_sensor {
namespace {

TimeAxis TimecodeAxis(FrameRate rate) {
  TimeAxis axis;
  axis.timecode = true;
  axis.rate = rate;
  return axis;
}

TimeAxis UtcAxis(std::string_view origin, unsigned precision) {
  TimeAxis axis;
  axis.precision = precision;
  EXPECT_EQ(ParseUtcTime(origin, precision, axis.origin), TimeStatus::Ok);
  return axis;
}

// a >= b for seconds given as fractions; 64 bits hold both cross products.
bool NotBefore(RationalTime a, RationalTime b) {
  return std::uint64_t{a.numerator} * b.denominator >= std::uint64_t{b.numerator} * a.denominator;
}

TEST(TimeAxis, TextsBecomeSecondsSinceTheZero) {
  const TimeAxis timecode = TimecodeAxis({30000, 1001, true});
  EXPECT_EQ(TextToSeconds(timecode, "00:01:00:02"), SmpteToTime("00:01:00:02", timecode.rate));

  const TimeAxis utc = UtcAxis("2020-01-01T00:00:00.000Z", 3);
  EXPECT_EQ(TextToSeconds(utc, "2020-01-01T00:01:00.250+02:00"), (RationalTime{241, 4}));
  EXPECT_EQ(TextToSeconds(utc, "2020-01-01T00:00:00.000Z"), (RationalTime{0, 1}));
  EXPECT_EQ(TextToSeconds(utc, "2019-12-31T23:59:59.999Z"), (RationalTime{0, 0}));  // before the zero
  EXPECT_THROW(TextToSeconds(utc, "2020-01-01T00:01:00Z"), std::invalid_argument);
}

struct SearchCase {
  RationalTime seconds;
  const char *earlier;
  const char *later;
};

TEST(TimeAxis, SearchTextsRoundTowardTheRangeAndNeverWrap) {
  const TimeAxis pal = TimecodeAxis({25, 1, false});
  const SearchCase timecode[] = {
      {{1, 50}, "00:00:00:00", "00:00:00:01"},  // half a frame
      {{1, 25}, "00:00:00:01", "00:00:00:01"},
      {{86400, 1}, "24:00:00:00", "24:00:00:00"},
      {{360000, 1}, "99:59:59:24", "99:59:61:00"},  // beyond the text form
  };
  for (const auto &c : timecode) {
    EXPECT_EQ(SecondsToSearchText(pal, c.seconds, TimeRounding::Earlier), c.earlier);
    EXPECT_EQ(SecondsToSearchText(pal, c.seconds, TimeRounding::Later), c.later);
  }
  const TimeAxis utc = UtcAxis("2020-02-28T23:59:59.000+01:00", 3);
  const SearchCase utcCases[] = {
      {{1, 3}, "2020-02-28T23:59:59.333+01:00", "2020-02-28T23:59:59.334+01:00"},
      {{3, 2}, "2020-02-29T00:00:00.500+01:00", "2020-02-29T00:00:00.500+01:00"},
  };
  for (const auto &c : utcCases) {
    EXPECT_EQ(SecondsToSearchText(utc, c.seconds, TimeRounding::Earlier), c.earlier);
    EXPECT_EQ(SecondsToSearchText(utc, c.seconds, TimeRounding::Later), c.later);
  }
  const TimeAxis lastYear = UtcAxis("9999-06-01T00:00:00.0Z", 1);
  EXPECT_EQ(SecondsToSearchText(lastYear, {4294967295u, 1}, TimeRounding::Earlier), "9999-12-31T23:59:60.9Z");
  EXPECT_EQ(SecondsToSearchText(lastYear, {4294967295u, 1}, TimeRounding::Later), "9999-12-31T23:59:61.0Z");
  try {
    SecondsToSearchText(pal, {1, 0}, TimeRounding::Later);
    ADD_FAILURE();
  } catch (const PX_Exception &e) {
    EXPECT_EQ(e.code(), 1u);
    EXPECT_STREQ(e.what(), "scale value cannot be zero for parameter \"time\".");
  }
}

// The point of the search texts: comparing a sample's text with them selects exactly the
// samples whose seconds lie on the requested side.
void CheckSearchAgreesWithSeconds(const TimeAxis &axis, const std::vector<std::string> &samples,
                                  const std::vector<RationalTime> &requests) {
  std::vector<RationalTime> sampleSeconds;
  for (const std::string &sample : samples) sampleSeconds.push_back(TextToSeconds(axis, sample));
  for (const RationalTime request : requests) {
    const std::string from = SecondsToSearchText(axis, request, TimeRounding::Later);
    const std::string to = SecondsToSearchText(axis, request, TimeRounding::Earlier);
    for (std::size_t i = 0; i < samples.size(); ++i) {
      ASSERT_EQ(CompareTimeTexts(axis, samples[i], from) >= 0, NotBefore(sampleSeconds[i], request))
          << samples[i] << " vs " << from;
      ASSERT_EQ(CompareTimeTexts(axis, samples[i], to) <= 0, NotBefore(request, sampleSeconds[i]))
          << samples[i] << " vs " << to;
    }
  }
}

TEST(TimeAxis, SearchTextsSelectTheSameSamplesAsSecondsAtDropFrame) {
  const TimeAxis axis = TimecodeAxis({30000, 1001, true});
  std::vector<std::string> samples;
  for (std::uint64_t frame = 0; frame < 40000; frame += 37) samples.push_back(FrameNumberToSmpte(frame, axis.rate));
  std::vector<RationalTime> requests;
  for (std::uint32_t i = 0; i < 150; ++i) {
    requests.push_back({i * 1001 * 179, 60000});  // on and between frames
    requests.push_back({i * 97 + 1, 7});
  }
  CheckSearchAgreesWithSeconds(axis, samples, requests);
}

TEST(TimeAxis, SearchTextsSelectTheSameSamplesAsSecondsInUtc) {
  const TimeAxis axis = UtcAxis("2020-02-28T23:59:58.000Z", 3);
  std::vector<std::string> samples;
  for (std::uint32_t k = 0; k < 1500; ++k) samples.push_back(AddToUtcTime(axis.origin, {k * 137, 1000}, 3));
  std::vector<RationalTime> requests;
  for (std::uint32_t i = 0; i < 150; ++i) {
    requests.push_back({i * 1370, 1000});
    requests.push_back({i * 11 + 1, 7});
  }
  CheckSearchAgreesWithSeconds(axis, samples, requests);
}

}  // namespace
}  // namespace ns_sensor
