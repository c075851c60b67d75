// The shared stream helper against the library's own object model: time texts as the
// document's time line writes them, backwards steps counted, empty streams left out.
#include "timed_stream.hpp"

#include <gtest/gtest.h>

#include "plugin_model/model_test_support.hpp"

namespace palvex_plugins {
namespace {

using namespace PX_PLUGIN;

TEST(PluginTimedStream, KeepsFileOrderCountsBackwardStepsAndSkipsEmptyStreams) {
  PX_PLUGIN::testing::TestDocument document;
  TimeLine times(document.root, 3, false);
  const Instant start = ParseIsoTime("2024-05-01T12:00:00")->instant;
  TimedStream speed(document.root, PX_DYNAMIC_NUMBER, "Speed [m/s]", "speed");
  TimedStream notes(document.root, PX_DYNAMIC_STRING, "Notes", "notes");
  TimedStream gravity(document.root, PX_DYNAMIC_NUMBER_ARRAY, "Gravity [g]", "gravity", {"x", "y", "z"});
  const double offsets[] = {0, 1.25, 0.5, 0.5, 2};  // one step back, one repeat
  for (const double offset : offsets) speed.Add(times, *AddSeconds(start, offset), offset * 2);
  const double vector[] = {0.0, -0.5, 1.0};
  gravity.AddArray(times, start, vector, 3);
  speed.AttachTo(document.root);
  notes.AttachTo(document.root);  // no sample: stays out
  gravity.AttachTo(document.root);
  uint32_t committed = 0;
  Call(document.root, &IMgjsonRoot_v1::Commit, &committed);

  EXPECT_EQ(speed.sampleCount(), 5u);
  EXPECT_EQ(speed.backwardSteps(), 1u);
  EXPECT_EQ(notes.sampleCount(), 0u);
  EXPECT_EQ(document.root->GetChildCount(), 2u);
  ASSERT_EQ(document.log.sampleSets.size(), 2u);
  const auto &samples = document.log.sampleSets[0].samples;
  ASSERT_EQ(samples.size(), 5u);
  EXPECT_EQ(samples[1], (std::pair<std::string, std::string>{"2024-05-01T12:00:01.250+00:00", "2.5"}));
  EXPECT_EQ(samples[2].first, "2024-05-01T12:00:00.500+00:00");
  EXPECT_EQ(samples[3].first, samples[2].first);
}

}  // namespace
}  // namespace palvex_plugins
