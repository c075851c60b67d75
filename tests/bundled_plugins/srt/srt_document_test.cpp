#include "srt_document.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <sstream>

#include "../timed_csv/written_document.hpp"
#include "srt_errors.hpp"
#include "srt_lines.hpp"

namespace srt {
namespace {

using bundled_test::WrittenDocument;
using Samples = std::vector<std::pair<std::string, std::string>>;

WrittenDocument Convert(const std::string &text) {
  return bundled_test::WriteDocument([&](PX_PLUGIN::IMgjsonRoot_v1 *root) {
    std::istringstream in(text);
    return BuildSrtDocument(in, root);
  });
}

std::string ReadExample(const char *name) {
  std::ifstream in(std::string(PALVEX_SOURCE_DIR) + "/examples/" + name, std::ios::binary);
  return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

std::string Block(int counter, const char *times, const std::string &text) {
  return std::to_string(counter) + "\n" + times + "\n" + text + "\n\n";
}

TEST(SrtCheck, AcceptsSubtitlesWithKnownTelemetryOnly) {
  const std::string bracketed = ReadExample("drone_bracketed.srt");
  const std::pair<std::string, bool> cases[] = {
      {bracketed, true},
      {ReadExample("drone_legacy.srt"), true},
      {Block(1, "00:00:01,000 --> 00:00:02,000", "Hello there.\nGeneral: Kenobi"), false},
      {Block(1, "00:00:01,000 --> 00:00:02,000", "[speed: 12]"), false},  // no field we know
      {"time,latitude\n0,47.1\n", false},
      {ReadExample("logger.csv"), false},
      {"", false},
      {std::string("1\n00:00:01,000 --> 00:00:02,000\n[iso : 1\0]\n", 41), false},
  };
  for (const auto &[head, accepted] : cases) EXPECT_EQ(LooksLikeDroneSrt(head, true), accepted) << head.substr(0, 40);
  // Only whole lines of a cut head count.
  EXPECT_FALSE(LooksLikeDroneSrt("1\n00:00:00,000 --> 00:00:01,000\n[latitude: 4", false));
  EXPECT_TRUE(LooksLikeDroneSrt(bracketed.substr(0, 400), false));
}

TEST(SrtDocument, DateLinesTimeTheBlocksInAnUnknownZone) {
  const WrittenDocument doc = Convert(
      Block(1, "00:00:00,000 --> 00:00:00,033",
            "2024-05-01 12:00:00.000\n[fnum : 280] [latitude: 47.5] [color_md : default]") +
      Block(2, "00:00:00,033 --> 00:00:00,066", "[fnum : F2.2] [latitude: 47.6] [color_md : log]") +
      Block(3, "00:00:01,000 --> 00:00:01,033", "2024-05-01 12:00:05.000\n[latitude: 47.7] [fnum : wide]"));
  ASSERT_EQ(doc.code, 0u);
  EXPECT_FALSE(doc.UtcInfo()["isGMT"].GetBool());
  EXPECT_EQ(doc.UtcInfo()["precisionLength"].GetInt(), 3);
  // The block without a date is placed after the last date by its start in the video.
  EXPECT_EQ(doc.Samples("latitude"), (Samples{{"2024-05-01T12:00:00.000+00:00", "47.5"},
                                              {"2024-05-01T12:00:00.033+00:00", "47.6"},
                                              {"2024-05-01T12:00:05.000+00:00", "47.7"}}));
  EXPECT_EQ(doc.Samples("fNumber"), (Samples{{"2024-05-01T12:00:00.000+00:00", "2.8"},
                                             {"2024-05-01T12:00:00.033+00:00", "2.2"}}));
  const auto &latitude = (*doc.Node("latitude"))["dataType"]["numberStringProperties"]["range"];
  EXPECT_EQ(latitude["legal"]["min"].GetDouble(), -90.0);
  EXPECT_EQ(latitude["occurring"]["max"].GetDouble(), 47.7);
  EXPECT_STREQ((*doc.Node("colorMd"))["interpolation"].GetString(), "hold");
  EXPECT_EQ(doc.DisplayNames(), (std::vector<std::string>{"F-number", "Latitude [deg]", "color_md"}));
}

TEST(SrtDocument, WithoutDatesBlocksCountFromTheEpochAndBackstepsAreCounted) {
  const WrittenDocument doc = Convert(
      Block(1, "00:00:02,000 --> 00:00:03,000", "GPS(8.5,47.1,9) BAROMETER:12.5 Wind: 3kn") +
      Block(2, "00:00:01,000 --> 00:00:02,000", "A block of words only") +
      Block(3, "00:00:01,000 --> 00:00:02,000", "GPS(8.6,47.2,9) BAROMETER:13 Wind: 4kn") +
      "4\n00:00:03,000 --> 00:00:04,000\nGPS(8.7,47.3,9) BAROM");  // cut off in its last line
  ASSERT_EQ(doc.code, 0u);
  EXPECT_TRUE(doc.UtcInfo()["isGMT"].GetBool());
  EXPECT_EQ(doc.Samples("barometricAltitude"), (Samples{{"1970-01-01T00:00:02.000Z", "12.5"},
                                                         {"1970-01-01T00:00:01.000Z", "13.0"}}));
  EXPECT_EQ(doc.Samples("longitude").size(), 3u);
  EXPECT_EQ(doc.DisplayNames(), (std::vector<std::string>{"Longitude [deg]", "Latitude [deg]", "GPS value 3",
                                                          "Barometric altitude [m]", "Wind [kn]",
                                                          "Samples out of time order"}));
  EXPECT_EQ((*doc.Node("samplesOutOfTimeOrder"))["value"].GetDouble(), 1.0);
}

TEST(SrtDocument, BrokenFilesFailWithTheLineOrHaveNothingToWrite) {
  const std::string good = Block(1, "00:00:00,000 --> 00:00:01,000", "[latitude: 47.5]");
  const std::tuple<std::string, std::uint32_t, std::int64_t> cases[] = {
      {good + "2\nsoon --> later\n[latitude: 1]\n", kBadTimeLine, 6},
      {good + "Some words\n00:00:02,000 --> 00:00:03,000\n", kBadBlock, 5},
      {good + Block(2, "00:00:01,000 --> 00:00:02,000", "2024-02-30 10:00:00 [latitude: 1]"), kBadDate, 7},
      {good + std::string("2\n00:00:01,000 --> 00:00:02,000\n[lat\0", 38), kBinaryData, 7},
      {good + std::string(kMaxLineBytes + 1, '['), kLineTooLong, 5},
  };
  for (const auto &[text, code, line] : cases) {
    const WrittenDocument doc = Convert(text);
    EXPECT_EQ(doc.code, code) << text.substr(0, 80);
    EXPECT_EQ(doc.detail1, line) << text.substr(0, 80);
  }
  // Cut off after a counter or inside a time line: the complete blocks stay.
  for (const std::string &text : {good + "2\n", good + "2\n00:00:0", good + "00:00:0"}) {
    const WrittenDocument doc = Convert(text);
    EXPECT_EQ(doc.code, 0u);
    EXPECT_EQ(doc.Samples("latitude").size(), 1u);
  }
  for (const std::string &text : {std::string(), Block(1, "00:00:00,000 --> 00:00:01,000", "Hello.")}) {
    const WrittenDocument doc = Convert(text);
    EXPECT_EQ(doc.code, 0u);
    EXPECT_FALSE(doc.built);
  }
}

}  // namespace
}  // namespace srt
