// UTC texts: reading, printing, adding, differences and order.
#include <gtest/gtest.h>

#include <stdexcept>

#include "api/px_exception.hpp"
#include "mgjson_read/time_values.hpp"

namespace ns_sensor {
namespace {

UtcRecord Parsed(std::string_view text, unsigned precision) {
  UtcRecord record;
  EXPECT_EQ(ParseUtcTime(text, precision, record), TimeStatus::Ok) << text;
  return record;
}

TEST(ParseUtcTime, ReadsEveryFieldAndTheZone) {
  EXPECT_EQ(Parsed("2020-02-29T12:34:56.789Z", 3), (UtcRecord{2020, 2, 29, 12, 34, 56, 789, 'Z', false, 0, 0}));
  EXPECT_EQ(Parsed("1999-12-31T23:59:60-08:30", 0),  // a leap second
            (UtcRecord{1999, 12, 31, 23, 59, 60, 0, '-', true, 8, 30}));
}

TEST(ParseUtcTime, TextsShorterThanTheirFieldsAreTooShortAndLeaveTheRecord) {
  const struct {
    const char *text;
    unsigned precision;
  } cases[] = {
      {"", 0},
      {"2020-01-01T00:00:00", 0},         // 19 bytes, no zone
      {"2020-01-01T00:00:00Z", 3},        // the fraction is missing
      {"2020-01-01T00:00:00.12", 3},      // the fraction is cut
      {"2020-01-01T00:00:00.123+05:3", 3},  // the offset is cut
  };
  for (const auto &c : cases) {
    UtcRecord record;
    record.year = 1234;
    EXPECT_EQ(ParseUtcTime(c.text, c.precision, record), TimeStatus::TooShort) << c.text;
    EXPECT_EQ(record.year, 1234) << c.text;
  }
}

TEST(ParseUtcTime, FieldsOutsideTheCalendarOrUnreadableFail) {
  const char *outside[] = {"2021-02-29T00:00:00Z", "2100-02-29T00:00:00Z", "2020-13-01T00:00:00Z",
                           "2020-04-31T00:00:00Z", "2020-01-00T00:00:00Z", "2020-01-01T24:00:00Z",
                           "2020-01-01T00:60:00Z", "2020-01-01T00:00:61Z", "2020-01-01T00:00:00+24:00",
                           "-020-01-01T00:00:00Z"};
  for (const char *text : outside) {
    UtcRecord record;
    EXPECT_THROW(ParseUtcTime(text, 0, record), std::out_of_range) << text;
  }
  UtcRecord record;
  EXPECT_THROW(ParseUtcTime("2020-a1-01T00:00:00Z", 0, record), std::invalid_argument);
  EXPECT_THROW(ParseUtcTime("2020-01-01T00:00:00.x1Z", 2, record), std::invalid_argument);
  EXPECT_THROW(ParseUtcTime("2020-01-01T00:00:00.0123456789Z", 10, record), std::out_of_range);
  EXPECT_EQ(Parsed("2000-02-29T00:00:00Z", 0).day, 29);  // divisible by 400: a leap year
}

TEST(FormatUtcTime, PrintsThePrecisionAndKeepsTheLengthRule) {
  const struct {
    const char *text;
    unsigned precision;
    bool hasOffset;
  } cases[] = {
      {"2020-01-02T03:04:05Z", 0, false},
      {"2020-01-02T03:04:05.007Z", 3, false},
      {"2020-01-02T03:04:05.000000001+05:30", 9, true},
      {"0001-01-01T00:00:00-00:00", 0, true},
  };
  for (const auto &c : cases) {
    const std::string printed = FormatUtcTime(Parsed(c.text, c.precision), c.precision);
    EXPECT_EQ(printed, c.text);
    EXPECT_EQ(printed.size(), UtcTextLength(c.precision, c.hasOffset)) << c.text;
  }
  EXPECT_EQ(UtcTextLength(3, true), 29u);
}

struct AddCase {
  const char *start;
  unsigned precision;
  RationalTime duration;
  const char *sum;
};

TEST(AddToUtcTime, CarriesThroughDaysMonthsLeapDaysAndYears) {
  const AddCase cases[] = {
      {"2020-02-28T23:59:59.000Z", 3, {3, 2}, "2020-02-29T00:00:00.500Z"},
      {"2100-02-28T23:59:59.000Z", 3, {3, 2}, "2100-03-01T00:00:00.500Z"},
      {"2000-02-28T23:59:59.000Z", 3, {3, 2}, "2000-02-29T00:00:00.500Z"},
      {"2019-12-31T23:59:59.900Z", 3, {1, 5}, "2020-01-01T00:00:00.100Z"},
      {"2000-01-01T00:00:00Z", 0, {4294967295u, 1}, "2136-02-07T06:28:15Z"},
      {"2020-01-01T23:30:00.0+05:30", 1, {3600, 1}, "2020-01-02T00:30:00.0+05:30"},
      {"2020-01-01T00:00:00.00Z", 2, {1, 3}, "2020-01-01T00:00:00.33Z"},  // below the precision: dropped
      {"2020-01-01T00:00:00.999999999Z", 9, {4294967295u, 1000000000}, "2020-01-01T00:00:05.294967294Z"},
      {"2016-12-31T23:59:60Z", 0, {0, 1}, "2017-01-01T00:00:00Z"},  // a leap second settles
  };
  for (const auto &c : cases) {
    EXPECT_EQ(AddToUtcTime(Parsed(c.start, c.precision), c.duration, c.precision), c.sum) << c.start;
  }
}

TEST(AddToUtcTime, RefusesAZeroDurationScaleAndRecordsOutsideTheCalendar) {
  try {
    AddToUtcTime(UtcRecord{}, {1, 0}, 0);
    ADD_FAILURE();
  } catch (const PX_Exception &e) {
    EXPECT_EQ(e.code(), 1u);
    EXPECT_STREQ(e.what(), "scale value cannot be zero for parameter \"duration\".");
  }
  UtcRecord february;
  february.month = 2;
  february.day = 30;
  EXPECT_THROW(AddToUtcTime(february, {1, 1}, 0), std::out_of_range);
  UtcRecord tooFine;
  tooFine.fraction = 1000;
  EXPECT_THROW(AddToUtcTime(tooFine, {1, 1}, 3), std::out_of_range);
}

TEST(UtcDifference, IsTheDistanceEitherWayAcrossTheCalendar) {
  const struct {
    const char *a;
    const char *b;
    unsigned precision;
    RationalTime difference;
  } cases[] = {
      {"2020-05-05T05:05:05.500Z", "2020-05-05T05:05:05.500Z", 3, {0, 1}},
      {"2020-01-01T00:00:00.900Z", "2020-01-01T00:00:01.100Z", 3, {1, 5}},  // borrows a second
      {"2020-01-01T00:00:00+01:00", "2020-01-01T00:00:00-05:00", 0, {0, 1}},  // offsets not applied
      {"2016-12-31T23:59:60.5Z", "2017-01-01T00:00:00.2Z", 1, {3, 10}},
      // Too fine for 32 bits: digits go from the end until it fits.
      {"2020-01-01T00:00:00.000000000Z", "2020-01-01T00:00:05.000000001Z", 9, {5, 1}},
      {"2020-01-01T00:00:00.000000000Z", "2020-01-01T01:00:00.123456789Z", 9, {56251929, 15625}},
      {"1800-01-01T00:00:00Z", "2000-01-01T00:00:00Z", 0, {0, 0}},  // beyond 136 years
  };
  for (const auto &c : cases) {
    const UtcRecord a = Parsed(c.a, c.precision);
    const UtcRecord b = Parsed(c.b, c.precision);
    EXPECT_EQ(UtcDifference(a, b, c.precision), c.difference) << c.a << " " << c.b;
    EXPECT_EQ(UtcDifference(b, a, c.precision), c.difference) << c.b << " " << c.a;
  }
}

// Adding and then measuring gives the duration back, from every month start and end of
// a leap year and a common year.
TEST(UtcDifference, UndoesAddToUtcTime) {
  const RationalTime durations[] = {{1, 1000}, {86399999, 1000}, {2419200, 1}, {31622400, 1}, {7, 4}};
  for (const int year : {2023, 2024}) {
    for (int month = 1; month <= 12; ++month) {
      for (const int day : {1, 28}) {
        UtcRecord start;
        start.year = year;
        start.month = month;
        start.day = day;
        start.hour = 23;
        start.fraction = 999;
        for (const RationalTime duration : durations) {
          const UtcRecord end = Parsed(AddToUtcTime(start, duration, 3), 3);
          const RationalTime back = UtcDifference(start, end, 3);
          EXPECT_EQ(std::uint64_t{back.numerator} * duration.denominator,
                    std::uint64_t{duration.numerator} * back.denominator)
              << FormatUtcTime(start, 3) << " + " << duration.numerator << "/" << duration.denominator;
        }
      }
    }
  }
}

TEST(CompareUTCTime, OrdersByRawFieldsAndIgnoresZones) {
  const struct {
    const char *left;
    const char *right;
    unsigned precision;
    int order;
  } cases[] = {
      {"2020-01-01T00:00:00.000+01:00", "2020-01-01T00:00:00.000+02:00", 3, 0},
      {"2020-01-01T00:00:00.000Z", "2020-01-01T00:00:00.001Z", 3, -1},
      {"2021-01-01T00:00:00Z", "2020-12-31T23:59:59Z", 0, 1},
      {"2020-01-01T00:00:00.9Z", "2020-01-01T00:00:00.1Z", 0, 0},  // fraction not compared at 0
      {"2020-01-01T00:00:00", "2020-01-01T00:00:00", 0, 0},      // no zone needed to compare
      {"2020-01-01x00:00:00.5Z", "2020-01-01T00:00:00.5Z", 1, 0},  // separators unread
  };
  for (const auto &c : cases) {
    EXPECT_EQ(CompareUTCTime(c.left, c.right, c.precision), c.order) << c.left << " " << c.right;
  }
}

TEST(CompareUTCTime, NullOrShortTextsAreInvalidInput) {
  const auto expectInvalid = [](std::string_view left, std::string_view right, unsigned precision) {
    try {
      CompareUTCTime(left, right, precision);
      ADD_FAILURE() << left << " " << right;
    } catch (const PX_Exception &e) {
      EXPECT_EQ(e.code(), 21u);
      EXPECT_STREQ(e.what(), "CompareUTCTime : invalid left or right time string.");
    }
  };
  expectInvalid({}, "2020-01-01T00:00:00Z", 0);
  expectInvalid("2020-01-01T00:00:00Z", {}, 0);
  expectInvalid("2020-01-01T00:00:0", "2020-01-01T00:00:00Z", 0);
  expectInvalid("2020-01-01T00:00:00.12", "2020-01-01T00:00:00.123Z", 3);
}

}  // namespace
}  // namespace ns_sensor
