// The handler's outline and file queries (raising forms) on the bundled examples.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <stdexcept>

#include "file_access/data_type_reading.hpp"
#include "file_access/handler_test_support.hpp"

namespace ns_sensor::testing {
namespace {

class FlightFile : public ::testing::Test {
 protected:
  std::unique_ptr<SensorFileHandlerImpl> handler_ = OpenHandler(ExamplePath("flight_v1_timecode.mgjson"));
};

class RunFile : public ::testing::Test {
 protected:
  std::unique_ptr<SensorFileHandlerImpl> handler_ = OpenHandler(ExamplePath("run_v2_utc.mgjson"));
};

// "name@index/name@index" for each path, root item included.
std::vector<std::string> PathTexts(const PX_GroupChildren &children) {
  std::vector<std::string> texts;
  for (std::size_t child = 0; child < children.size(); ++child) {
    const PX_DataPath path = children.PathOf(child);
    std::string text;
    for (const PX_PathItem &item : path) text += (text.empty() ? "" : "/") + item.name + "@" + std::to_string(item.index);
    texts.push_back(text);
  }
  return texts;
}

TEST_F(FlightFile, ChildrenComeAsWholeNamedPaths) {
  PX_GroupChildren children;
  handler_->GetRootChildren(&children);
  EXPECT_EQ(PathTexts(children),
            (std::vector<std::string>{"dataOutline@-1/aircraft@0", "dataOutline@-1/telemetry@1"}));

  // The parent's items are named and numbered however the path selected them.
  for (const char *path : {"[1][1]", R"([1]["navigation"])", R"(["telemetry"][1])", "[1]junk[1]"}) {
    handler_->GetGroupChildren(path, &children);
    EXPECT_EQ(PathTexts(children), (std::vector<std::string>{"dataOutline@-1/telemetry@1/navigation@1/position@0",
                                                             "dataOutline@-1/telemetry@1/navigation@1/phase@1"}))
        << path;
  }
}

TEST_F(FlightFile, BadPathsFailWithTheirOwnErrors) {
  // Every path error itself is tested on the data paths; here each query meets one.
  PX_GroupChildInfo info;
  PX_GroupChildren children;
  PX_StaticDataInfo staticInfo;
  PX_DynamicDataInfo dynamicInfo;
  auto *h = handler_.get();
  struct Case {
    const char *label;
    std::function<void()> query;
    Fault expected;
  };
  const Case cases[] = {
      {"empty text", [&] { h->GetGroupChildInfo("", &info); }, {1, "Empty PX_DataPath string."}},
      {"null text", [&] { h->GetGroupChildren(nullptr, &children); }, {1, "Empty PX_DataPath string."}},
      {"index equal to the child count", [&] { h->GetGroupChildInfo("[0][3]", &info); },
       {33, "Invalid node index, 3 child nodes present for node at path item :3. Input index : 3."}},
      {"last item by name only", [&] { h->GetGroupChildInfo(R"(["aircraft"])", &info); },
       {33, "Invalid node index, 2 child nodes present for node at path item :2. Input index : 4294967295."}},
      {"children of a static node", [&] { h->GetGroupChildren("[0][0]", &children); },
       {33, "Leaf node is not a group node."}},
      {"static info of a dynamic node", [&] { h->GetStaticDataInfo("[1][0]", &staticInfo); },
       {33, "Static data node not found at input path, Found node type: Dynamic data node."}},
      {"dynamic info of a group", [&] { h->GetDynamicDataInfo("[1][1]", &dynamicInfo); },
       {33, "Dynamic data node not found at input path, Found node type: Group data node."}},
  };
  for (const Case &c : cases) EXPECT_EQ(Capture(c.query), c.expected) << c.label;
  // Not a number: the standard conversion's own failure, which the boundary reports as 23.
  EXPECT_THROW(h->GetGroupChildInfo("[abc]", &info), std::invalid_argument);
  EXPECT_THROW(h->GetGroupChildInfo("[99999999999]", &info), std::out_of_range);
}

TEST_F(FlightFile, EveryQueryRefusesANullRecord) {
  auto *h = handler_.get();
  const std::pair<const char *, std::function<void()>> cases[] = {
      {"PX_GroupChildren", [h] { h->GetRootChildren(nullptr); }},
      {"PX_GroupChildren", [h] { h->GetGroupChildren("[0]", nullptr); }},
      {"PX_GroupChildInfo", [h] { h->GetGroupChildInfo("[0]", nullptr); }},
      {"PX_StaticDataInfo", [h] { h->GetStaticDataInfo("[0][0]", nullptr); }},
      {"PX_DynamicDataInfo", [h] { h->GetDynamicDataInfo("[1][0]", nullptr); }},
      {"DynamicDataSampleSet", [h] { h->GetSampleSet("altitudeSet", 0, 1, 1, 1, nullptr); }},
      {"DynamicDataSampleSet", [h] { h->GetSampleSetWithNeighbours("altitudeSet", 0, 1, 1, 1, nullptr); }},
      {"PX_FileInfo", [h] { h->GetFileInfo(nullptr); }},
      {"PX_VideoSyncTimeList", [h] { h->GetVideoSyncTimeList(nullptr); }},
      {"PX_DynamicSampleInfo", [h] { h->GetDynamicSampleInfo("altitudeSet", 0, 1, 1, nullptr); }},
  };
  for (const auto &[name, query] : cases) {
    EXPECT_EQ(Capture(query), (Fault{1, "Invalid pointer to \"" + std::string(name) + "\"."})) << name;
  }
}

TEST_F(FlightFile, StaticValuesOfVersion1AreReadByTheirTypes) {
  PX_StaticDataInfo info;
  handler_->GetStaticDataInfo("[0][0]", &info);
  EXPECT_EQ(info.dataType.kind, static_cast<std::uint32_t>(PX_TYPE_PADDED_STRING));
  EXPECT_EQ(info.value.text, "PX-101");  // the padded string's "str"
  EXPECT_FALSE(info.dataType.numberString);

  handler_->GetStaticDataInfo(R"(["aircraft"][1])", &info);
  EXPECT_EQ(info.displayName, "Empty weight (kg)");
  EXPECT_EQ(info.value.kind, static_cast<std::uint32_t>(PX_TYPE_NUMBER_STRING));
  EXPECT_EQ(info.value.number, 612.5);  // from the text "0612.5"
  EXPECT_TRUE(info.value.text.empty()) << "the text of an earlier query must not stay";
  ASSERT_TRUE(info.dataType.numberString);
  EXPECT_EQ(info.dataType.numberString->digitsInteger, 4u);
  EXPECT_EQ(info.dataType.numberString->legalMax, 9999.9);

  handler_->GetStaticDataInfo("[0][2]", &info);
  EXPECT_EQ(info.value.numbers, (std::vector<double>{47.3769, 8.5417}));
  ASSERT_TRUE(info.dataType.numberArray);
  EXPECT_EQ(info.dataType.numberArray->displayNames, (std::vector<std::string>{"Latitude", "Longitude"}));
  ASSERT_EQ(info.dataType.numberArray->ranges.size(), 2u);
  EXPECT_EQ(info.dataType.numberArray->ranges[1].legalMin, -180.0);
  EXPECT_EQ(info.dataType.numberArray->isPoint, 1u);
}

TEST_F(RunFile, StaticValuesOfVersion2AreReadByTheirTypes) {
  struct Case {
    const char *path;
    std::uint32_t kind;
    std::function<void(const PX_StaticValueInfo &)> check;
  };
  const Case cases[] = {
      {"[0][0]", PX_TYPE_STRING, [](const auto &v) { EXPECT_EQ(v.text, "Amelia"); }},
      {"[0][1]", PX_TYPE_NUMBER, [](const auto &v) { EXPECT_EQ(v.number, 54.0); }},
      {"[0][2]", PX_TYPE_NUMBER_ARRAY, [](const auto &v) { EXPECT_EQ(v.numbers, (std::vector<double>{39, 6})); }},
      {"[0][3]", PX_TYPE_BOOLEAN, [](const auto &v) { EXPECT_FALSE(v.boolean); }},
  };
  for (const Case &c : cases) {
    PX_StaticDataInfo info;
    handler_->GetStaticDataInfo(c.path, &info);
    EXPECT_EQ(info.dataType.kind, c.kind) << c.path;
    EXPECT_EQ(info.value.kind, c.kind) << c.path;
    c.check(info.value);
  }
}

TEST_F(RunFile, DynamicInfoCarriesTheSampleSetAndItsTimes) {
  PX_DynamicDataInfo info;
  handler_->GetDynamicDataInfo("[1][1]", &info);
  EXPECT_EQ(info.sampleSetId, "position");
  ASSERT_TRUE(info.dataType.numberArray);
  EXPECT_EQ(info.dataType.numberArray->arraySize, 2u);
  EXPECT_TRUE(info.hasExpectedFrequency);
  // UTC seconds count from the file's earliest sample time.
  EXPECT_EQ(info.firstSampleTime.text, "2024-05-04T06:30:00.000Z");
  EXPECT_EQ(info.firstSampleTime.seconds.numerator, 0u);
  EXPECT_NE(info.firstSampleTime.seconds.denominator, 0u);
  EXPECT_EQ(info.lastSampleTime.text, "2024-05-04T06:30:02.000Z");
  EXPECT_EQ(info.lastSampleTime.seconds, (RationalTime{2, 1}));
}

TEST_F(FlightFile, DynamicInfoReadsTheMisspeltFrequencyKeyAndTimecodeTimes) {
  PX_DynamicDataInfo info;
  handler_->GetDynamicDataInfo("[1][0]", &info);
  EXPECT_EQ(info.maxInterSampleDuration, "00:00:00:01");
  EXPECT_TRUE(info.hasExpectedFrequency);
  // 01:00:00:00 at 29.97 drop frame is frame 107892: 107892 x 1001 / 30000 seconds.
  EXPECT_EQ(info.firstSampleTime.text, "01:00:00:00");
  const RationalTime first = info.firstSampleTime.seconds;
  ASSERT_NE(first.denominator, 0u);
  EXPECT_DOUBLE_EQ(static_cast<double>(first.numerator) / first.denominator, 107892.0 * 1001 / 30000);

  handler_->GetDynamicDataInfo("[1][1][1]", &info);  // spells "hasExpectedFrequecyB": false
  EXPECT_FALSE(info.hasExpectedFrequency);
  EXPECT_EQ(info.interpolation, static_cast<std::uint32_t>(PX_INTERPOLATION_HOLD));
  EXPECT_EQ(info.lastSampleTime.text, "01:00:00:02");
  EXPECT_EQ(info.maxInterSampleDuration, "") << "cleared from the query before";
}

TEST_F(FlightFile, FileInfoAndSyncList) {
  PX_FileInfo info;
  handler_->GetFileInfo(&info);
  EXPECT_EQ(info.frameRateValue, 30000u);
  EXPECT_TRUE(info.dropFrame);
  EXPECT_EQ(info.schemaVersion, 1u);
  EXPECT_EQ(info.inputPath, ExamplePath("flight_v1_timecode.mgjson"));
  EXPECT_EQ(info.mgjsonPath, info.inputPath);
  EXPECT_FALSE(info.converted);
  EXPECT_EQ(info.version, "MGJSON1.0.0");

  PX_VideoSyncTimeList list;
  list.entries.resize(5);  // emptied first
  handler_->GetVideoSyncTimeList(&list);
  ASSERT_EQ(list.entries.size(), 2u);
  EXPECT_EQ(list.entries[0].fileName, "flight_cam_front.mov");
  EXPECT_EQ(list.entries[1].kind, static_cast<std::uint32_t>(PX_SYNC_FRAME_NUMBER));
}

TEST(DataTypeReading, NumberStringsReadAsSampleValuesDo) {
  EXPECT_EQ(NumberOfText("+047.3769"), 47.3769);
  EXPECT_EQ(NumberOfText("-12"), -12.0);
  for (const char *text : {"", "+", "1.2.3", "12abc", "abc"}) EXPECT_TRUE(std::isnan(NumberOfText(text))) << text;
}

}  // namespace
}  // namespace ns_sensor::testing
