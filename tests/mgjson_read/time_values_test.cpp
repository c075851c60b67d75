// Rational products and SMPTE timecode.
#include "mgjson_read/time_values.hpp"

#include <gtest/gtest.h>

#include <stdexcept>

#include "api/px_exception.hpp"

namespace ns_sensor {
namespace {

constexpr FrameRate kDrop2997{30000, 1001, true};
constexpr FrameRate kDrop5994{60000, 1001, true};

template <typename Call>
void ExpectPxError(Call call, std::uint32_t code, const std::string &message) {
  try {
    call();
    ADD_FAILURE() << "no exception; expected " << message;
  } catch (const PX_Exception &e) {
    EXPECT_EQ(e.code(), code);
    EXPECT_EQ(e.what(), message);
  }
}

// ---- MultiplyRational ----

struct ProductCase {
  const char *why;
  RationalTime a, b;
  TimeStatus status;
  RationalTime product;
};

TEST(MultiplyRational, FormsReducesOrGivesUp) {
  const ProductCase cases[] = {
      {"fits as it is, unreduced", {6, 4}, {2, 3}, TimeStatus::Ok, {12, 12}},
      {"largest product that fits", {65535, 1}, {65537, 1}, TimeStatus::Ok, {4294967295u, 1}},
      {"one past it, nothing to reduce", {65536, 1}, {65536, 1}, TimeStatus::DoesNotFit, {0, 0}},
      {"a rate times its inverse cancels crosswise", {107999892, 30000}, {30000, 1001}, TimeStatus::Ok, {107892, 1}},
      {"a zero numerator drops a huge denominator", {0, 4000000000u}, {1, 4000000000u}, TimeStatus::Ok, {0, 1}},
      {"own divisor needed after crosswise", {70000, 7}, {100003, 1}, TimeStatus::Ok, {1000030000, 1}},
      {"two large primes never fit", {100003, 1}, {100019, 1}, TimeStatus::DoesNotFit, {0, 0}},
      {"zero denominator left", {1, 0}, {1, 1}, TimeStatus::DoesNotFit, {0, 0}},
      {"zero denominator right", {1, 1}, {0, 0}, TimeStatus::DoesNotFit, {0, 0}},
  };
  for (const auto &c : cases) {
    RationalTime product{7, 7};
    EXPECT_EQ(MultiplyRational(c.a, c.b, product), c.status) << c.why;
    EXPECT_EQ(product, c.product) << c.why;
  }
}

// ---- Timecode ----

struct LabelCase {
  FrameRate rate;
  std::uint64_t frame;
  const char *text;
};

TEST(Timecode, FramesAndLabelsAtTheRatesThatMatter) {
  const LabelCase cases[] = {
      // Drop frame skips two (four at 59.94) labels each minute except every tenth.
      {kDrop2997, 1799, "00:00:59:29"},  {kDrop2997, 1800, "00:01:00:02"}, {kDrop2997, 17982, "00:10:00:00"},
      {{2997, 100, true}, 1800, "00:01:00:02"}, {kDrop5994, 3600, "00:01:00:04"},
      {kDrop5994, 35964, "00:10:00:00"}, {{30000, 1001, false}, 1800, "00:01:00:00"},
      {{120, 1, false}, 120 * 61 + 7, "00:01:01:007"},
  };
  for (const auto &c : cases) {
    EXPECT_EQ(FrameNumberToSmpte(c.frame, c.rate), c.text) << c.frame;
    EXPECT_EQ(SmpteToFrameNumber(c.text, c.rate), static_cast<std::int64_t>(c.frame)) << c.text;
  }
  EXPECT_EQ(SmpteTextLength({120, 1, false}), 12u);
  EXPECT_EQ(SmpteTextLength({99, 1, false}), 11u);
}

// Every frame of an hour: number -> text -> number, and through seconds and back, with the
// texts in strictly increasing order.
void CheckWholeHour(const FrameRate &rate, std::uint64_t framesPerHour) {
  std::string previous;
  for (std::uint64_t frame = 0; frame < framesPerHour; ++frame) {
    const std::string text = FrameNumberToSmpte(frame, rate);
    ASSERT_EQ(SmpteToFrameNumber(text, rate), static_cast<std::int64_t>(frame)) << text;
    const RationalTime seconds = SmpteToTime(text, rate);
    ASSERT_NE(seconds.denominator, 0u) << text;
    RationalTime frames;  // the product a rate and its inverse must survive
    ASSERT_EQ(MultiplyRational(seconds, {rate.value, rate.scale}, frames), TimeStatus::Ok) << text;
    ASSERT_EQ(std::uint64_t{frames.denominator} * frame, frames.numerator) << text;
    ASSERT_EQ(TimeToSmpte(seconds, rate), text);
    if (frame > 0) {
      ASSERT_LT(CompareSMPTETime(previous, text), 0) << previous << " " << text;
    }
    previous = text;
  }
  EXPECT_EQ(FrameNumberToSmpte(framesPerHour, rate), "01:00:00:00");
}

TEST(Timecode, EveryFrameOfAnHourRoundTripsAt2997DropFrame) { CheckWholeHour(kDrop2997, 107892); }
TEST(Timecode, EveryFrameOfAnHourRoundTripsAt5994DropFrame) { CheckWholeHour(kDrop5994, 215784); }

TEST(Timecode, TimesFallInTheirFrameAndHoursWrapAtADay) {
  const FrameRate pal{25, 1, false};
  EXPECT_EQ(TimeToSmpte({1, 3}, pal), "00:00:00:08");  // 8.33 frames
  EXPECT_EQ(TimeToSmpte({86400, 1}, pal), "00:00:00:00");
  EXPECT_EQ(TimeToSmpte({90061, 1}, pal), "01:01:01:00");
  EXPECT_EQ(TimeToSmpte({4294967295u, 1}, kDrop2997), FrameNumberToSmpte(128720298551ull, kDrop2997));
  EXPECT_EQ(SmpteToTime("00:00:01:00", kDrop2997), (RationalTime{30030, 30000}));
  EXPECT_EQ(SmpteToTime("01-02-03;04", pal), (RationalTime{(3723 * 25 + 4), 25}));  // separators unread
  EXPECT_EQ(SmpteToTime("99:59:59:24", pal), (RationalTime{8999999, 25}));
  // Late in a day at 59.94 some frames have no 32-bit fraction: 0/0, never a wrong time.
  EXPECT_EQ(SmpteToTime("23:59:59:55", kDrop5994), (RationalTime{0, 0}));
  EXPECT_EQ(SmpteToTime("23:59:59:54", kDrop5994), (RationalTime{5178810 / 30 * 1001, 2000}));
}

struct BadText {
  const char *text;
  FrameRate rate;
  bool outOfRange;  // else invalid argument
};

TEST(Timecode, UnreadableTextsFailWithTheStandardErrors) {
  const FrameRate ntsc{30, 1, false};
  const BadText cases[] = {
      {"", ntsc, false},
      {"00:00:00:0", ntsc, false},             // one byte short
      {"00:00:00:00", {120, 1, false}, false},  // three-digit frames expected
      {"aa:00:00:00", ntsc, false},
      {"00:60:00:00", ntsc, true},
      {"00:00:00:30", ntsc, true},
      {"-1:00:00:00", ntsc, true},
  };
  for (const auto &c : cases) {
    if (c.outOfRange) {
      EXPECT_THROW(SmpteToFrameNumber(c.text, c.rate), std::out_of_range) << c.text;
    } else {
      EXPECT_THROW(SmpteToTime(c.text, c.rate), std::invalid_argument) << c.text;
    }
  }
}

TEST(Timecode, RatesThatCannotNumberFramesAreRefused) {
  const std::string message = "scale value cannot be zero for parameter \"frameRate\".";
  for (const FrameRate rate : {FrameRate{30, 0, false}, FrameRate{0, 1, false}, FrameRate{1, 3, false}}) {
    ExpectPxError([&] { TimeToSmpte({1, 1}, rate); }, 1, message);
    ExpectPxError([&] { SmpteToTime("00:00:00:00", rate); }, 1, message);
  }
  EXPECT_EQ(NominalFramesPerSecond({2, 3, false}), 1u);  // 0.67 rounds up to one frame
  ExpectPxError([] { TimeToSmpte({1, 0}, {25, 1, false}); }, 1,
                "scale value cannot be zero for parameter \"time\".");
}

struct OrderCase {
  const char *left;
  const char *right;
  int sign;
};

TEST(CompareSMPTETime, OrdersByFieldsThenFrameNumbers) {
  const OrderCase cases[] = {
      {"01:02:03:04", "01:02:03:04", 0},  {"01:02:03:04", "01:02:04:00", -1},
      {"02:00:00:00", "01:59:59:29", 1},  {"00:00:00:09", "00:00:00:10", -1},
      {"00:00:00:100", "00:00:00:99", 1},  // frame widths follow each text's length
      {"00:00:00:005", "00:00:00:05", 0},   {"01;02;03;04", "01:02:03:04", 0},
  };
  for (const auto &c : cases) {
    const int order = CompareSMPTETime(c.left, c.right);
    EXPECT_EQ((order > 0) - (order < 0), c.sign) << c.left << " " << c.right;
  }
  EXPECT_THROW(CompareSMPTETime("00:00:00:a1", "00:00:00:01"), std::invalid_argument);
}

TEST(CompareSMPTETime, NullOrShortTextsAreInvalidInput) {
  const std::string message = "CompareSMPTETime : invalid left or right time string.";
  ExpectPxError([&] { CompareSMPTETime({}, "00:00:00:00"); }, 21, message);
  ExpectPxError([&] { CompareSMPTETime("00:00:00:00", {}); }, 21, message);
  ExpectPxError([&] { CompareSMPTETime("00:00:00:0", "00:00:00:00"); }, 21, message);
}

}  // namespace
}  // namespace ns_sensor
