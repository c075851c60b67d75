// Files on disk: chapters found beside the first one and joined, a sparse 4 GB recording
// read through its index and payloads only, and the bundled example kept in step with
// its generator.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "bundled_plugins/gpmf/gpmf_test_support.hpp"
#include "bundled_plugins/gpmf/mp4_builder.hpp"
#include "chapters.hpp"
#include "platform/file_test_support.hpp"

namespace gpmf::testing {
namespace {

namespace fs = std::filesystem;

TEST(GpmfFiles, ChaptersBesideTheFirst) {
  const palvex::testing::ScratchFolder folder;
  for (const char *name : {"GH010042.MP4", "GH020042.MP4", "GH030042.MP4", "GH050042.MP4", "GX020042.MP4",
                           "GH020043.MP4", "GH020042.mov", "gs010007.360", "gs020007.360", "clip.mp4"}) {
    std::ofstream(folder.Path(name)) << "x";
  }
  const struct {
    const char *given;
    std::vector<std::string> joined;
  } cases[] = {
      // A missing chapter 04 ends the recording; other letters, numbers and extensions are others'.
      {"GH010042.MP4", {"GH010042.MP4", "GH020042.MP4", "GH030042.MP4"}},
      {"gs010007.360", {"gs010007.360", "gs020007.360"}},
      {"GH020042.MP4", {"GH020042.MP4"}},  // only the first chapter gathers the others
      {"clip.mp4", {"clip.mp4"}},
  };
  for (const auto &c : cases) {
    std::vector<std::string> expected;
    for (const std::string &name : c.joined) expected.push_back(folder.Path(name));
    EXPECT_EQ(FindChapters(folder.Path(c.given)), expected) << c.given;
  }
}

TEST(GpmfFiles, ChaptersContinueAfterThePreviousVideo) {
  Mp4Recipe first = NotesRecipe();
  first.movieTicksExtra = 997;  // the video runs 4.000 s, its telemetry 3.003 s
  Mp4Recipe second = NotesRecipe();
  second.payloads = {RecipePayload(0, 3, "240115103004.000")};  // the GPS clock runs on
  const Converted c = ConvertBytes({BuildMp4(first).Bytes(), BuildMp4(second).Bytes()});
  const Samples &accel = c.sets.at("accelerometerMS");
  ASSERT_EQ(accel.size(), 16u);
  EXPECT_EQ(accel[12].first, "2024-01-15T10:30:03.999Z");  // 10:29:59.999 + 4.000 s
  EXPECT_EQ(accel[15].first, "2024-01-15T10:30:04.749Z");
}

TEST(GpmfFiles, SparseFourGigabyteRecordingReadsIndexAndPayloadsOnly) {
#if defined(_WIN32)
  GTEST_SKIP() << "Windows files are sparse only when marked so: the hole would be 4 GB written to disk";
#endif
  const palvex::testing::ScratchFolder folder;
  Mp4Recipe recipe = NotesRecipe();
  recipe.videoBytesPerChunk = 1500u << 20;  // 4.4 GB in all: offsets past 4 GiB, co64, a 64-bit mdat size
  const Mp4Image image = BuildMp4(recipe);
  const std::string path = folder.Path("GH010001.MP4");
  ASSERT_TRUE(image.Write(path));
  ASSERT_GT(fs::file_size(path), 4ull << 30);
  PX_PLUGIN::testing::TestDocument document;
  const ConversionSummary summary =
      ConvertRecording(1, [&](std::size_t) { return std::make_unique<FileSource>(path); }, document.root);
  EXPECT_EQ(summary.samples, 12u + 6u * 5u + 3u * 2u);  // accelerometer, GPS fields, fix and precision
  EXPECT_TRUE(summary.gpsTime);
  // Both passes read the payloads; the index is read once, in part.
  EXPECT_LE(summary.bytesRead, 2 * image.PieceBytes());
}

TEST(GpmfFiles, BundledExampleIsTheGeneratorsOutput) {
  EXPECT_TRUE(palvex::testing::ReadWholeFile(PALVEX_SOURCE_DIR "/examples/action_cam.mp4") == ExampleMp4().Bytes())
      << "the bundled example no longer matches its generator";
}

}  // namespace
}  // namespace gpmf::testing
