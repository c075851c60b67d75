#include "timed_csv_document.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <sstream>

#include "timed_csv_errors.hpp"
#include "written_document.hpp"

namespace timed_csv {
namespace {

using bundled_test::WrittenDocument;
using Samples = std::vector<std::pair<std::string, std::string>>;

WrittenDocument Convert(const std::string &text, bool tab = false) {
  return bundled_test::WriteDocument([&](PX_PLUGIN::IMgjsonRoot_v1 *root) {
    std::istringstream scan(text);
    const TimedCsvLayout layout = ScanTimedCsv(scan, tab);
    std::istringstream in(text);
    return BuildTimedCsvDocument(in, layout, root);
  });
}

std::string ReadExample(const char *name) {
  std::ifstream in(std::string(PALVEX_SOURCE_DIR) + "/examples/" + name, std::ios::binary);
  return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

TEST(TimedCsvCheck, AcceptsOnlyATimeColumnWithATimeInTheFirstRow) {
  const std::tuple<std::string, bool, bool> cases[] = {
      {"time,x\n0,1\n", false, true},
      {"Timestamp;Temp\n2024-05-01T00:00:00Z;1\n", false, true},
      {"speed\tUTC\n3\t1714564800\n", true, true},
      {"date,time,x\n2024-05-01,12:00:00,1\n", false, true},  // the date alone is no time
      {"time,x\n", false, false},
      {"time,x\nsoon,1\n", false, false},
      {"a,b\n1,x\n", false, false},
      {"time;x\n0;1\n", true, false},  // tab-separated: one column "time;x"
      {"", false, false},
      {std::string("time,x\n0,\0\n", 10), false, false},
      {ReadExample("bike_ride.csv"), false, false},
      {ReadExample("drone_legacy.srt"), false, false},
      {ReadExample("logger.csv"), false, true},
  };
  for (const auto &[head, tab, accepted] : cases) {
    EXPECT_EQ(LooksLikeTimedCsv(head, tab, true), accepted) << head.substr(0, 40);
  }
  // A first row cut off by the end of what the check read is not taken for one.
  EXPECT_FALSE(LooksLikeTimedCsv("time,x\n2024-05-01T00:0", false, false));
  EXPECT_TRUE(LooksLikeTimedCsv("time,x\n0,1\n2,", false, false));
}

TEST(TimedCsvDocument, ZonedTimesNumbersAndTextsWithGaps) {
  const WrittenDocument doc = Convert(
      "timestamp,Speed [m/s],note,unused\n"
      "2024-05-01T12:00:00Z,1.5,\"go, go\",\n"
      "2024-05-01T14:00:00.25+02:00,,,\n"
      "2024-05-01T12:00:01Z,-2,stop,\n");
  ASSERT_EQ(doc.code, 0u);
  ASSERT_TRUE(doc.built);
  EXPECT_TRUE(doc.UtcInfo()["isGMT"].GetBool());
  EXPECT_EQ(doc.UtcInfo()["precisionLength"].GetInt(), 2);
  EXPECT_EQ(doc.DisplayNames(), (std::vector<std::string>{"Speed [m/s]", "note"}));
  EXPECT_EQ(doc.Samples("speedMS"), (Samples{{"2024-05-01T12:00:00.00Z", "+1.5"}, {"2024-05-01T12:00:01.00Z", "-2.0"}}));
  EXPECT_EQ(doc.Samples("note"), (Samples{{"2024-05-01T12:00:00.00Z", "go, go"}, {"2024-05-01T12:00:01.00Z", "stop"}}));
  EXPECT_STREQ((*doc.Node("note"))["interpolation"].GetString(), "hold");
  EXPECT_EQ(doc.Node("samplesOutOfTimeOrder"), nullptr);
}

TEST(TimedCsvDocument, TimeFormsSetTheTimeLine) {
  struct Case {
    std::string text;
    bool tab;
    bool gmt;
    int precision;
    Samples samples;  // of column "x"
  };
  const Case cases[] = {
      {"time,x\n2024-05-01 12:00:00,1\n2024-05-01 12:00:00.5,2\n", false, false, 1,
       {{"2024-05-01T12:00:00.0+00:00", "1"}, {"2024-05-01T12:00:00.5+00:00", "2"}}},
      {"utc\tx\n1714564800123\t1\n", true, true, 3, {{"2024-05-01T12:00:00.123Z", "1"}}},
      {"t;x\n0;1\n0.25;2\n", false, true, 2, {{"1970-01-01T00:00:00.00Z", "1"}, {"1970-01-01T00:00:00.25Z", "2"}}},
      {"elapsed,x\n0:00:01,1\n", false, true, 0, {{"1970-01-01T00:00:01Z", "1"}}},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.text);
    const WrittenDocument doc = Convert(c.text, c.tab);
    ASSERT_EQ(doc.code, 0u);
    EXPECT_EQ(doc.UtcInfo()["isGMT"].GetBool(), c.gmt);
    EXPECT_EQ(doc.UtcInfo()["precisionLength"].GetInt(), c.precision);
    EXPECT_EQ(doc.Samples("x"), c.samples);
  }
}

TEST(TimedCsvDocument, BackwardAndRepeatedTimesKeepFileOrderAndAreCounted) {
  const WrittenDocument doc = Convert("time,x\n2,1\n1,2\n1,3\n3,4\n0,5\n");
  ASSERT_EQ(doc.code, 0u);
  EXPECT_EQ(doc.Samples("x"), (Samples{{"1970-01-01T00:00:02Z", "1"}, {"1970-01-01T00:00:01Z", "2"},
                                       {"1970-01-01T00:00:01Z", "3"}, {"1970-01-01T00:00:03Z", "4"},
                                       {"1970-01-01T00:00:00Z", "5"}}));
  const rapidjson::Value *count = doc.Node("samplesOutOfTimeOrder");
  ASSERT_NE(count, nullptr);
  EXPECT_EQ((*count)["value"].GetDouble(), 2.0);
}

TEST(TimedCsvDocument, BadInputFailsWithWhereOrHasNothingToWrite) {
  const std::string wide = [] {
    std::string header = "time";
    for (std::size_t i = 0; i < kMaxColumns; ++i) header += ",c";
    return header + "\n0\n";
  }();
  const std::tuple<std::string, std::uint32_t, std::int64_t, std::int64_t> cases[] = {
      {"time,x\n0,1\n1,\n2,n/a\n", kNotANumber, 4, 2},
      {"time,x\n0,1\n\"\n1\",2\n", kBadTime, 3, 1},
      {"time,x\n2024-05-01T00:00:00Z,1\n2024-05-01T00:00:01,1\n", kZoneMismatch, 3, 1},
      {"x,time\n1,soon\n", kNoTimeColumn, 2, -1},
      {"", kNoTimeColumn, 1, -1},
      {wide, kTooManyColumns, 1, static_cast<std::int64_t>(kMaxColumns + 1)},
  };
  for (const auto &[text, code, line, column] : cases) {
    SCOPED_TRACE(text.substr(0, 40));
    const WrittenDocument doc = Convert(text);
    EXPECT_EQ(doc.code, code);
    EXPECT_EQ(doc.detail1, line);
    EXPECT_EQ(doc.detail2, column);
  }
  // A header without rows, or rows with nothing but times: no stream, nothing to write.
  for (const char *text : {"time,x\n0,\n,5\n", "time\n1\n2\n"}) {
    const WrittenDocument doc = Convert(text);
    EXPECT_EQ(doc.code, 0u) << text;
    EXPECT_FALSE(doc.built) << text;
  }
}

}  // namespace
}  // namespace timed_csv
