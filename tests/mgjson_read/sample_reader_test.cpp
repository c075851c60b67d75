// Reading samples on request: between two times (both included, either direction, with
// or without neighbours), by index, from sets stored ascending, descending or in no order;
// and the checks every request starts with.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "mgjson_read/sample_test_support.hpp"

namespace ns_sensor {
namespace {

using namespace testing;

std::vector<Sample> AtSeconds(const std::vector<unsigned> &seconds) {
  std::vector<Sample> samples;
  for (const unsigned s : seconds) samples.push_back({Utc(s), Number(s)});
  return samples;
}

const std::vector<unsigned> kRising = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
const std::vector<unsigned> kFalling = {9, 8, 7, 6, 5, 4, 3, 2, 1, 0};
const std::vector<unsigned> kScattered = {3, 0, 4, 1, 5, 9, 2, 6};

class SampleReaderTest : public ::testing::Test {
 protected:
  void SetUp() override {
    opened_ = Open(V2Utc({Node("up", 10), Node("down", 10), Node("mixed", 8), Node("a1", 1, ArrayType()),
                          Node("p1", 1, PaddedType()), Node("absent", 1), Node("miscounted", 3)},
                         {SampleSet("up", AtSeconds(kRising)), SampleSet("down", AtSeconds(kFalling)),
                          SampleSet("mixed", AtSeconds(kScattered)),
                          SampleSet("a1", {{Utc(0, 500), R"(["+1.5",-2])"}}),
                          SampleSet("p1", {{Utc(1), R"({"length":"05","str":"h\"llo"})"}}),
                          SampleSet("miscounted", AtSeconds({0, 1}))}));
    ASSERT_EQ(opened_.fault, Fault{});
  }
  SampleReader Reader() const { return opened_.parser->samples().Reader(); }

  struct Delivery {
    std::vector<std::uint64_t> indices;
    bool reversed = false;
    bool operator==(const Delivery &) const = default;
  };
  static Delivery Drain(SampleCursor cursor) {
    Delivery delivery{{}, cursor.reversed()};
    SampleView sample;
    while (cursor.Next(sample)) delivery.indices.push_back(sample.index);
    EXPECT_EQ(delivery.indices.size(), cursor.count());
    return delivery;
  }
  Delivery Between(const char *id, RationalTime start, RationalTime end, bool neighbours = false) const {
    return Drain(Reader().SelectBetween(id, start, end, neighbours));
  }

  Opened opened_;
};

// Ordinary ranges over sorted sets are held to a plain scan in FindsWhatAScanFinds below;
// these are the ends: empty ranges, ranges between two samples, neighbours past the set.
TEST_F(SampleReaderTest, SelectsTheSamplesBetweenTwoTimesBothIncluded) {
  const struct {
    RationalTime start, end;
    bool neighbours;
    Delivery expected;
  } cases[] = {
      {{5, 2}, {11, 2}, false, {{3, 4, 5}, false}},
      {{0, 1}, {0, 1}, false, {{0}, false}},
      {{100, 1}, {200, 1}, false, {{}, false}},
      {{5, 2}, {5, 2}, false, {{}, false}},
      {{5, 2}, {5, 2}, true, {{2, 3}, false}},
      {{100, 1}, {200, 1}, true, {{9}, false}},
      {{5, 1}, {2, 1}, true, {{6, 5, 4, 3, 2, 1}, true}},
  };
  for (const auto &c : cases) {
    EXPECT_EQ(Between("up", c.start, c.end, c.neighbours), c.expected)
        << c.start.numerator << "/" << c.start.denominator << " to " << c.end.numerator << "/" << c.end.denominator;
  }
}

TEST_F(SampleReaderTest, ScansASetWithoutOrderAndYieldsFileOrder) {
  // Seconds 3, 0, 4, 1, 5, 9, 2, 6 at indices 0 to 7.
  EXPECT_EQ(Between("mixed", {1, 1}, {4, 1}), (Delivery{{0, 2, 3, 6}, false}));
  EXPECT_EQ(Between("mixed", {4, 1}, {1, 1}), (Delivery{{0, 2, 3, 6}, false}));
  // The latest sample before the times first, the earliest after them last.
  EXPECT_EQ(Between("mixed", {1, 1}, {4, 1}, true), (Delivery{{1, 0, 2, 3, 6, 4}, false}));
  EXPECT_EQ(Between("mixed", {7, 1}, {8, 1}, true), (Delivery{{7, 5}, false}));
}

TEST_F(SampleReaderTest, SelectsByIndexAndSkips) {
  EXPECT_EQ(Drain(Reader().SelectByIndex("up", 2, 3)), (Delivery{{2, 3, 4}, false}));
  EXPECT_EQ(Drain(Reader().SelectByIndex("up", 8, 5)), (Delivery{{8, 9}, false}));
  EXPECT_EQ(Drain(Reader().SelectByIndex("up", 10, 1)), (Delivery{{}, false}));
  EXPECT_EQ(Drain(Reader().SelectByIndex("down", 0, 2)), (Delivery{{0, 1}, true}));  // stored descending
  SampleCursor cursor = Reader().SelectBetween("up", {1, 1}, {8, 1}, false);
  cursor.Skip(3);
  SampleView sample;
  ASSERT_TRUE(cursor.Next(sample));
  EXPECT_EQ(sample.index, 4u);
  cursor.Skip(100);
  EXPECT_FALSE(cursor.Next(sample));
  SampleCursor scattered = Reader().SelectBetween("mixed", {1, 1}, {4, 1}, true);
  scattered.Skip(2);
  ASSERT_TRUE(scattered.Next(sample));
  EXPECT_EQ(sample.index, 2u);
  EXPECT_EQ(scattered.count(), 6u);
  EXPECT_EQ(scattered.setSampleCount(), 8u);
}

TEST_F(SampleReaderTest, DecodesValuesAndCountsSecondsFromTheEarliestSample) {
  SampleView sample;
  SampleCursor numbers = Reader().SelectByIndex("up", 3, 1);
  ASSERT_TRUE(numbers.Next(sample));
  EXPECT_EQ(sample.time, Utc(3));
  EXPECT_EQ(sample.seconds, (RationalTime{3, 1}));
  EXPECT_EQ(sample.kind, static_cast<std::uint32_t>(PX_TYPE_NUMBER_STRING));
  EXPECT_EQ(sample.text, "+3.0");
  EXPECT_EQ(std::vector<double>(sample.numbers.begin(), sample.numbers.end()), std::vector<double>{3.0});

  SampleCursor array = Reader().SelectByIndex("a1", 0, 1);
  ASSERT_TRUE(array.Next(sample));
  EXPECT_EQ(sample.seconds, (RationalTime{1, 2}));
  EXPECT_EQ(sample.text, "+1.5,-2");
  EXPECT_EQ(std::vector<double>(sample.numbers.begin(), sample.numbers.end()), (std::vector<double>{1.5, -2.0}));

  SampleCursor padded = Reader().SelectByIndex("p1", 0, 1);
  ASSERT_TRUE(padded.Next(sample));
  EXPECT_EQ(sample.text, "h\"llo");
  EXPECT_TRUE(sample.numbers.empty());
}

TEST_F(SampleReaderTest, RefusesABadRequestAndServesTheNextOne) {
  const Fault cases[] = {
      Capture([&] { Reader().SelectBetween("nothing", {0, 1}, {1, 1}, false); }),
      Capture([&] { Reader().SelectBetween("absent", {0, 1}, {1, 1}, false); }),
      Capture([&] { Reader().SelectByIndex("miscounted", 0, 1); }),
      Capture([&] { Reader().SelectBetween("up", {0, 0}, {1, 1}, false); }),
      Capture([&] { Reader().SelectBetween("up", {0, 1}, {1, 0}, false); }),
  };
  const Fault expected[] = {
      {35, R"(Data Outline does not contain any dynamic node for sample id : "nothing".)", -1},
      {38, R"(No dynamic sample data present for sample id : "absent".)", -1},
      {36,
       R"(Invalid  dynamic node info in data outline for sample set:"miscounted".Calculated sample set size is out of file offset range.)",
       -1},
      {1, R"(scale value cannot be zero for parameter "startTime".)", -1},
      {1, R"(scale value cannot be zero for parameter "endTime".)", -1},
  };
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    EXPECT_EQ(cases[i], expected[i]);
    EXPECT_EQ(Between("up", {1, 1}, {2, 1}), (Delivery{{1, 2}, false})) << "after request " << i;
  }
}

TEST(SampleReader, RangeChecksTheCountTheOutlineDeclares) {
  const std::string message =
      R"(Invalid  dynamic node info in data outline for sample set:"s1".Calculated sample set size is out of file offset range.)";
  for (const char *count : {"3", "1", "2.5", "-2", "1e300"}) {
    std::string node = Node("s1", 2);
    node.replace(node.find("\"sampleCount\":2"), 15, std::string("\"sampleCount\":") + count);
    const Opened opened = Open(V2Utc({node}, {SampleSet("s1", AtSeconds({0, 1}))}));
    ASSERT_EQ(opened.fault, Fault{}) << count;
    EXPECT_EQ(Capture([&] { opened.parser->samples().Reader().SelectByIndex("s1", 0, 2); }), (Fault{36, message, -1}))
        << count;
  }
}

TEST(SampleReader, ReadsSamplesWrittenInAnyMemberOrder) {
  std::string set = R"({"samples":[)";
  for (unsigned i = 0; i < 100; ++i) {
    set += std::string(i ? "," : "") + R"({"value":")" + std::to_string(i) + R"(","note":[1,{"a":"}\"]"}],"time":")" +
           Utc(i) + R"("})";
  }
  set += R"(],"sampleSetID":"s1"})";
  const Opened opened = Open(V2Utc({Node("s1", 100)}, {set}));
  ASSERT_EQ(opened.fault, Fault{});
  SampleCursor cursor = opened.parser->samples().Reader().SelectBetween("s1", {90, 1}, {70, 1}, false);
  EXPECT_EQ(cursor.count(), 21u);
  SampleView sample;
  ASSERT_TRUE(cursor.Next(sample));
  EXPECT_EQ(sample.time, Utc(90));
  EXPECT_EQ(sample.text, "90");
  EXPECT_EQ(sample.seconds, (RationalTime{90, 1}));
}

TEST(SampleReader, ReadsTimecodeSecondsFromMidnight) {
  const Opened opened = Open(V1Timecode({Node("s1", 3)}, {SampleSet("s1", {{"00:00:01:00", "\"1\""},
                                                                            {"00:01:00:02", "\"2\""},
                                                                            {"01:00:00:00", "\"3\""}})}));
  ASSERT_EQ(opened.fault, Fault{});
  // 00:01:00:02 is frame 1800, 60.06 seconds in.
  SampleCursor cursor = opened.parser->samples().Reader().SelectBetween("s1", {1, 1}, {61, 1}, false);
  SampleView sample;
  ASSERT_TRUE(cursor.Next(sample));
  EXPECT_EQ(sample.seconds, (RationalTime{30 * 1001, 30000}));
  ASSERT_TRUE(cursor.Next(sample));
  EXPECT_EQ(sample.seconds, (RationalTime{1800 * 1001, 30000}));
  EXPECT_FALSE(cursor.Next(sample));
}

// The binary search against a plain scan, over sets of many blocks with runs of equal
// times, stored either way, for ranges that start and end on, between and beyond samples.
TEST(SampleReader, FindsWhatAScanFinds) {
  constexpr unsigned kSamples = 1000;
  std::vector<unsigned> millis;  // three samples per 250 ms step, a gap every 100 steps
  for (unsigned i = 0; i < kSamples; ++i) millis.push_back((i / 3) * 250 + (i / 300) * 5000);
  const auto set = [&](bool falling) {
    std::vector<Sample> samples;
    for (unsigned i = 0; i < kSamples; ++i) {
      const unsigned ms = millis[falling ? kSamples - 1 - i : i];
      samples.push_back({Utc(ms / 1000, ms % 1000), Number(i)});
    }
    return samples;
  };
  const Opened opened = Open(V2Utc({Node("up", kSamples), Node("down", kSamples)},
                                   {SampleSet("up", set(false)), SampleSet("down", set(true))}));
  ASSERT_EQ(opened.fault, Fault{});
  const SampleReader reader = opened.parser->samples().Reader();
  std::uint64_t state = 12345;
  const auto random = [&](std::uint64_t below) {
    state = state * 6364136223846793005u + 1442695040888963407u;
    return (state >> 33) % below;
  };
  for (int round = 0; round < 300; ++round) {
    // Times in thirds of a millisecond, so some fall between what a text can hold.
    const RationalTime start{static_cast<std::uint32_t>(random(3 * 110000)), 3000};
    const RationalTime end{static_cast<std::uint32_t>(random(3 * 110000)), 3000};
    const bool neighbours = random(2) == 1;
    const bool descending = std::uint64_t{start.numerator} > end.numerator;
    const std::uint64_t low = descending ? end.numerator : start.numerator;
    const std::uint64_t high = descending ? start.numerator : end.numerator;
    for (const bool falling : {false, true}) {
      // Positions in time order whose times (in thirds of a millisecond) lie within.
      std::vector<std::uint64_t> expected;
      std::int64_t before = -1;
      std::int64_t after = -1;
      for (unsigned i = 0; i < kSamples; ++i) {
        const std::uint64_t time = 3 * std::uint64_t{millis[i]};
        if (time < low) before = i;
        if (time > high && after < 0) after = i;
        if (time >= low && time <= high) expected.push_back(i);
      }
      if (neighbours && before >= 0) expected.insert(expected.begin(), static_cast<std::uint64_t>(before));
      if (neighbours && after >= 0) expected.push_back(static_cast<std::uint64_t>(after));
      if (descending) std::reverse(expected.begin(), expected.end());
      if (falling) {
        for (std::uint64_t &index : expected) index = kSamples - 1 - index;
      }
      SampleCursor cursor = reader.SelectBetween(falling ? "down" : "up", start, end, neighbours);
      std::vector<std::uint64_t> found;
      SampleView sample;
      while (cursor.Next(sample)) found.push_back(sample.index);
      ASSERT_EQ(found, expected) << start.numerator << "/3000 to " << end.numerator << "/3000"
                                 << (neighbours ? " with neighbours" : "") << (falling ? " falling" : "");
      EXPECT_EQ(cursor.reversed(), descending);
    }
  }
}

}  // namespace
}  // namespace ns_sensor
