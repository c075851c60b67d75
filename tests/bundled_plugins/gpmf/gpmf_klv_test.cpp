// Values of every KLV type, text layouts, TYPE structures, and a payload's streams with
// their properties, as the converter reads them.
#include <gtest/gtest.h>

#include <cmath>

#include "bundled_plugins/gpmf/mp4_builder.hpp"
#include "klv.hpp"
#include "payload_walker.hpp"
#include "stream_plan.hpp"

namespace gpmf::testing {
namespace {

const unsigned char *Bytes(const std::string &text) { return reinterpret_cast<const unsigned char *>(text.data()); }

TEST(GpmfKlv, NumberTypes) {
  const struct {
    char type;
    std::string bytes;
    double value;
  } cases[] = {
      {'b', "\xFE", -2},
      {'B', "\xFE", 254},
      {'s', U16(0xFFCE), -50},
      {'S', U16(0xFFCE), 65486},
      {'l', U32(0xFFFFFFFF), -1},
      {'L', U32(0xFFFFFFFF), 4294967295.0},
      {'j', U64(~0ull), -1},
      {'J', U64(1ull << 40), 1099511627776.0},
      {'f', U32(0x3FC00000), 1.5},
      {'d', U64(0xC004000000000000ull), -2.5},
      {'q', U32(0xFFFE8000), -1.5},            // Q15.16
      {'Q', U64(0x0000000280000000ull), 2.5},  // Q31.32
  };
  for (const auto &c : cases) {
    EXPECT_EQ(ElementBytes(c.type), c.bytes.size()) << c.type;
    EXPECT_EQ(ReadNumber(c.type, Bytes(c.bytes)), c.value) << c.type;
  }
  for (const char text : {'F', 'U', 'c', 'u', 'G', '?', '#', '\0', 'Z'}) {
    EXPECT_TRUE(std::isnan(ReadNumber(text, Bytes(U64(0) + U64(0))))) << text;
  }
}

TEST(GpmfKlv, TextLayouts) {
  using Texts = std::vector<std::string>;
  const std::pair<std::string, Texts> cases[] = {
      {Klv("UNIT", 'c', 3, 5, std::string("degdegm\0\0m/sm/s", 15)), {"deg", "deg", "m", "m/s", "m/s"}},
      {Klv("STNM", 'c', 1, 13, "Accelerometer"), {"Accelerometer"}},
      {Klv("SIUN", 'c', 4, 1, "m/s\xB2"), {"m/s\xC2\xB2"}},  // Latin-1 becomes UTF-8
      {Klv("STNM", 'u', 1, 5, "\xC2\xB5T x"), {"\xC2\xB5T x"}},
  };
  for (const auto &[klv, texts] : cases) EXPECT_EQ(ReadStrings(Bytes(klv), ReadKlv(Bytes(klv), 0, klv.size(), 0)), texts);
}

TEST(GpmfKlv, TypeStructures) {
  const struct {
    const char *text;
    std::string fields;
  } cases[] = {
      {"lllllllSS", "lllllllSS"},
      {"f[8]L", "ffffffffL"},
      {"BBSSSSSBB", "BBSSSSSBB"},
      {"Ff", "Ff"},
      {"f[", ""},
      {"f[x]", ""},
      {"f[300]", ""},  // more fields than a 255-byte sample holds
      {"lZ", ""},
  };
  for (const auto &c : cases) {
    const std::vector<char> fields = ExpandTypeText(c.text);
    EXPECT_EQ(std::string(fields.begin(), fields.end()), c.fields) << c.text;
  }
}

std::vector<StreamBlock> Streams(const std::string &payload) {
  std::vector<StreamBlock> blocks;
  WalkPayload(Bytes(payload), payload.size(), 0, [&](const StreamBlock &block) { blocks.push_back(block); });
  return blocks;
}

TEST(GpmfKlv, ComplexSamplesScaledPerField) {
  // Two GPS9 samples: the TYPE gives the layout, SCAL one divisor per field.
  std::string samples;
  for (int i = 0; i < 2; ++i) {
    samples += Int32s({473769000 + i, 85417000, 408000, 5000, 500, 8298, 48576899}) + U16(150) + U16(3);
  }
  const std::string payload = Nest(
      "DEVC", Klv("DVID", 'F', 4, 1, "CAMR") +
                  Nest("STRM", Klv("TYPE", 'c', 1, 9, "lllllllSS") + Klv("TMPC", 'f', 4, 1, U32(0x42140000)) +
                                   Klv("XTRA", 'Z', 4, 1, "abcd") +  // unknown type: stepped over
                                   Klv("SCAL", 'l', 4, 9, Int32s({10000000, 10000000, 1000, 1000, 100, 1, 1000, 100, 1})) +
                                   Klv("GPS9", '?', 32, 2, samples)));
  const std::vector<StreamBlock> blocks = Streams(payload);
  ASSERT_EQ(blocks.size(), 1u);
  const StreamBlock &gps = blocks[0];
  EXPECT_EQ(gps.deviceId, "CAMR");
  EXPECT_EQ(gps.properties.temperature, 37.0);
  ASSERT_EQ(gps.fields.size(), 9u);
  std::vector<std::vector<double>> seen;
  gps.ForEachSample(Bytes(payload), [&](std::size_t, const std::vector<double> &numbers, const std::vector<std::string> &) {
    seen.push_back(numbers);
  });
  ASSERT_EQ(seen.size(), 2u);
  EXPECT_DOUBLE_EQ(seen[1][0], 47.3769001);
  EXPECT_DOUBLE_EQ(seen[0][6], 48576.899);
  EXPECT_DOUBLE_EQ(seen[0][7], 1.5);
  const StreamPlan plan = PlanStream(gps);
  EXPECT_EQ(plan.shape, Shape::kSplit);
  ASSERT_EQ(plan.fields.size(), 7u);  // without the day and second fields
  EXPECT_EQ(plan.fields[0].displayName, "Latitude");
  EXPECT_EQ(plan.fields[6].displayName, "Fix");
}

TEST(GpmfKlv, OneKlvPerStepAndTheirObjects) {
  // Three steps: two faces, none, one face; each face (ID, x).
  const std::string payload =
      Nest("DEVC", Nest("STRM", Klv("TYPE", 'c', 1, 2, "BS") + Klv("FACE", '?', 3, 2, std::string("\x01\x00\x10\x02\x00\x20", 6)) +
                                    Klv("FACE", '?', 3, 0, "") + Klv("FACE", '?', 3, 1, std::string("\x03\x00\x30", 3))));
  const std::vector<StreamBlock> blocks = Streams(payload);
  ASSERT_EQ(blocks.size(), 1u);
  EXPECT_EQ(blocks[0].Steps(), 3u);
  std::vector<std::pair<std::size_t, double>> seen;
  blocks[0].ForEachSample(Bytes(payload), [&](std::size_t step, const std::vector<double> &numbers,
                                              const std::vector<std::string> &) { seen.emplace_back(step, numbers[1]); });
  EXPECT_EQ(seen, (std::vector<std::pair<std::size_t, double>>{{0, 16}, {0, 32}, {2, 48}}));
}

TEST(GpmfKlv, PlansNameArraysByTheirStoredAxes) {
  const struct {
    std::string stream;
    Shape shape;
    std::string name;
    std::vector<std::string> components;
  } cases[] = {
      {Klv("ORIN", 'c', 1, 3, "YxZ") + Klv("SIUN", 'c', 5, 1, "rad/s") + Klv("GYRO", 's', 6, 1, Int16s({1, 2, 3})),
       Shape::kArray, "Gyroscope [rad/s]", {"Y", "-X", "Z"}},
      {Klv("ACCL", 's', 6, 1, Int16s({1, 2, 3})), Shape::kArray, "Accelerometer", {"X", "Y", "Z"}},
      {Klv("STNM", 'c', 1, 4, "Hues") + Klv("HUES", 'B', 2, 1, "ab"), Shape::kArray, "Hues", {"X", "Y"}},
      {Klv("SIUN", 'c', 1, 1, "s") + Klv("SHUT", 'f', 4, 1, U32(0)), Shape::kNumber, "Exposure time [s]", {}},
      {Klv("SCEN", 'F', 4, 1, "SNOW"), Shape::kText, "SCEN", {}},
      {Klv("CORI", 's', 8, 1, Int16s({1, 2, 3, 4})), Shape::kSplit, "", {}},
  };
  for (const auto &c : cases) {
    const std::vector<StreamBlock> blocks = Streams(Nest("DEVC", Nest("STRM", c.stream)));
    ASSERT_EQ(blocks.size(), 1u);
    const StreamPlan plan = PlanStream(blocks[0]);
    EXPECT_EQ(plan.shape, c.shape) << c.name;
    EXPECT_EQ(plan.displayName, c.name);
    EXPECT_EQ(plan.components, c.components) << c.name;
    if (c.shape == Shape::kSplit) {
      EXPECT_EQ(plan.fields[0].displayName, "Camera orientation w");
    }
  }
}

}  // namespace
}  // namespace gpmf::testing
