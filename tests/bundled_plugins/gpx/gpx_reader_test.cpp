// The GPX reader: which files the check takes, the time line a file asks for, and where
// the reader says a file is wrong (code, line, column).
#include <gtest/gtest.h>

#include <sstream>

#include "gpx_errors.hpp"
#include "gpx_sniff.hpp"
#include "gpx_test_support.hpp"

namespace gpx {
namespace {

using testing::Gpx;
using testing::Point;

TEST(GpxCheck, TakesOnlyAGpxRootElement) {
  const struct {
    std::string head;
    bool accepted;
  } cases[] = {
      {"<gpx version=\"1.1\">", true},
      {"\xEF\xBB\xBF<?xml version=\"1.0\"?>\r\n<!-- a -- comment -->\n<?pi x?><gpx>", true},
      {"<!DOCTYPE gpx>\n<gpx/>", true},
      {"  \n\t<gpx\n creator=\"x\">", true},
      {"", false},
      {"<gpx", false},
      {"<gpxdata>", false},
      {"<kml>", false},
      {"hello <gpx>", false},
      {"<!-- unterminated <gpx>", false},
      {"<?xml version=\"1.0\"", false},
      {std::string("\0\x01\x02<gpx>", 7), false},
      {"lat,lon,time\n1,2,3\n", false},
  };
  for (const auto &c : cases) EXPECT_EQ(LooksLikeGpx(c.head), c.accepted) << c.head;
}

TEST(GpxTime, PrecisionAndZoneComeFromThePointsTimes) {
  const struct {
    std::vector<std::string> times;
    std::string waypointTime;
    std::uint32_t precision;
    bool gmt;
    std::vector<std::string> texts;  // of the latitude samples
  } cases[] = {
      {{"2024-05-04T06:30:00Z", "2024-05-04T06:30:01.5Z"}, "", 1, true,
       {"2024-05-04T06:30:00.0Z", "2024-05-04T06:30:01.5Z"}},
      {{"2024-05-04T08:30:00+02:00", "2024-05-04T06:30:01-00:00"}, "", 0, true,
       {"2024-05-04T06:30:00Z", "2024-05-04T06:30:01Z"}},
      {{"2024-05-04T06:30:00", "2024-05-04 06:30:02"}, "", 0, false,
       {"2024-05-04T06:30:00+00:00", "2024-05-04T06:30:02+00:00"}},
      // Without a zone a time reads as UTC once another time has one.
      {{"2024-05-04T06:30:00", "2024-05-04T06:30:01.250-01:00"}, "", 3, true,
       {"2024-05-04T06:30:00.000Z", "2024-05-04T07:30:01.250Z"}},
      // Waypoints share the time line: their digits count too.
      {{"2024-12-31T23:59:59Z"}, "2025-01-01T00:00:00.123456Z", 6, true, {"2024-12-31T23:59:59.000000Z"}},
  };
  for (const auto &c : cases) {
    std::string body = "<trk><trkseg>";
    for (std::size_t i = 0; i < c.times.size(); ++i) body += Point(1.0 + static_cast<double>(i), 2.0, c.times[i]);
    body += "</trkseg></trk>";
    if (!c.waypointTime.empty()) body += "<wpt lat=\"1\" lon=\"2\"><time>" + c.waypointTime + "</time></wpt>";
    const testing::Converted converted = testing::Convert(Gpx(body));
    EXPECT_EQ(converted.survey.precision, c.precision) << c.times[0];
    EXPECT_EQ(converted.survey.gmt, c.gmt) << c.times[0];
    std::vector<std::string> texts;
    for (const auto &sample : converted.sets.at("latitude")) texts.push_back(sample.first);
    EXPECT_EQ(texts, c.texts);
    EXPECT_EQ(converted.commitStatus, 0u);
  }
}

TEST(GpxFailures, SayWhatAndWhere) {
  const std::string segment = "<gpx>\n<trk><trkseg>\n";
  const struct {
    std::string text;
    std::uint32_t code;
    std::int64_t line;
    std::int64_t column;
  } cases[] = {
      {"", kNotGpx, 1, 1},
      {"  <!-- nothing -->  ", kNotGpx, 1, 21},
      {"<?xml version=\"1.0\"?>\n<kml><gpx/></kml>", kNotGpx, 2, 1},
      {"<gpx><trk><trkseg>", kMalformedXml, 1, 19},
      {std::string("<gpx>\0\xff\xfe</gpx>", 10), kMalformedXml, 1, 6},
      {"<gpx><trk></gpx>", kMalformedXml, 1, 13},
      {"<!DOCTYPE gpx [<!ENTITY a \"aaaa\">]><gpx>&a;</gpx>", kMalformedXml, 1, 27},
      {[] { std::string deep = "<gpx>"; for (int i = 0; i < 70; ++i) deep += "<a>"; return deep; }(),
       kMalformedXml, 1, 6 + 3 * 63},  // the 64th level
      {segment + "<trkpt lon=\"1\"/>", kBadCoordinates, 3, 1},
      {segment + " <trkpt lat=\"north\" lon=\"1\"/>", kBadCoordinates, 3, 2},
      {segment + "<trkpt lat=\"90.5\" lon=\"1\"/>", kBadCoordinates, 3, 1},
      {segment + "<trkpt lat=\"1\" lon=\"-180.01\"/>", kBadCoordinates, 3, 1},
      {segment + "<trkpt lat=\"nan\" lon=\"1\"/>", kBadCoordinates, 3, 1},
      {segment + "<trkpt lat=\"1\" lon=\"2\">\n  <ele>high</ele>", kBadNumber, 4, 3},
      {segment + "<trkpt lat=\"1\" lon=\"2\"><ele>1e10</ele>", kBadNumber, 3, 24},
      {segment + "<trkpt lat=\"1\" lon=\"2\"><ele>12 m</ele>", kBadNumber, 3, 24},
      {segment + "<trkpt lat=\"1\" lon=\"2\"><speed>0x10</speed>", kBadNumber, 3, 24},
      {segment + "<trkpt lat=\"1\" lon=\"2\"><extensions><x:hr>fast</x:hr>", kBadNumber, 3, 36},
      {segment + "<trkpt lat=\"1\" lon=\"2\"><time>yesterday</time>", kBadTime, 3, 24},
      {segment + "<trkpt lat=\"1\" lon=\"2\"><time>2024-05-04</time>", kBadTime, 3, 24},
      {segment + "<trkpt lat=\"1\" lon=\"2\"><time>2024-13-04T00:00:00Z</time>", kBadTime, 3, 24},
      {segment + "<trkpt lat=\"1\" lon=\"2\"/></trkseg></trk></gpx>", kNoTimedPoints, -1, -1},
      {"<gpx><wpt lat=\"1\" lon=\"2\"><time>2024-05-04T00:00:00Z</time></wpt></gpx>", kNoTimedPoints, -1, -1},
      {[] { std::string many = "<gpx>"; for (int i = 0; i <= 10'000; ++i) many += "<trk/>\n"; return many; }(),
       kTooManyPaths, 10'001, -1},
  };
  for (const auto &c : cases) {
    std::istringstream in(c.text);
    try {
      SurveyGpx(in);
      ADD_FAILURE() << "accepted: " << c.text;
    } catch (const PX_PLUGIN::PX_PluginException &e) {
      EXPECT_EQ(e.code(), c.code) << c.text;
      EXPECT_EQ(e.detail1(), c.line) << c.text;
      EXPECT_EQ(e.detail2(), c.column) << c.text;
    }
  }
}

TEST(GpxFailures, UnknownOrEmptyValuesAreNotErrors) {
  const testing::Converted converted = testing::Convert(Gpx(
      "<trk><trkseg>" +
      Point(1, 2, " 2024-05-04T06:30:00Z\n", "<ele></ele><sat>lots</sat><extensions><x:note>fast</x:note></extensions>") +
      "<trkpt lat=\"1\" lon=\"2\"><time/></trkpt></trkseg></trk>"));
  ASSERT_EQ(converted.groups.size(), 1u);
  EXPECT_EQ(converted.groups[0].timedPoints, 1u);
  EXPECT_EQ(converted.groups[0].untimedPoints, 1u);
  EXPECT_EQ(converted.sets.count("elevation"), 0u);
  EXPECT_EQ(converted.sets.count("note"), 0u);
}

}  // namespace
}  // namespace gpx
