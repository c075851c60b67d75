// The document a FIT file becomes: written through a real root, read back as JSON.
#include <gtest/gtest.h>

#include <rapidjson/document.h>

#include <sstream>

#include "fit_document.hpp"
#include "fit_samples.hpp"
#include "fit_survey.hpp"
#include "platform/file_test_support.hpp"
#include "plugin_model/writer_test_support.hpp"

namespace palvex_fit::testing {
namespace {

using Samples = std::vector<std::pair<std::string, double>>;

struct Converted {
  rapidjson::Document json;
  const rapidjson::Value &Outline() const { return json["dataOutline"]; }

  // A group's child by display name.
  static const rapidjson::Value *Child(const rapidjson::Value &group, const std::string &name) {
    for (const auto &node : group["children"].GetArray()) {
      if (name == node["displayName"].GetString()) return &node;
    }
    return nullptr;
  }
  std::vector<std::string> Names(const rapidjson::Value &group) const {
    std::vector<std::string> names;
    for (const auto &node : group.GetArray()) names.emplace_back(node["displayName"].GetString());
    return names;
  }
  Samples SamplesOf(const rapidjson::Value &node) const {
    Samples samples;
    for (const auto &set : json["dataDynamicSamples"].GetArray()) {
      if (std::string(node["sampleSetID"].GetString()) != set["sampleSetID"].GetString()) continue;
      for (const auto &sample : set["samples"].GetArray()) {
        samples.emplace_back(sample["time"].GetString(), std::stod(sample["value"].GetString()));
      }
    }
    return samples;
  }
};

Converted Convert(const std::string &bytes) {
  palvex::testing::ScratchFolder folder;
  PX_PLUGIN::testing::WritingDocument document(folder);
  std::istringstream first(bytes), second(bytes);
  const FitSurvey survey = SurveyFit(first);
  BuildFitDocument(survey, second, document.root);
  EXPECT_EQ(document.Commit(), 0u);
  Converted converted;
  converted.json.Parse(document.Text().c_str());
  EXPECT_FALSE(converted.json.HasParseError());
  return converted;
}

void ExpectSamples(const Samples &actual, const Samples &expected) {
  ASSERT_EQ(actual.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(actual[i].first, expected[i].first);
    EXPECT_NEAR(actual[i].second, expected[i].second, 1e-9) << actual[i].first;
  }
}

TEST(FitDocument, FileABecomesDeviceAndOneSession) {
  const Converted doc = Convert(ActivityFile());
  EXPECT_TRUE(doc.json["dynamicDataInfo"]["utcInfo"]["isGMT"].GetBool());
  EXPECT_EQ(doc.json["dynamicDataInfo"]["utcInfo"]["precisionLength"].GetInt(), 0);
  ASSERT_EQ(doc.Names(doc.Outline()), (std::vector<std::string>{"Device", "Session 1"}));
  const auto &device = doc.Outline()[0];
  EXPECT_EQ(doc.Names(device["children"]),
            (std::vector<std::string>{"Manufacturer ID", "Product ID", "Serial number", "Time created"}));
  EXPECT_EQ(Converted::Child(device, "Serial number")->operator[]("value").GetString(), std::string("12345678"));
  EXPECT_EQ(Converted::Child(device, "Time created")->operator[]("value").GetString(),
            std::string("2024-01-15T10:30:00Z"));

  const auto &session = doc.Outline()[1];
  EXPECT_EQ(doc.Names(session["children"]),
            (std::vector<std::string>{"Sport", "Sub sport", "Start time", "Total elapsed time [s]",
                                      "Total timer time [s]", "Total distance [m]", "Laps", "Latitude [deg]",
                                      "Longitude [deg]", "Altitude [m]", "Heart rate [bpm]", "Cadence [rpm]",
                                      "Distance [m]", "Speed [m/s]", "Power [W]", "Temperature [°C]"}));
  EXPECT_EQ(Converted::Child(session, "Sport")->operator[]("value").GetString(), std::string("cycling"));
  EXPECT_EQ(Converted::Child(session, "Total distance [m]")->operator[]("value").GetDouble(), 30.0);
  // The record at 10:30:02 has no position, heart rate or power: a gap, not a zero.
  const auto *latitude = Converted::Child(session, "Latitude [deg]");
  ExpectSamples(doc.SamplesOf(*latitude), {{"2024-01-15T10:30:00Z", 47.37690003588796},
                                           {"2024-01-15T10:30:01Z", 47.37700003199279},
                                           {"2024-01-15T10:30:03Z", 47.377200024202466}});
  ExpectSamples(doc.SamplesOf(*Converted::Child(session, "Power [W]")),
                {{"2024-01-15T10:30:00Z", 200}, {"2024-01-15T10:30:01Z", 210}, {"2024-01-15T10:30:03Z", 230}});
  ExpectSamples(doc.SamplesOf(*Converted::Child(session, "Cadence [rpm]")),
                {{"2024-01-15T10:30:00Z", 80}, {"2024-01-15T10:30:01Z", 81}, {"2024-01-15T10:30:02Z", 82},
                 {"2024-01-15T10:30:03Z", 83}});
}

// Records go to the last session started at or before them; earlier ones to the first.
// Times going backwards are kept and counted in their session.
TEST(FitDocument, RecordsJoinTheirSessions) {
  FitBuilder fit;
  fit.Define(0, 20, {{253, 4, kUint32}, {3, 1, kUint8}});
  for (std::uint32_t s : {0u, 1u, 2u, 12u, 11u, 13u}) fit.Data(0, {kT0 + s, 100 + s});
  fit.Define(1, 18, {{253, 4, kUint32}, {2, 4, kUint32}, {5, 1, kEnum}})
      .Data(1, {kT0 + 20, kT0 + 10, 1})  // the second session listed first
      .Data(1, {kT0 + 9, kT0 + 1, 2});
  const Converted doc = Convert(fit.Finish());
  ASSERT_EQ(doc.Names(doc.Outline()), (std::vector<std::string>{"Session 1", "Session 2"}));
  const auto &running = doc.Outline()[0];
  EXPECT_EQ(Converted::Child(running, "Samples out of time order")->operator[]("value").GetDouble(), 1.0);
  ExpectSamples(doc.SamplesOf(*Converted::Child(running, "Heart rate [bpm]")),
                {{"2024-01-15T10:30:12Z", 112}, {"2024-01-15T10:30:11Z", 111}, {"2024-01-15T10:30:13Z", 113}});
  const auto &cycling = doc.Outline()[1];
  EXPECT_EQ(Converted::Child(cycling, "Samples out of time order"), nullptr);
  ExpectSamples(doc.SamplesOf(*Converted::Child(cycling, "Heart rate [bpm]")),
                {{"2024-01-15T10:30:00Z", 100}, {"2024-01-15T10:30:01Z", 101}, {"2024-01-15T10:30:02Z", 102}});
}

// Without sessions the records form one group; device-start times count from 1970.
TEST(FitDocument, RecordsWithoutSessionFormOneActivity) {
  const std::string file = FitBuilder()
                               .Define(0, 20, {{253, 4, kUint32}, {7, 2, kUint16}})
                               .Data(0, {17217864, 150})
                               .Data(0, {17217865, 0xFFFF})
                               .Data(0, {17217866, 160})
                               .Finish();
  const Converted doc = Convert(file);
  ASSERT_EQ(doc.Names(doc.Outline()), (std::vector<std::string>{"Activity"}));
  ExpectSamples(doc.SamplesOf(*Converted::Child(doc.Outline()[0], "Power [W]")),
                {{"1970-07-19T06:44:24Z", 150}, {"1970-07-19T06:44:26Z", 160}});
}

// The ride's developer field, product name and Headwind stream are checked end to end
// (fit_example.cmake); the software version's scale only here.
TEST(FitDocument, SoftwareVersionIsScaled) {
  const Converted doc = Convert(RideFile(2));
  EXPECT_EQ(Converted::Child(doc.Outline()[0], "Software version")->operator[]("value").GetDouble(), 12.34);
}

// The committed example is exactly what the generator writes (make_example_fit rewrites it).
TEST(FitDocument, ExampleMatchesItsGenerator) {
  EXPECT_TRUE(palvex::testing::ReadWholeFile(PALVEX_SOURCE_DIR "/examples/ride.fit") == RideFile(300))
      << "run make_example_fit to write examples/ride.fit again";
}

}  // namespace
}  // namespace palvex_fit::testing
