// The format notes' recipe and its variants decode to the notes' expected results, and
// the time line follows the GPS rule: the median offset of the fixed payloads, else media
// time from 1970.
#include <gtest/gtest.h>

#include <cstdio>
#include <functional>

#include "bundled_plugins/gpmf/gpmf_test_support.hpp"
#include "bundled_plugins/gpmf/mp4_builder.hpp"

namespace gpmf::testing {
namespace {

// ACCL sample n = 4k + j at 1.001k + 0.25025j s after 10:29:59.999 (milliseconds cut).
const char *const kAccelTimes[] = {"10:29:59.999", "10:30:00.249", "10:30:00.499", "10:30:00.749",
                                   "10:30:01.000", "10:30:01.250", "10:30:01.500", "10:30:01.750",
                                   "10:30:02.001", "10:30:02.251", "10:30:02.501", "10:30:02.751"};

std::string Number(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", value == 0 ? 0.0 : value);
  return text;
}

void ExpectNotesResults(const Converted &c, const char *what) {
  const Samples &accel = c.sets.at("accelerometerMS");
  ASSERT_EQ(accel.size(), 12u) << what;
  for (int n = 0; n < 12; ++n) {
    EXPECT_EQ(accel[n].first, std::string("2024-01-15T") + kAccelTimes[n] + "Z") << what << " " << n;
    EXPECT_EQ(accel[n].second, Number(n) + "," + Number(-0.5 * n) + ",9.81") << what << " " << n;
  }
  const char *const fields[] = {"latitudeDeg", "longitudeDeg", "altitudeM", "speed2DMS", "speed3DMS"};
  for (int m = 0; m < 6; ++m) {
    const double expected[] = {47.3769 + 0.0001 * m, 8.5417 + 0.0001 * m, 408.0 + m, 5.0, 5.0};
    for (int f = 0; f < 5; ++f) {
      const Samples &samples = c.sets.at(fields[f]);
      ASSERT_EQ(samples.size(), 6u) << what << " " << fields[f];
      EXPECT_NEAR(std::stod(samples[m].second), expected[f], 1e-9) << what << " " << fields[f] << " " << m;
      // GPS sample m = 2k + j at 1.001k + 0.5005j s: the same instants as ACCL 4k + 2j.
      EXPECT_EQ(samples[m].first, accel[2 * m].first) << what << " " << fields[f] << " " << m;
    }
  }
  EXPECT_EQ(c.summary.payloads, 3u) << what;
  EXPECT_TRUE(c.summary.gpsTime) << what;
}

TEST(GpmfNotes, RecipeAndVariantsDecodeToTheExpectedResults) {
  const struct {
    const char *what;
    std::function<void(Mp4Recipe &)> change;
    std::uint64_t size;  // the notes' sizes, where they give one
  } variants[] = {
      {"recipe", [](Mp4Recipe &) {}, 1414},
      {"one chunk", [](Mp4Recipe &r) { r.chunkRuns = {{1, 3}}; }, 1406},
      {"co64", [](Mp4Recipe &r) { r.wideOffsets = true; }, 1426},
      {"large mdat", [](Mp4Recipe &r) { r.largeMdat = true; }, 1422},
      {"16-bit compact sizes", [](Mp4Recipe &r) { r.compactSizes = true; }, 0},
      {"two chunk runs", [](Mp4Recipe &r) { r.chunkRuns = {{1, 2}, {2, 1}}; }, 0},
      {"video between chunks", [](Mp4Recipe &r) { r.videoBytesPerChunk = 5000; }, 0},
      {"index first", [](Mp4Recipe &r) { r.moovFirst = true; }, 0},
      {"file-repair track first", [](Mp4Recipe &r) { r.repairTrackFirst = true; }, 0},
  };
  for (const auto &v : variants) {
    Mp4Recipe recipe = NotesRecipe();
    v.change(recipe);
    const std::string file = BuildMp4(recipe).Bytes();
    if (v.size != 0) {
      EXPECT_EQ(file.size(), v.size) << v.what;
    }
    ExpectNotesResults(ConvertBytes(file), v.what);
  }
}

TEST(GpmfNotes, TimeLineFromGpsOrMedia) {
  const std::string garbage = "5509100082240400";
  const struct {
    const char *what;
    std::uint32_t fix[3];
    std::string gpsTime;
    const char *firstAccel;
    std::size_t positions;
  } cases[] = {
      {"every payload fixed: the median offset", {3, 3, 3}, "", "2024-01-15T10:29:59.999Z", 6},
      {"only the last fixed: its offset", {0, 0, 2}, "", "2024-01-15T10:29:59.998Z", 2},
      {"no fix: media time, no positions", {0, 0, 0}, "", "1970-01-01T00:00:00.000Z", 0},
      {"GPS time unreadable: media time", {3, 3, 3}, garbage, "1970-01-01T00:00:00.000Z", 6},
  };
  for (const auto &c : cases) {
    Mp4Recipe recipe = NotesRecipe();
    for (int k = 0; k < 3; ++k) recipe.payloads[k] = RecipePayload(k, c.fix[k], c.gpsTime);
    const Converted converted = ConvertBytes(BuildMp4(recipe).Bytes());
    EXPECT_EQ(converted.sets.at("accelerometerMS").front().first, c.firstAccel) << c.what;
    EXPECT_EQ(converted.sets.count("latitudeDeg") ? converted.sets.at("latitudeDeg").size() : 0, c.positions) << c.what;
    EXPECT_EQ(converted.sets.at("gpsFix").size(), 3u) << c.what;
  }
}

TEST(GpmfNotes, EmptyEditDelaysTheTelemetry) {
  Mp4Recipe recipe = NotesRecipe();
  for (int k = 0; k < 3; ++k) recipe.payloads[k] = RecipePayload(k, 0);
  recipe.emptyEditTicks = 500;
  const Samples accel = ConvertBytes(BuildMp4(recipe).Bytes()).sets.at("accelerometerMS");
  EXPECT_EQ(accel.front().first, "1970-01-01T00:00:00.500Z");
  EXPECT_EQ(accel.back().first, "1970-01-01T00:00:03.252Z");
}

TEST(GpmfNotes, ShortLastPayloadKeepsItsOwnDuration) {
  Mp4Recipe recipe = NotesRecipe();
  recipe.lastPayloadTicks = 533;
  const Samples accel = ConvertBytes(BuildMp4(recipe).Bytes()).sets.at("accelerometerMS");
  ASSERT_EQ(accel.size(), 12u);
  EXPECT_EQ(accel[9].first, "2024-01-15T10:30:02.134Z");  // 2.002 + 533 / 4 ms
  EXPECT_EQ(accel[11].first, "2024-01-15T10:30:02.400Z");
}

}  // namespace
}  // namespace gpmf::testing
