// Sample time texts from frame numbers and UTC instants, and the time information the
// reader accepts.
#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "plugin_model/plugin_status.hpp"
#include "plugin_model/sample_time_text.hpp"

namespace PX_PLUGIN {
namespace {

std::uint32_t CodeOf(const std::function<void()> &body) { return RunWithStatus(nullptr, body); }

SampleTimeText Timecode(std::uint32_t value, std::uint32_t scale, bool dropFrame) {
  return SampleTimeText(TimeInformation(CheckedTimecodeInfo(dropFrame, value, scale)));
}

// Pinned against the reader's own frame texts, which its tests pin to exact values.
TEST(SampleTimeText, FollowingFramesGiveTheTextsOfTheirOwn) {
  struct Rate {
    std::uint32_t value, scale;
    bool dropFrame;
  };
  const Rate rates[] = {{25, 1, false}, {30000, 1001, true}, {60000, 1001, true}, {120, 1, false}, {1, 1, false}};
  std::mt19937_64 random(7);
  for (const Rate &rate : rates) {
    const SampleTimeText texts = Timecode(rate.value, rate.scale, rate.dropFrame);
    const ns_sensor::FrameRate frameRate{rate.value, rate.scale, rate.dropFrame};
    FrameTextCache cache;
    std::uint64_t frame = 0;
    const std::uint64_t withinADay = ns_sensor::NominalFramesPerSecond(frameRate) * 86000ull;
    for (int i = 0; i < 20000; ++i) {
      // First a run of frames across minutes (drop frame skips labels there), then mostly
      // the next frame, sometimes a jump, sometimes a repeat.
      const auto step = i < 4000 ? 2 : random() % 16;
      frame = step == 0 || frame + 1 >= withinADay ? random() % withinADay : step == 1 ? frame : frame + 1;
      ASSERT_EQ(texts.AtFrame(frame, cache), ns_sensor::FrameNumberToSmpte(frame, frameRate))
          << rate.value << "/" << rate.scale << " frame " << frame;
    }
  }
}

TEST(SampleTimeText, FramesStopBeforeTwentyFourHours) {
  FrameTextCache cache;
  const SampleTimeText ndf = Timecode(25, 1, false);
  EXPECT_EQ(ndf.AtFrame(25 * 86400 - 1, cache), "23:59:59:24");
  EXPECT_EQ(CodeOf([&] { ndf.AtFrame(25 * 86400, cache); }), PX_PLUGIN_INVALID_ARGUMENT);
  const SampleTimeText df = Timecode(30000, 1001, true);
  EXPECT_EQ(df.AtFrame(2589407, cache), "23:59:59:29");
  EXPECT_EQ(CodeOf([&] { df.AtFrame(2589408, cache); }), PX_PLUGIN_INVALID_ARGUMENT);
}

TEST(SampleTimeText, RatesTheReaderRefusesAreRefused) {
  const struct {
    bool dropFrame;
    std::uint32_t value, scale, code;
  } cases[] = {
      {false, 25, 0, PX_PLUGIN_INVALID_ARGUMENT}, {false, 1, 3, PX_PLUGIN_INVALID_ARGUMENT},  // rounds to 0
      {false, 1000, 1, PX_PLUGIN_INVALID_ARGUMENT}, {true, 25, 1, PX_PLUGIN_INVALID_ARGUMENT},
      {true, 2997, 100, 0}, {false, 999, 1, 0},
  };
  for (const auto &c : cases) {
    EXPECT_EQ(CodeOf([&] { CheckedTimecodeInfo(c.dropFrame, c.value, c.scale); }), c.code) << c.value << "/" << c.scale;
  }
  EXPECT_EQ(CodeOf([] { CheckedUtcInfo(10, true); }), PX_PLUGIN_INVALID_ARGUMENT);
}

struct UtcCase {
  std::uint32_t precision;
  bool isGmt;
  const char *base;
  std::uint32_t numerator;
  std::uint32_t denominator;
  const char *text;
};

TEST(SampleTimeText, UtcInstantsAtThePrecisionOfTheDocument) {
  const UtcCase cases[] = {
      {3, true, "2024-02-28T23:59:59.5Z", 3, 4, "2024-02-29T00:00:00.250Z"},
      {0, true, "2023-12-31T23:59:59Z", 1, 1, "2024-01-01T00:00:00Z"},
      {3, true, "2024-01-01T00:00:00Z", 1, 3, "2024-01-01T00:00:00.333Z"},  // below precision dropped
      {2, false, "2024-06-01T12:00:00+02:00", 90, 1, "2024-06-01T12:01:30.00+02:00"},
      {9, false, "2024-06-01T12:00:00.123456789-05:30", 0, 1, "2024-06-01T12:00:00.123456789-05:30"},
  };
  for (const UtcCase &c : cases) {
    const SampleTimeText texts(TimeInformation(CheckedUtcInfo(c.precision, c.isGmt)));
    UtcBaseCache cache;
    EXPECT_EQ(texts.AtUtc(c.base, c.numerator, c.denominator, cache), c.text) << c.base;
    EXPECT_EQ(texts.AtUtc(c.base, c.numerator, c.denominator, cache), c.text) << "cached " << c.base;
  }
}

TEST(SampleTimeText, UtcBasesThatDoNotFitAreRefused) {
  const SampleTimeText gmt3(TimeInformation(CheckedUtcInfo(3, true)));
  const SampleTimeText offset0(TimeInformation(CheckedUtcInfo(0, false)));
  const auto code = [](const SampleTimeText &texts, const char *base, std::uint32_t denominator = 1) {
    return CodeOf([&] {
      UtcBaseCache cache;
      texts.AtUtc(base, 0, denominator, cache);
    });
  };
  EXPECT_EQ(code(gmt3, "2024-01-01T00:00:00.1234Z"), PX_PLUGIN_TIME_MISMATCH);  // finer than the file
  EXPECT_EQ(code(gmt3, "2024-01-01T00:00:00+01:00"), PX_PLUGIN_TIME_MISMATCH);  // offset in a GMT file
  EXPECT_EQ(code(offset0, "2024-01-01T00:00:00Z"), PX_PLUGIN_TIME_MISMATCH);
  EXPECT_EQ(code(gmt3, "2024-13-01T00:00:00Z"), PX_PLUGIN_INVALID_ARGUMENT);
  EXPECT_EQ(code(gmt3, "2024-01-01T00:00:00"), PX_PLUGIN_INVALID_ARGUMENT);
  EXPECT_EQ(code(gmt3, "2024-01-01T00:00:00Zjunk"), PX_PLUGIN_INVALID_ARGUMENT);
  EXPECT_EQ(code(gmt3, "not a time at all, not at all"), PX_PLUGIN_INVALID_ARGUMENT);
  EXPECT_EQ(code(gmt3, "2024-01-01T00:00:00Z", 0), PX_PLUGIN_INVALID_ARGUMENT);
  EXPECT_EQ(code(gmt3, "9999-12-31T23:59:59Z", 1) , 0u);
  EXPECT_EQ(CodeOf([&] {
              UtcBaseCache cache;
              gmt3.AtUtc("9999-12-31T23:59:59Z", 1, 1, cache);
            }),
            PX_PLUGIN_INVALID_ARGUMENT);  // year 10000
}

TEST(SampleTimeText, FormsMustMatchTheTimeInformation) {
  const SampleTimeText none{TimeInformation{}};
  UtcBaseCache cache;
  FrameTextCache frames;
  EXPECT_EQ(CodeOf([&] { none.AtFrame(1, frames); }), PX_PLUGIN_TIME_MISMATCH);
  EXPECT_EQ(CodeOf([&] { none.AtUtc("2024-01-01T00:00:00Z", 0, 1, cache); }), PX_PLUGIN_TIME_MISMATCH);
  EXPECT_EQ(CodeOf([&] { Timecode(25, 1, false).AtUtc("2024-01-01T00:00:00Z", 0, 1, cache); }),
            PX_PLUGIN_TIME_MISMATCH);
}

}  // namespace
}  // namespace PX_PLUGIN
