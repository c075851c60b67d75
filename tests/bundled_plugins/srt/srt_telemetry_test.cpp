#include "srt_telemetry.hpp"

#include <gtest/gtest.h>

#include <sstream>

#include "srt_blocks.hpp"

namespace srt {
namespace {

// "key=number[unit]" or "key='text'" per value, then "@date" when the line had one.
std::vector<std::string> Describe(const std::string &line) {
  BlockTelemetry telemetry;
  if (!ReadTelemetryLine(line, telemetry)) return {"bad date"};
  std::vector<std::string> found;
  for (const TelemetryValue &value : telemetry.values) {
    std::ostringstream text;
    text << value.key << '=';
    if (value.number) {
      text << *value.number << (value.unit.empty() ? "" : "[" + value.unit + "]");
    } else {
      text << '\'' << value.text << '\'';
    }
    found.push_back(text.str());
  }
  if (telemetry.date) {
    found.push_back("@" + palvex_plugins::FormatTime(telemetry.date->instant, 3, telemetry.date->zoned));
  }
  return found;
}

TEST(SrtTelemetry, BothLayoutsPairsFunctionsAndDates) {
  using Found = std::vector<std::string>;
  const std::pair<const char *, Found> cases[] = {
      {"[iso : 100] [shutter : 1/640.0] [fnum : 280]", {"iso=100", "shutter=0.0015625", "fnum=280"}},
      {"[rel_alt: 1.300 abs_alt: 82.817] [color_md : default]", {"rel_alt=1.3", "abs_alt=82.817", "color_md='default'"}},
      {"<font size=\"28\">FrameCnt: 1, DiffTime: 33ms</font>", {"FrameCnt=1", "DiffTime=33[ms]"}},
      {"2024-05-01 12:34:56.789", {"@2024-05-01T12:34:56.789+00:00"}},
      {"HOME(8.54,47.12) 2019.08.14 16:20:31", {"home_longitude=8.54", "home_latitude=47.12", "@2019-08-14T16:20:31.000+00:00"}},
      {"GPS(8.5432,47.1234,16) BAROMETER:12.3", {"longitude=8.5432", "latitude=47.1234", "gps_value_3=16", "BAROMETER=12.3"}},
      {"ISO:100 Shutter:1/0 Fnum:F2.8 Wind(3)", {"Wind 1=3", "ISO=100", "Shutter='1/0'", "Fnum='F2.8'"}},
      {"[latitude: 47.1] [longitude: 8.5", {"latitude=47.1"}},  // a bracket cut off at the end
      {"Just a subtitle, nothing more", {}},
      {"Note: 12 seconds: more text", {"Note=12", "seconds='more'"}},  // the word before a colon is a key
      {"2024-13-01 12:00:00", {"bad date"}},
  };
  for (const auto &[line, expected] : cases) EXPECT_EQ(Describe(line), expected) << line;
}

TEST(SrtTelemetry, StartTimesOfTimeLines) {
  const std::pair<const char *, std::optional<std::int64_t>> cases[] = {
      {"00:00:01,500 --> 00:00:02,000", 1500},
      {"1:02:03.04 --> 1:02:04.00", 3723040},
      {" 00:00:00,000-->00:00:00,033 ", 0},
      {"00:00:01,500", std::nullopt},
      {"00:61:00,000 --> 00:62:00,000", std::nullopt},
      {"00:00:01 --> 00:00:02", std::nullopt},
      {"12", std::nullopt},
  };
  for (const auto &[line, start] : cases) EXPECT_EQ(ReadStartTime(line), start) << line;
}

}  // namespace
}  // namespace srt
