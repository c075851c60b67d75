#include "utc_time.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <string>

namespace palvex_plugins {
namespace {

struct IsoCase {
  const char *text;
  const char *utc;  // FormatTime at precision 9 in GMT, nullptr when the text is refused
  std::uint32_t fractionDigits;
  bool zoned;
};

TEST(PluginTime, IsoTextsReadAsTheirUtcInstant) {
  const IsoCase cases[] = {
      {"2024-05-01T12:34:56Z", "2024-05-01T12:34:56.000000000Z", 0, true},
      {"2024-05-01 12:34:56.789", "2024-05-01T12:34:56.789000000Z", 3, false},
      {"2024-05-01t12:34:56,5z", "2024-05-01T12:34:56.500000000Z", 1, true},
      {"2024-05-01T00:30:00+02:00", "2024-04-30T22:30:00.000000000Z", 0, true},
      {"2024-05-01T23:30:00-0130", "2024-05-02T01:00:00.000000000Z", 0, true},
      {"2024-05-01T23:30:00-05", "2024-05-02T04:30:00.000000000Z", 0, true},
      {"2024-02-29T01:02:03.123456789Z", "2024-02-29T01:02:03.123456789Z", 9, true},
      {"1969-12-31T23:59:59.25Z", "1969-12-31T23:59:59.250000000Z", 2, true},
      {"0001-01-01T00:00:00Z", "0001-01-01T00:00:00.000000000Z", 0, true},
      {"9999-12-31T23:59:59Z", "9999-12-31T23:59:59.000000000Z", 0, true},
      // refused: bad fields, no time, leap second, too many digits, trailing text, out of years
      {"2023-02-29T00:00:00Z", nullptr, 0, false},
      {"2024-13-01T00:00:00Z", nullptr, 0, false},
      {"2024-05-01", nullptr, 0, false},
      {"2024-05-01T12:34:60Z", nullptr, 0, false},
      {"2024-05-01T12:34:56.1234567890Z", nullptr, 0, false},
      {"2024-05-01T12:34:56.Z", nullptr, 0, false},
      {"2024-05-01T12:34:56Z ", nullptr, 0, false},
      {"2024-05-01T12:34:56+2", nullptr, 0, false},
      {"0000-01-01T00:00:00Z", nullptr, 0, false},
      {"9999-12-31T23:59:59-01:00", nullptr, 0, false},
  };
  for (const IsoCase &c : cases) {
    SCOPED_TRACE(c.text);
    const std::optional<ParsedTime> parsed = ParseIsoTime(c.text);
    ASSERT_EQ(parsed.has_value(), c.utc != nullptr);
    if (!parsed) continue;
    EXPECT_EQ(FormatTime(parsed->instant, 9, true), c.utc);
    EXPECT_EQ(parsed->fractionDigits, c.fractionDigits);
    EXPECT_EQ(parsed->zoned, c.zoned);
  }
}

TEST(PluginTime, FormatCutsToThePrecisionAndNamesTheZone) {
  const Instant instant = ParseIsoTime("2024-05-01T12:34:56.987654321Z")->instant;
  EXPECT_EQ(FormatTime(instant, 0, true), "2024-05-01T12:34:56Z");
  EXPECT_EQ(FormatTime(instant, 3, false), "2024-05-01T12:34:56.987+00:00");
  EXPECT_EQ(FormatTime(instant, 12, true), "2024-05-01T12:34:56.987654321Z");
}

TEST(PluginTime, CountsAndSumsKeepEveryNanosecond) {
  EXPECT_EQ(FormatTime(*InstantFromSeconds(1.5), 3, true), "1970-01-01T00:00:01.500Z");
  EXPECT_EQ(FormatTime(*InstantFromSeconds(-0.25), 3, true), "1969-12-31T23:59:59.750Z");
  EXPECT_EQ(FormatTime(*InstantFromMilliseconds(1714566896789), 3, true), "2024-05-01T12:34:56.789Z");
  EXPECT_EQ(FormatTime(*InstantFromMilliseconds(-1), 3, true), "1969-12-31T23:59:59.999Z");
  EXPECT_FALSE(InstantFromSeconds(1e300).has_value());
  EXPECT_FALSE(InstantFromSeconds(std::numeric_limits<double>::quiet_NaN()).has_value());

  const Instant start = ParseIsoTime("2024-12-31T23:59:59.900Z")->instant;
  const Instant later = *AddSeconds(start, 0.2);
  EXPECT_EQ(FormatTime(later, 3, true), "2025-01-01T00:00:00.100Z");
  EXPECT_DOUBLE_EQ(SecondsBetween(later, start), 0.2);
  EXPECT_DOUBLE_EQ(SecondsBetween(start, later), -0.2);
}

TEST(PluginTime, CivilDaysRoundTripOverFourCenturies) {
  for (std::int64_t days = DaysFromCivil(1900, 1, 1); days <= DaysFromCivil(2300, 12, 31); ++days) {
    std::int64_t year = 0;
    unsigned month = 0, day = 0;
    CivilFromDays(days, year, month, day);
    ASSERT_EQ(DaysFromCivil(year, month, day), days);
  }
  EXPECT_EQ(DaysFromCivil(1970, 1, 1), 0);
  EXPECT_EQ(DaysFromCivil(2000, 3, 1), 11017);
}

}  // namespace
}  // namespace palvex_plugins
