// Reading files from disk: the bundled examples, and files that cannot be read at all.
// The mapping must be released whichever way a parse ends.
#include "mgjson_read/mgjson_parser.hpp"

#include <gtest/gtest.h>

#include <string>

#include "mgjson_read/mgjson_test_support.hpp"
#include "platform/file_test_support.hpp"

namespace ns_sensor {
namespace {

using palvex::testing::OpenDescriptorCount;
using palvex::testing::ScratchFolder;
using testing::Capture;
using testing::Fault;

std::string Example(const char *name) { return std::string(PALVEX_SOURCE_DIR) + "/examples/" + name; }

TEST(MgjsonParserFile, ReadsBothExamples) {
  const struct {
    const char *name;
    std::uint32_t schema, timeKind;
    std::uint16_t timeStringLength;
  } cases[] = {
      {"flight_v1_timecode.mgjson", 0, PX_TIME_TIMECODE, 11},
      {"run_v2_utc.mgjson", 1, PX_TIME_UTC, 24},
  };
  for (const auto &c : cases) {
    const std::string path = Example(c.name);
    EXPECT_EQ(IsSchemaVersion2(path), c.schema == 1) << c.name;
    const auto parser = CreateMgjsonParser(path);
    ASSERT_EQ(Capture([&] { parser->Parse(path); }), Fault{}) << c.name;
    EXPECT_EQ(parser->GetSchemaVersion(), c.schema) << c.name;
    EXPECT_EQ(parser->filePath(), path);
    EXPECT_EQ(parser->timeKind(), c.timeKind) << c.name;
    EXPECT_EQ(parser->timeStringLength(), c.timeStringLength) << c.name;
    EXPECT_EQ(parser->videoSyncList().size(), 2u) << c.name;
    EXPECT_EQ(parser->dynamicSamples().sampleSetCount, 3u) << c.name;
  }
}

TEST(MgjsonParserFile, ReleasesTheFileWhateverHappens) {
  ScratchFolder folder;
  const std::string brokenText = R"({"useTimecodeB":true,"dataOutline":[1e5]})";
  const std::string broken = folder.WriteFile("broken.mgjson", brokenText);
  const std::string valid = folder.WriteFile("valid.mgjson", palvex::testing::ReadWholeFile(Example("run_v2_utc.mgjson")));
  const std::string empty = folder.WriteFile("empty.mgjson", "");
  const std::size_t before = OpenDescriptorCount();
  const struct {
    std::string path;
    Fault expected;
  } cases[] = {
      {broken, {32, "Miss exponent in number", static_cast<std::int64_t>(brokenText.find(']'))}},
      {valid, {}},
      {empty, {54, "Empty Input file.", -1}},
      {folder.Path("missing.mgjson"), {6, "Unable to open input file.", -1}},
      {folder.root().string(), {6, "Unable to open input file.", -1}},
  };
  for (const auto &c : cases) {
    EXPECT_EQ(Capture([&] { CreateMgjsonParser(c.path)->Parse(c.path); }), c.expected) << c.path;
    EXPECT_EQ(IsSchemaVersion2(c.path), c.path == valid) << c.path;
    EXPECT_EQ(OpenDescriptorCount(), before) << c.path;
  }
}

}  // namespace
}  // namespace ns_sensor
