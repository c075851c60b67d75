// Damaged files: each fails with the plug-in's own code and the byte offset where the
// damage is, or is read as far as it is whole; none crashes, hangs or over-allocates.
#include <gtest/gtest.h>

#include <functional>

#include "bundled_plugins/gpmf/gpmf_test_support.hpp"
#include "bundled_plugins/gpmf/mp4_builder.hpp"
#include "gpmf_errors.hpp"
#include "track_index.hpp"

namespace gpmf::testing {
namespace {

// Offsets in the notes' 1414-byte file.
constexpr std::size_t kMdat = 20, kP0 = 28, kP1 = 320, kMoov = 904, kMvhd = 912, kMdhd = 1128, kStsd = 1266,
                      kStts = 1302, kStsc = 1326, kStsz = 1354, kStco = 1386;

std::string Patched(std::size_t at, const std::string &bytes) {
  std::string file = BuildMp4(NotesRecipe()).Bytes();
  file.replace(at, bytes.size(), bytes);
  return file;
}

std::string Built(const std::function<void(Mp4Recipe &)> &change) {
  Mp4Recipe recipe = NotesRecipe();
  change(recipe);
  return BuildMp4(recipe).Bytes();
}

TEST(GpmfBadInput, FailsWithCodeAndOffset) {
  const struct {
    const char *what;
    std::string file;
    std::uint32_t code;
    std::int64_t offset;
  } cases[] = {
      {"box size below its header", Patched(kMdat, U32(4)), kCorruptBox, kMdat},
      {"box past the end of the file", Patched(kMoov, U32(0xFFFF)), kCorruptBox, kMoov},
      {"64-bit size that overflows", Patched(kMdat, U32(1) + "mdat" + U64(~0ull)), kCorruptBox, kMdat},
      {"open-ended box inside the index", Patched(kMvhd, U32(0)), kCorruptBox, kMvhd},
      {"no index", Patched(kMoov + 4, "moox"), kNoIndex, -1},
      {"no telemetry sample entry", Patched(kStsd + 20, "avc1"), kNoTelemetryTrack, -1},
      {"zero track timescale", Patched(kMdhd + 20, U32(0)), kZeroTimescale, kMdhd},
      {"zero movie timescale", Patched(kMvhd + 20, U32(0)), kZeroTimescale, kMvhd},
      {"first chunk 0", Patched(kStsc + 16, U32(0)), kBadSampleTable, kStsc},
      {"chunk runs going back", Built([](Mp4Recipe &r) { r.chunkRuns = {{2, 1}, {1, 1}}; }), kBadSampleTable, -2},
      {"stts short of the payloads", Patched(kStts + 16, U32(2)), kBadSampleTable, kStts},
      {"stsc entry count beyond its box", Patched(kStsc + 12, U32(1000)), kBadSampleTable, kStsc},
      {"sizes table beyond its box", Patched(kStsz + 16, U32(4)), kBadSampleTable, kStsz},
      {"sample count beyond any bound", Patched(kStsz + 12, U32(7) + U32(0xFFFFFFFF)), kTooLarge, kStsz},
      {"first payload beyond the end", Patched(kStco + 16, U32(0x10000)), kPayloadOutside, 0x10000},
      {"payload longer than written", Patched(kStsz + 20, U32(300)), kCorruptPayload, kP1},
      {"nest longer than its payload", Patched(kP0 + 6, U16(0x200)), kCorruptPayload, kP0},
      {"stream longer than its device", Patched(kP0 + 42, U16(0x200)), kCorruptPayload, kP0 + 36},
      {"garbage", std::string(64, '\x7F'), kCorruptBox, 0},
  };
  for (const auto &c : cases) {
    try {
      ConvertBytes(c.file);
      ADD_FAILURE() << c.what << ": converted";
    } catch (const PX_PLUGIN::PX_PluginException &e) {
      EXPECT_EQ(e.code(), c.code) << c.what;
      if (c.offset != -2) {
        EXPECT_EQ(e.detail1(), c.offset) << c.what;
      }
      EXPECT_EQ(e.detail2(), 1) << c.what;
    }
  }
}

TEST(GpmfBadInput, DamageInsideStreamsSkipsOnlyThatStream) {
  // P0's accelerometer stream: SCAL repeat at +98, ACCL type at +108.
  const struct {
    const char *what;
    std::string file;
    std::size_t accelSamples;
  } cases[] = {
      {"unknown type of the data", Patched(kP0 + 108, "Z"), 8},
      {"SCAL with two values for three elements", Patched(kP0 + 98, U16(2)), 8},
      {"structure size not a multiple of the type's", Patched(kP0 + 108, "l"), 8},
  };
  for (const auto &c : cases) {
    const Converted converted = ConvertBytes(c.file);
    EXPECT_EQ(converted.sets.at("accelerometerMS").size(), c.accelSamples) << c.what;
    EXPECT_EQ(converted.sets.at("latitudeDeg").size(), 6u) << c.what;
  }
}

TEST(GpmfBadInput, RecordingCutInsideTheLastPayloadKeepsTheOthers) {
  Mp4Recipe recipe = NotesRecipe();
  recipe.moovFirst = true;
  std::string file = BuildMp4(recipe).Bytes();
  file.resize(file.size() - 100);
  const Converted converted = ConvertBytes(file);
  EXPECT_EQ(converted.summary.payloads, 2u);
  EXPECT_EQ(converted.sets.at("accelerometerMS").size(), 8u);
  EXPECT_EQ(converted.sets.count("payloadsCutOff"), 0u);  // a static node: no sample set
}

TEST(GpmfBadInput, CheckAcceptsIsoMediaOnly) {
  Mp4Recipe moovFirst = NotesRecipe();
  moovFirst.moovFirst = true;
  const struct {
    const char *what;
    std::string bytes;
    bool accepted;
  } cases[] = {
      {"the recipe", BuildMp4(NotesRecipe()).Bytes(), true},
      {"index first", BuildMp4(moovFirst).Bytes(), true},
      {"a video without telemetry", Patched(kStsd + 20, "avc1"), true},
      {"empty", "", false},
      {"text", "time,speed\n0,1\n2,3\n", false},
      {"a known type with a size past the end", U32(0x1000) + "ftypmp41", false},
      {"an unknown first box", U32(8) + "abcd", false},
  };
  for (const auto &c : cases) {
    MemorySource source(c.bytes);
    EXPECT_EQ(LooksLikeIsoMedia(source), c.accepted) << c.what;
  }
}

}  // namespace
}  // namespace gpmf::testing
