// What the parser keeps of the time information: frame rates and their limits, UTC time
// string lengths, the video sync list, and the time-information checks of both versions.
#include "mgjson_read/mgjson_parser.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "mgjson_read/mgjson_test_support.hpp"

namespace ns_sensor {
namespace {

using testing::Fault;
using testing::kOneNodeOutline;
using testing::Open;

const Fault kUnsupportedRate{41, "Only 29.97 and 59.94 drop frame rate supported.", -1};

// A version 1 file with the given timecodeInfo, and a version 2 file with the given
// dynamicDataInfo members after useTimecodeB.
std::string TimecodeFile(const std::string &value, const std::string &scale, bool dropFrame) {
  return R"({"useTimecodeB":true,"timecodeInfo":{"frameRate":{"value":)" + value + R"(,"scale":)" +
         scale + R"(},"dropFrame":)" + (dropFrame ? "true" : "false") + R"(},"dataOutline":)" +
         kOneNodeOutline + "}";
}
std::string UtcFile(const std::string &precision, bool isGmt) {
  return R"({"useTimecodeB":false,"utcInfo":{"precisionLength":)" + precision + R"(,"isGMT":)" +
         (isGmt ? "true" : "false") + R"(},"dataOutline":)" + kOneNodeOutline + "}";
}
std::string Version2File(const std::string &useTimecode, const std::string &rest) {
  return R"({"version":"mgjson2.0.0","dynamicSamplesPresentB":true,"dynamicDataInfo":{"useTimecodeB":)" +
         useTimecode + rest + R"(},"dataOutline":)" + kOneNodeOutline + "}";
}

TEST(MgjsonParserTime, AcceptsFrameRatesTimecodeCanExpress) {
  const struct {
    const char *value;
    const char *scale;
    bool dropFrame;
    std::uint32_t keptValue, keptScale;
    std::uint16_t length;
  } cases[] = {
      {"30000", "1001", true, 30000, 1001, 11}, {"60000", "1001", true, 60000, 1001, 11},
      {"2997", "100", true, 2997, 100, 11},     {"99", "1", false, 99, 1, 11},
      {"120", "1", false, 120, 1, 12},
      {"29.97", "1.9", false, 29, 1, 11},  // fields are truncated to integers
      {"1", "2", false, 1, 2, 11},         // half a frame per second rounds to 1
  };
  for (const auto &c : cases) {
    const auto parsed = Open(TimecodeFile(c.value, c.scale, c.dropFrame));
    ASSERT_EQ(parsed.fault, Fault{}) << c.value << "/" << c.scale;
    EXPECT_EQ(parsed.parser->timeKind(), static_cast<std::uint32_t>(PX_TIME_TIMECODE));
    EXPECT_EQ(parsed.parser->frameRateValue(), c.keptValue);
    EXPECT_EQ(parsed.parser->frameRateScale(), c.keptScale);
    EXPECT_EQ(parsed.parser->dropFrame(), c.dropFrame);
    EXPECT_EQ(parsed.parser->timeStringLength(), c.length) << c.value << "/" << c.scale;
  }
}

TEST(MgjsonParserTime, RefusesFrameRatesTimecodeCannotExpress) {
  const struct {
    const char *value;
    const char *scale;
    bool dropFrame;
  } cases[] = {
      {"25", "1", true},   {"24000", "1001", true}, {"30", "0.5", false},  // scale 0, never divided by
      {"0", "1", false},   {"1", "3", false},       {"1000", "1", false},
      {"-30", "1", false}, {"1e+300", "1", false},
  };
  for (const auto &c : cases) {
    EXPECT_EQ(Open(TimecodeFile(c.value, c.scale, c.dropFrame)).fault, kUnsupportedRate)
        << c.value << "/" << c.scale << (c.dropFrame ? " drop" : "");
  }
}

TEST(MgjsonParserTime, DerivesTheUtcTimeStringLength) {
  const struct {
    const char *precision;
    bool isGmt;
    std::uint16_t precisionKept, length;
  } cases[] = {
      {"3", false, 3, 29}, {"3", true, 3, 24}, {"0", true, 0, 20},
      {"0", false, 0, 25}, {"9", true, 9, 30}, {"2.7", true, 2, 23},
  };
  for (const auto &c : cases) {
    const auto parsed = Open(UtcFile(c.precision, c.isGmt));
    ASSERT_EQ(parsed.fault, Fault{}) << c.precision;
    EXPECT_EQ(parsed.parser->timeKind(), static_cast<std::uint32_t>(PX_TIME_UTC));
    EXPECT_EQ(parsed.parser->utcPrecisionLength(), c.precisionKept);
    EXPECT_EQ(parsed.parser->utcIsGmt(), c.isGmt);
    EXPECT_EQ(parsed.parser->timeStringLength(), c.length) << c.precision;
  }
  const Fault refused{44, "Invalid value for \"precisionLength\" at \"utcInfo\", expected:a number from 0 to 9.", -1};
  for (const char *precision : {"10", "-1", "65536"}) {
    EXPECT_EQ(Open(UtcFile(precision, true)).fault, refused) << precision;
  }
}

TEST(MgjsonParserTime, KeepsTheVideoSyncList) {
  const std::string text = R"({"useTimecodeB":true,"videoSyncTimeList":[)"
                           R"({"fileName":"a.mov","timeString":"00:00:01:00"},)"
                           R"({"frameNumber":12.9,"fileName":"b.mov"},)"
                           R"({"fileName":"c.mov","frameNumber":-5.5},)"
                           R"({"fileName":"d.mov","frameNumber":1e+12}],"timecodeInfo":)"
                           R"({"frameRate":{"value":25,"scale":1},"dropFrame":false},"dataOutline":)" +
                           kOneNodeOutline + "}";
  const auto parsed = Open(text);
  ASSERT_EQ(parsed.fault, Fault{});
  const auto &list = parsed.parser->videoSyncList();
  ASSERT_EQ(list.size(), 4u);
  EXPECT_EQ(list[0].fileName, "a.mov");
  EXPECT_EQ(list[0].kind, static_cast<std::uint32_t>(PX_SYNC_TIME_STRING));
  EXPECT_EQ(list[0].timeString, "00:00:01:00");
  EXPECT_EQ(list[1].kind, static_cast<std::uint32_t>(PX_SYNC_FRAME_NUMBER));
  EXPECT_EQ(list[1].frameNumber, 12);
  EXPECT_EQ(list[2].frameNumber, -5);
  EXPECT_EQ(list[3].frameNumber, std::numeric_limits<std::int32_t>::max());
}

TEST(MgjsonParserTime, ReadsTimeInformationFromDynamicDataInfo) {
  const auto utc = Open(Version2File(
      "false", R"(,"utcInfo":{"precisionLength":1,"isGMT":false},"videoSyncTimeList":[{"fileName":"v.mp4","timeString":"2024-05-01T10:00:00.0+02:00"}])"));
  ASSERT_EQ(utc.fault, Fault{});
  EXPECT_EQ(utc.parser->timeKind(), static_cast<std::uint32_t>(PX_TIME_UTC));
  EXPECT_EQ(utc.parser->timeStringLength(), 27u);
  ASSERT_EQ(utc.parser->videoSyncList().size(), 1u);
  EXPECT_EQ(utc.parser->videoSyncList()[0].fileName, "v.mp4");

  const auto timecode = Open(Version2File(
      "true", R"(,"timecodeInfo":{"frameRate":{"value":60000,"scale":1001},"dropFrame":true},"extra":1)"));
  ASSERT_EQ(timecode.fault, Fault{});
  EXPECT_TRUE(timecode.parser->useTimecode());
  EXPECT_EQ(timecode.parser->frameRateValue(), 60000u);
  EXPECT_TRUE(timecode.parser->videoSyncList().empty());

  EXPECT_EQ(Open(Version2File("true", R"(,"timecodeInfo":{"frameRate":{"value":25,"scale":1},"dropFrame":true})")).fault,
            kUnsupportedRate);
}

TEST(MgjsonParserTime, ChecksTheTimeInformationObjects) {
  const std::string v1Timecode = R"({"useTimecodeB":true,"timecodeInfo":)";
  const struct {
    std::string text;
    Fault expected;
  } cases[] = {
      {R"({"utcInfo":{"precisionLength":3}})", {28, "Unable to find mandatory property:\"isGMT\" at \"utcInfo\".", -1}},
      {R"({"utcInfo":{"precisionLength":"3","isGMT":true}})", {43, "Invalid \"precisionLength\" type, expected type:JSON Number at \"utcInfo\".", -1}},
      {v1Timecode + R"({"dropFrame":false}})", {28, "Unable to find mandatory property:\"frameRate\" at \"timecodeInfo\".", -1}},
      {v1Timecode + R"({"frameRate":30,"dropFrame":false}})", {43, "Invalid \"frameRate\" type, expected type:JSON Object at \"timecodeInfo\".", -1}},
      {v1Timecode + R"({"frameRate":{"value":30,"scale":"1"},"dropFrame":false}})", {43, "Invalid \"scale\" type, expected type:JSON Number at \"timecodeInfo::frameRate\".", -1}},
      {v1Timecode + R"({"frameRate":{"value":30,"scale":1},"dropFrame":"no"}})", {43, "Invalid \"dropFrame\" type, expected type:JSON Boolean at \"timecodeInfo\".", -1}},
      {R"({"videoSyncTimeList":[{"fileName":"a","timeString":"x"},{"fileName":"b","timeString":"y","frameNumber":1}]})",
       {44, "Invalid \"videoSyncTimeList\", only one of \"timeString\" or \"frameNumber\" can be present at \"videoSyncTimeList[1]\".", -1}},
      {R"({"videoSyncTimeList":[{"fileName":"a"}]})",
       {44, "Invalid \"videoSyncTimeList\", one of \"timeString\" or \"frameNumber\" must be present at \"videoSyncTimeList[0]\".", -1}},
      {R"({"videoSyncTimeList":[{"timeString":"x"}]})", {28, "Unable to find mandatory property:\"fileName\" at \"videoSyncTimeList[0]\".", -1}},
      {R"({"videoSyncTimeList":[{"fileName":"a","frameNumber":"1"}]})", {43, "Invalid \"frameNumber\" type, expected type:JSON Number at \"videoSyncTimeList[0]\".", -1}},
      {R"({"version":"mgjson2.0.0","dynamicSamplesPresentB":true,"dynamicDataInfo":{"utcInfo":{"precisionLength":3,"isGMT":true},"useTimecodeB":false}})",
       {44, "First property of \"dynamicDataInfo\" must be \"useTimecodeB\", found \"utcInfo\".", -1}},
      {Version2File("1", ""), {43, "Invalid \"useTimecodeB\" type, expected type:JSON Boolean at \"dynamicDataInfo\".", -1}},
      {Version2File("true", ""), {28, "Unable to find mandatory property:\"timecodeInfo\" at \"dynamicDataInfo\".", -1}},
      {Version2File("false", R"(,"utcInfo":{"precisionLength":3,"isGMT":true},"videoSyncTimeList":{"a":1})"),
       {43, "Invalid \"videoSyncTimeList\" type, expected type:JSON Array at \"dynamicDataInfo\".", -1}},
  };
  for (const auto &c : cases) EXPECT_EQ(Open(c.text).fault, c.expected) << c.text;
}

}  // namespace
}  // namespace ns_sensor
