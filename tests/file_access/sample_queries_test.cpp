// The handler's three sample queries (raising forms) on small files written by the tests.
#include <gtest/gtest.h>

#include "file_access/handler_test_support.hpp"
#include "mgjson_read/sample_test_support.hpp"
#include "platform/file_test_support.hpp"

namespace ns_sensor::testing {
namespace {

// "up": five samples a second apart from the time origin; "down": three samples stored in
// descending time order; "pad": padded strings.
class SampleQueries : public ::testing::Test {
 protected:
  void SetUp() override {
    std::vector<Sample> up;
    for (unsigned s = 0; s < 5; ++s) up.push_back({Utc(s), Number(s)});
    const std::string text =
        V2Utc({Node("up", 5), Node("down", 3), Node("pad", 2, PaddedType())},
              {SampleSet("up", up),
               SampleSet("down", {{Utc(4), Number(40)}, {Utc(2), Number(20)}, {Utc(1), Number(10)}}),
               SampleSet("pad", {{Utc(0), R"({"length":"3","str":"a\tb"})"}, {Utc(3), R"({"length":"2","str":"cd"})"}})});
    handler_ = OpenHandler(folder_.WriteFile("samples.mgjson", text));
  }

  std::vector<std::string> Between(const char *id, RationalTime start, RationalTime end, bool neighbours = false,
                                   std::uint32_t skip = 0, std::uint32_t limit = 0) {
    DynamicDataSampleSet samples;
    samples.skip = skip;
    samples.limit = limit;
    if (neighbours) {
      handler_->GetSampleSetWithNeighbours(id, start.numerator, start.denominator, end.numerator, end.denominator,
                                           &samples);
    } else {
      handler_->GetSampleSet(id, start.numerator, start.denominator, end.numerator, end.denominator, &samples);
    }
    reversed_ = samples.reversed;
    return Taken(samples);
  }

  palvex::testing::ScratchFolder folder_;
  std::unique_ptr<SensorFileHandlerImpl> handler_;
  bool reversed_ = false;
};

std::string At(unsigned second, const char *value) { return Utc(second) + "=" + value; }

TEST_F(SampleQueries, BetweenTwoTimesBothIncluded) {
  struct Case {
    const char *label;
    const char *id;
    RationalTime start, end;
    bool neighbours;
    std::vector<std::string> expected;
    bool reversed;
  };
  const Case cases[] = {
      {"all", "up", {0, 1}, {4, 1}, false, {At(0, "+0.0"), At(1, "+1.0"), At(2, "+2.0"), At(3, "+3.0"), At(4, "+4.0")}, false},
      {"start after end", "up", {3, 1}, {1, 1}, false, {At(3, "+3.0"), At(2, "+2.0"), At(1, "+1.0")}, true},
      {"with neighbours", "up", {3, 2}, {5, 2}, true, {At(1, "+1.0"), At(2, "+2.0"), At(3, "+3.0")}, false},
      {"stored descending, asked ascending", "down", {0, 1}, {10, 1}, false,
       {At(1, "+10.0"), At(2, "+20.0"), At(4, "+40.0")}, false},
      {"padded strings", "pad", {0, 1}, {3, 1}, false, {At(0, "a\tb"), At(3, "cd")}, false},
  };
  for (const Case &c : cases) {
    EXPECT_EQ(Between(c.id, c.start, c.end, c.neighbours), c.expected) << c.label;
    EXPECT_EQ(reversed_, c.reversed) << c.label;
  }
}

TEST_F(SampleQueries, SkipAndLimitPageThroughASelection) {
  EXPECT_EQ(Between("up", {0, 1}, {4, 1}, false, 1, 2), (std::vector<std::string>{At(1, "+1.0"), At(2, "+2.0")}));
  EXPECT_EQ(Between("up", {0, 1}, {4, 1}, false, 4, 2), (std::vector<std::string>{At(4, "+4.0")}));
  EXPECT_TRUE(Between("up", {0, 1}, {4, 1}, false, 5, 0).empty()) << "a page past the end is empty, not a fault";

  // The request hook sees the set's size and may change the page.
  DynamicDataSampleSet samples;
  std::uint32_t seenSize = 0;
  samples.readRequest = [&seenSize](PX_SampleRequest &request) {
    seenSize = request.setSampleCount;
    EXPECT_EQ(request.structSize, sizeof(PX_SampleRequest));
    request.skip = 3;
  };
  handler_->GetSampleSet("up", 0, 1, 4, 1, &samples);
  EXPECT_EQ(seenSize, 5u);
  EXPECT_EQ(samples.setSampleCount, 5u);
  EXPECT_EQ(samples.count, 2u);
  EXPECT_EQ(Taken(samples), (std::vector<std::string>{At(3, "+3.0"), At(4, "+4.0")}));
}

TEST_F(SampleQueries, RefusedRequests) {
  DynamicDataSampleSet samples;
  auto *h = handler_.get();
  const std::pair<const char *, std::function<void()>> cases[] = {
      {R"(1 scale value cannot be zero for parameter "startTime".)", [&] { h->GetSampleSet("up", 0, 0, 1, 0, &samples); }},
      {R"(1 scale value cannot be zero for parameter "endTime".)",
       [&] { h->GetSampleSetWithNeighbours("up", 0, 1, 1, 0, &samples); }},
      {R"(21 Unable to fetch dynamic samples for SampleId:"up".)", [&] { h->GetSampleSet("up", 10, 1, 20, 1, &samples); }},
      {R"(21 Unable to fetch dynamic samples for SampleId:"up".)", [&] { h->GetSampleSet("up", 5, 4, 7, 4, &samples); }},
      {R"(35 Data Outline does not contain any dynamic node for sample id : "nope".)",
       [&] { h->GetSampleSet("nope", 0, 1, 1, 1, &samples); }},
  };
  for (const auto &[expected, query] : cases) {
    const Fault fault = Capture(query);
    EXPECT_EQ(std::to_string(fault.code) + " " + fault.message, expected);
    EXPECT_EQ(samples.count, 0u) << "a refused query leaves no result: " << expected;
  }
}

TEST_F(SampleQueries, BlocksByIndexOrByMilliseconds) {
  struct Case {
    const char *label;
    const char *id;
    std::uint32_t first, second, byIndex;
    std::vector<std::string> expected;
    bool reversed;
  };
  const Case cases[] = {
      {"by index", "up", 1, 2, 1, {At(1, "+1.0"), At(2, "+2.0")}, false},
      {"by index, cut at the end", "up", 3, 100, 1, {At(3, "+3.0"), At(4, "+4.0")}, false},
      {"no samples asked", "up", 0, 0, 1, {}, false},
      {"by index, stored descending", "down", 0, 2, 1, {At(4, "+40.0"), At(2, "+20.0")}, true},
      {"milliseconds", "up", 1000, 2500, 0, {At(1, "+1.0"), At(2, "+2.0")}, false},
      {"milliseconds without samples", "up", 1100, 1900, 0, {}, false},
  };
  for (const Case &c : cases) {
    PX_DynamicSampleInfo info;
    handler_->GetDynamicSampleInfo(c.id, c.first, c.second, c.byIndex, &info);
    EXPECT_EQ(Taken(info), c.expected) << c.label;
    EXPECT_EQ(info.setSampleCount, std::string(c.id) == "up" ? 5u : 3u) << c.label;
    if (!c.expected.empty()) {
      EXPECT_EQ(info.reversed, c.reversed) << c.label;
    }
  }
  PX_DynamicSampleInfo info;
  EXPECT_EQ(Capture([&] { handler_->GetDynamicSampleInfo("nope", 0, 1, 1, &info); }).code, 35u);
}

}  // namespace
}  // namespace ns_sensor::testing
