// The example plug-in's reader: what it accepts, and where it says a log is wrong (the
// tool shows the code only; the line and field travel as the error's details).
#include <gtest/gtest.h>

#include <sstream>

#include "gust_log.hpp"
#include "palvex/plugin_kit.hpp"

namespace gust {
namespace {

constexpr char kHeader[] = "GUSTLOG 1 station=\"North Pier\" start=2024-05-04T06:30:00Z\n";

TEST(ExampleGustLog, HeaderFields) {
  const struct {
    const char *line;
    bool accepted;
  } cases[] = {
      {"GUSTLOG 1 station=\"North Pier\" mast=12.5 start=2024-05-04T06:30:00Z", true},
      {"GUSTLOG\t1  start=2024-05-04T06:30:00+02:00 station=Pier  colour=\"red sky\" ", true},
      {"GUSTLOG 1 station=\"\" start=2024-05-04T06:30:00Z", true},  // a name may be empty, not missing
      {"GUSTLOG 2 station=Pier start=2024-05-04T06:30:00Z", false},
      {"GUSTLOGGER 1 station=Pier start=2024-05-04T06:30:00Z", false},
      {"GUSTLOG 1 start=2024-05-04T06:30:00Z", false},
      {"GUSTLOG 1 station=Pier", false},
      {"GUSTLOG 1 station=Pier start=2024-05-04T06:30:00Z mast=tall", false},
      {"GUSTLOG 1 station=\"Pier start=2024-05-04T06:30:00Z", false},
      {"GUSTLOG 1 station=\"Pier\"x start=2024-05-04T06:30:00Z", false},
      {"GUSTLOG 1 station=Pier start=2024-05-04T06:30:00Z stray", false},
      {"GUSTLOG 1 station=Pier =x start=2024-05-04T06:30:00Z", false},
  };
  for (const auto &c : cases) EXPECT_EQ(ReadHeader(c.line).has_value(), c.accepted) << c.line;
  const std::optional<Header> header = ReadHeader(cases[0].line);
  ASSERT_TRUE(header);
  EXPECT_EQ(header->station, "North Pier");
  EXPECT_EQ(header->mastHeight, 12.5);
  EXPECT_EQ(header->start, "2024-05-04T06:30:00Z");
}

TEST(ExampleGustLog, ReadingsAndTheirTimes) {
  std::istringstream in(std::string(kHeader) +
                        "# comment\r\n\r\n  0 3.2 270\r\n0.5 3.6 272 gust  \n12.25 0 360   squall  line\n12.25 1e1 0\n");
  const GustLog log = ReadGustLog(in);
  ASSERT_EQ(log.readings.size(), 4u);
  EXPECT_EQ(log.readings[0].milliseconds, 0u);
  EXPECT_EQ(log.readings[1].milliseconds, 500u);
  EXPECT_EQ(log.readings[1].note, "gust");
  EXPECT_EQ(log.readings[2].milliseconds, 12250u);
  EXPECT_EQ(log.readings[2].note, "squall  line");
  EXPECT_EQ(log.readings[3].speed, 10.0);
  EXPECT_EQ(log.readings[3].note, "");
}

TEST(ExampleGustLog, FailuresSayWhere) {
  const struct {
    std::string text;
    uint32_t code;
    int64_t line;
    int64_t field;
  } cases[] = {
      {"", kBadHeader, 1, -1},
      {"GUSTLOG 1\n0 1 1\n", kBadHeader, 1, -1},
      {std::string(kHeader) + "0 1\n", kBadReading, 2, 3},
      {std::string(kHeader) + "# c\n0 1 1\nx 1 1\n", kBadReading, 4, 1},
      {std::string(kHeader) + "-1 1 1\n", kBadReading, 2, 1},
      {std::string(kHeader) + "1.2345 1 1\n", kBadReading, 2, 1},
      {std::string(kHeader) + "1. 1 1\n", kBadReading, 2, 1},
      {std::string(kHeader) + "4294967.296 1 1\n", kBadReading, 2, 1},  // past 2^32 - 1 milliseconds
      {std::string(kHeader) + "0 -0.5 1\n", kBadReading, 2, 2},
      {std::string(kHeader) + "0 nan 1\n", kBadReading, 2, 2},
      {std::string(kHeader) + "0 1,5 1\n", kBadReading, 2, 2},
      {std::string(kHeader) + "0 1 360.5\n", kBadReading, 2, 3},
      {std::string(kHeader) + "2 1 1\n1.999 1 1\n", kTimeBackwards, 3, -1},
  };
  for (const auto &c : cases) {
    std::istringstream in(c.text);
    try {
      ReadGustLog(in);
      ADD_FAILURE() << "accepted: " << c.text;
    } catch (const PX_PLUGIN::PX_PluginException &e) {
      EXPECT_EQ(e.code(), c.code) << c.text;
      EXPECT_EQ(e.detail1(), c.line) << c.text;
      EXPECT_EQ(e.detail2(), c.field) << c.text;
    }
  }
}

}  // namespace
}  // namespace gust
