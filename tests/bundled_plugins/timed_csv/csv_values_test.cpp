#include "csv_values.hpp"

#include <gtest/gtest.h>

namespace timed_csv {
namespace {

struct TimeCase {
  const char *cell;
  std::optional<TimeForm> form;
  const char *utc;  // FormatTime at precision 9, GMT
  std::uint32_t fractionDigits;
  bool utcLine;
};

TEST(TimedCsvValues, FirstTimeDecidesTheFormAndEachCellItsInstant) {
  const TimeCase cases[] = {
      {"2024-05-01T12:00:00Z", TimeForm::kIso, "2024-05-01T12:00:00.000000000Z", 0, true},
      {"2024-05-01 12:00:00.25", TimeForm::kIso, "2024-05-01T12:00:00.250000000Z", 2, false},
      {"2024-05-01T14:00:00+02:00", TimeForm::kIso, "2024-05-01T12:00:00.000000000Z", 0, true},
      {"1714564800", TimeForm::kSeconds, "2024-05-01T12:00:00.000000000Z", 0, true},
      {"1714564800.123", TimeForm::kSeconds, "2024-05-01T12:00:00.123000000Z", 3, true},
      {"1714564800123", TimeForm::kMilliseconds, "2024-05-01T12:00:00.123000000Z", 3, true},
      {"1714564800123.5", std::nullopt, nullptr, 0, false},  // a point makes it seconds: past 9999
      {"12.5", TimeForm::kSeconds, "1970-01-01T00:00:12.500000000Z", 1, true},
      {"+0.000000001", TimeForm::kSeconds, "1970-01-01T00:00:00.000000001Z", 9, true},
      {"-1.5", TimeForm::kSeconds, "1969-12-31T23:59:58.500000000Z", 1, true},
      {"1:02:03.5", TimeForm::kClock, "1970-01-01T01:02:03.500000000Z", 1, true},
      {"100:00:00", TimeForm::kClock, "1970-01-05T04:00:00.000000000Z", 0, true},
      {"00:60:00", std::nullopt, nullptr, 0, false},
      {"00:00:60", std::nullopt, nullptr, 0, false},
      {"0:00:5", std::nullopt, nullptr, 0, false},
      {"2024-05-01", std::nullopt, nullptr, 0, false},
      {"1e5", std::nullopt, nullptr, 0, false},
      {"12345678901234567", std::nullopt, nullptr, 0, false},
      {"soon", std::nullopt, nullptr, 0, false},
      {"", std::nullopt, nullptr, 0, false},
      {".", std::nullopt, nullptr, 0, false},
  };
  for (const TimeCase &c : cases) {
    SCOPED_TRACE(c.cell);
    const std::optional<TimeForm> form = RecogniseTimeForm(c.cell);
    ASSERT_EQ(form, c.form);
    if (!form) continue;
    const std::optional<CellTime> time = ReadTime(*form, c.cell);
    ASSERT_TRUE(time.has_value());
    EXPECT_EQ(palvex_plugins::FormatTime(time->instant, 9, true), c.utc);
    EXPECT_EQ(time->fractionDigits, c.fractionDigits);
    EXPECT_EQ(time->utc, c.utcLine);
  }
  // Later cells follow the first's form: a text among numbers is no time.
  EXPECT_FALSE(ReadTime(TimeForm::kSeconds, "2024-05-01T12:00:00Z").has_value());
}

TEST(TimedCsvValues, NumbersAndTimeColumnNames) {
  const std::pair<const char *, std::optional<double>> numbers[] = {
      {"12", 12.0}, {"+3", 3.0}, {"-0.5", -0.5}, {"1.5e3", 1500.0}, {".5", 0.5},
      {"inf", std::nullopt}, {"nan", std::nullopt}, {"1,5", std::nullopt}, {"0x10", std::nullopt},
      {"++1", std::nullopt}, {"1e999", std::nullopt}, {"", std::nullopt}, {"12 kg", std::nullopt}};
  for (const auto &[cell, value] : numbers) EXPECT_EQ(ReadNumber(cell), value) << cell;

  for (const char *name : {"time", "Timestamp", "UTC", " t ", "\"DateTime\"", "elapsed", "gps_time"}) {
    EXPECT_TRUE(IsTimeColumnName(name)) << name;
  }
  for (const char *name : {"time_s", "timestamp_ms", "speed", "times", "", "date time"}) {
    EXPECT_FALSE(IsTimeColumnName(name)) << name;
  }
}

}  // namespace
}  // namespace timed_csv
