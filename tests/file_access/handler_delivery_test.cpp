// The handler's client forms, as a host sees them: host records filled through the
// callback table, every failure reported through entry 11 and none thrown.
#include <gtest/gtest.h>

#include "api/client_table.hpp"
#include "api/px_exception.hpp"
#include "api/service_table.hpp"
#include "file_access/handler_test_support.hpp"
#include "support/test_host.hpp"

namespace ns_sensor::testing {
namespace {

using palvex::host::ErrorLog;
using palvex::testing::HandlerDeliveryHook;
using palvex::testing::PathItemCalls;

class ClientForms : public ::testing::Test {
 protected:
  void SetUp() override {
    PX_SupportedFormatList ignored;
    GetSupportedFormats_1(&ignored, nullptr, palvex::testing::TestCallbacks());
    ASSERT_EQ(ClientTable(), palvex::testing::TestCallbacks());
    palvex::host::ServiceTable() = &ServiceTable();
    PathItemCalls().clear();
    flight_ = OpenHandler(ExamplePath("flight_v1_timecode.mgjson"));
    run_ = OpenHandler(ExamplePath("run_v2_utc.mgjson"));
    // The client forms as a host reaches them: through the public interface.
    flightFile_ = flight_.get();
    runFile_ = run_.get();
  }
  void TearDown() override { HandlerDeliveryHook() = nullptr; }

  std::unique_ptr<SensorFileHandlerImpl> flight_, run_;
  ISensorFileHandler *flightFile_ = nullptr;
  ISensorFileHandler *runFile_ = nullptr;
  ErrorLog log_;
};

std::vector<std::string> HostPaths(const ::PX_GroupChildren &children) {
  std::vector<std::string> texts;
  for (const auto &path : children.paths) {
    std::string text;
    for (const auto &item : path) text += (text.empty() ? "" : "/") + item.name;
    texts.push_back(text);
  }
  return texts;
}

TEST_F(ClientForms, GroupChildrenArriveAsTheParentPathOnceThenFinalItems) {
  ::PX_GroupChildren children;
  flightFile_->GetGroupChildren("[1][1]", &children, &log_);
  EXPECT_TRUE(log_.empty());
  EXPECT_EQ(PathItemCalls(),
            (std::vector<std::string>{"dataOutline@4294967295/2/0", "telemetry@1/2/0", "navigation@1/2/0",
                                      "position@0/2/1", "phase@1/2/1"}));
  EXPECT_EQ(HostPaths(children), (std::vector<std::string>{"dataOutline/telemetry/navigation/position",
                                                           "dataOutline/telemetry/navigation/phase"}));
  PathItemCalls().clear();
  ::PX_GroupChildren top;
  runFile_->GetRootChildren(&top, &log_);
  EXPECT_EQ(PathItemCalls(), (std::vector<std::string>{"dataOutline@4294967295/2/0", "runner@0/2/1", "sensors@1/2/1"}));
  EXPECT_TRUE(log_.empty());
}

TEST_F(ClientForms, NodeQueriesFillHostRecords) {
  ::PX_GroupChildInfo child;
  runFile_->GetGroupChildInfo("[1][2]", &child, &log_);
  EXPECT_EQ(child.nodeType, static_cast<uint32_t>(PX_NODE_DYNAMIC));
  EXPECT_EQ(child.displayName, "Lap marker");

  ::PX_StaticDataInfo shoes;
  runFile_->GetStaticDataInfo(R"(["runner"][2])", &shoes, &log_);
  EXPECT_EQ(shoes.valueKind, static_cast<uint32_t>(PX_TYPE_NUMBER_ARRAY));
  EXPECT_EQ(shoes.numbers, (std::vector<double>{39, 6}));
  // The property records were copied through the service table while entry 2 ran.
  ASSERT_TRUE(shoes.dataType.hasNumberArray);
  EXPECT_EQ(shoes.dataType.numberArray.displayNames, (std::vector<std::string>{"EU", "UK"}));
  EXPECT_EQ(shoes.dataType.numberArray.ranges.size(), 2u);
  EXPECT_EQ(shoes.dataType.numberArray.digitsDecimal, 1u);

  ::PX_StaticDataInfo tail;
  flightFile_->GetStaticDataInfo("[0][0]", &tail, &log_);
  EXPECT_EQ(tail.text, "PX-101");
  EXPECT_EQ(tail.dataType.paddedString.maxLen, 8u);

  ::PX_DynamicDataInfo altitude;
  flightFile_->GetDynamicDataInfo("[1][0]", &altitude, &log_);
  EXPECT_EQ(altitude.sampleSetId, "altitudeSet");
  EXPECT_EQ(altitude.sampleCount, 4u);
  EXPECT_EQ(altitude.maxInterSampleDuration, "00:00:00:01");
  EXPECT_EQ(altitude.lastSampleTime.text, "01:00:00:03");
  EXPECT_NE(altitude.lastSampleTime.denominator, 0u);
  EXPECT_EQ(altitude.dataType.numberString.legalMax, 15000.0);
  EXPECT_TRUE(log_.empty());
}

TEST_F(ClientForms, FileInfoAndSyncList) {
  ::PX_FileInfo info;
  runFile_->GetFileInfo(&info, &log_);
  EXPECT_EQ(info.schemaVersion, 2u);
  EXPECT_EQ(info.timeKind, static_cast<uint32_t>(PX_TIME_UTC));
  EXPECT_EQ(info.utcPrecision, 3u);
  EXPECT_TRUE(info.utcIsGmt);
  EXPECT_EQ(info.frameRateValue, 0u);
  EXPECT_EQ(info.frameRateScale, 1u);
  EXPECT_EQ(info.creator, "Palvex examples: a morning run, written by hand");
  EXPECT_EQ(info.inputPath, ExamplePath("run_v2_utc.mgjson"));

  ::PX_VideoSyncTimeList list;
  runFile_->GetVideoSyncTimeList(&list, &log_);
  ASSERT_EQ(list.entries.size(), 2u);
  EXPECT_EQ(list.entries[0].timeString, "2024-05-04T06:30:00.000Z");
  EXPECT_EQ(list.entries[1].frameNumber, 48);
  EXPECT_TRUE(log_.empty());
}

TEST_F(ClientForms, SamplesAskTheHostRecordThenArriveOneByOne) {
  ::DynamicDataSampleSet samples;
  samples.skip = 1;
  samples.limit = 2;
  flightFile_->GetSampleSet("positionSet", 0, 1, 4000, 1, &samples, &log_);
  EXPECT_TRUE(log_.empty());
  EXPECT_EQ(samples.setSampleCount, 4u);
  ASSERT_EQ(samples.samples.size(), 2u);
  EXPECT_EQ(samples.samples[0].time.text, "01:00:00:01");
  EXPECT_EQ(samples.samples[0].text, "+047.3773,+008.5422");
  EXPECT_EQ(samples.samples[0].numbers, (std::vector<double>{47.3773, 8.5422}));
  EXPECT_EQ(samples.samples[1].time.text, "01:00:00:02");
  EXPECT_FALSE(samples.reversed);

  ::DynamicDataSampleSet backwards;
  runFile_->GetSampleSet("heartRate", 2, 1, 0, 1, &backwards, &log_);
  ASSERT_EQ(backwards.samples.size(), 3u);
  EXPECT_TRUE(backwards.reversed);
  EXPECT_EQ(backwards.samples[0].text, "+121");
  EXPECT_EQ(backwards.samples[0].time.numerator, 2u);
  EXPECT_EQ(backwards.samples[0].time.denominator, 1u);

  ::DynamicDataSampleSet around;
  runFile_->GetSampleSetWithNeighbours("heartRate", 3, 2, 3, 2, &around, &log_);
  ASSERT_EQ(around.samples.size(), 2u);  // nothing at 1.5 s: the samples before and after
  EXPECT_EQ(around.samples[1].text, "+121");

  ::PX_DynamicSampleInfo block;
  runFile_->GetDynamicSampleInfo("lap", 0, 10, 1, &block, &log_);
  ASSERT_EQ(block.samples.size(), 1u);
  EXPECT_EQ(block.samples[0].kind, static_cast<uint32_t>(PX_TYPE_PADDED_STRING));
  EXPECT_EQ(block.samples[0].text, "start");
  EXPECT_TRUE(block.samples[0].numbers.empty());
  EXPECT_TRUE(log_.empty());
}

TEST_F(ClientForms, FailuresAreReportedNeverThrown) {
  struct Case {
    const char *label;
    std::function<void()> query;
    uint32_t code;
    const char *message;
  };
  ISensorFileHandler *f = flightFile_;
  ErrorLog &log = log_;
  const Case cases[] = {
      {"null children", [&] { f->GetRootChildren(nullptr, &log); }, 1, "Invalid pointer to \"PX_GroupChildren\"."},
      {"not a number", [&] { ::PX_GroupChildInfo i; f->GetGroupChildInfo("[abc]", &i, &log); }, 23,
       "Unknown exception occurred."},
      {"static info of a group", [&] { ::PX_StaticDataInfo i; f->GetStaticDataInfo("[0]", &i, &log); }, 33,
       "Static data node not found at input path, Found node type: Group data node."},
      {"zero end scale", [&] { ::DynamicDataSampleSet s; f->GetSampleSet("altitudeSet", 0, 1, 1, 0, &s, &log); }, 1,
       "scale value cannot be zero for parameter \"endTime\"."},
      {"no samples in range", [&] { ::DynamicDataSampleSet s; f->GetSampleSet("phaseSet", 0, 1, 1, 1, &s, &log); },
       21, "Unable to fetch dynamic samples for SampleId:\"phaseSet\"."},
  };
  for (const Case &c : cases) {
    log_.clear();
    EXPECT_NO_THROW(c.query()) << c.label;
    ASSERT_EQ(log_.errors.size(), 1u) << c.label;
    EXPECT_EQ(log_.errors[0].code, c.code) << c.label;
    EXPECT_EQ(log_.errors[0].message, c.message) << c.label;
  }
}

TEST_F(ClientForms, AHostFunctionThatFailsStopsTheDeliveryWhereItIs) {
  struct Case {
    const char *label;
    int entry;
    std::function<size_t()> deliver;  // returns what the host record holds afterwards
  };
  ISensorFileHandler *f = flightFile_;
  ErrorLog &log = log_;
  const Case cases[] = {
      {"sync entries", 7, [&] { ::PX_VideoSyncTimeList l; f->GetVideoSyncTimeList(&l, &log); return l.entries.size(); }},
      {"samples", 5, [&] { ::DynamicDataSampleSet s; f->GetSampleSet("altitudeSet", 0, 1, 4000, 1, &s, &log);
                           return s.samples.size(); }},
      {"path items", 0, [&] { ::PX_GroupChildren c; f->GetRootChildren(&c, &log); return c.pending_.size(); }},
  };
  for (const Case &c : cases) {
    log_.clear();
    int calls = 0;
    HandlerDeliveryHook() = [&calls, entry = c.entry](int delivered) {
      if (delivered == entry && ++calls == 2) throw std::runtime_error("host record is full");
    };
    EXPECT_EQ(c.deliver(), 1u) << c.label << ": what arrived before the failure stays";
    ASSERT_EQ(log_.errors.size(), 1u) << c.label;
    EXPECT_EQ(log_.errors[0].code, 23u) << c.label;
  }
}

// Without a stored table nothing can be delivered nor reported: the failure is only the
// thread's last exception. Runs only in a process that has not stored a table yet.
TEST(ClientFormsWithoutTable, ReportClientApisNotSet) {
  if (ClientTable() != nullptr) GTEST_SKIP() << "a table was stored earlier in this process";
  const auto handler = OpenHandler(ExamplePath("run_v2_utc.mgjson"));
  ISensorFileHandler *file = handler.get();
  ::PX_FileInfo info;
  ErrorLog log;
  file->GetFileInfo(&info, &log);
  EXPECT_EQ(LastException().code(), 21u);
  EXPECT_STREQ(LastException().what(), "Client APIs not set.");
  EXPECT_TRUE(info.inputPath.empty());
}

}  // namespace
}  // namespace ns_sensor::testing
