// The sample-set index and the parse of the sample sets when a file is opened: every
// fault a sample set can have ends in its own code and message, whichever order the
// outline and the samples come in.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "mgjson_read/sample_test_support.hpp"

namespace ns_sensor {
namespace {

using namespace testing;

const std::vector<std::string> kNodes = {Node("g1", 2), Node("s1", 2), Node("a1", 1, ArrayType()),
                                         Node("p1", 1, PaddedType())};
const std::string kGood = SampleSet("g1", {{Utc(0), "\"+1.0\""}, {Utc(1), "\"+2.0\""}});

std::int64_t OffsetOf(const std::string &text, const std::string &marker) {
  return static_cast<std::int64_t>(text.find(marker));
}

struct BadSet {
  std::string set;  // the faulty sample set, placed after a good one
  std::uint32_t code;
  std::string message;
  bool offsetOfSet = false;  // detail1 is the file offset of the faulty set
};

TEST(SampleSetParser, RefusesEveryFaultOfASampleSet) {
  const std::string at0 = R"("sampleSetID:s1/sample[0]")";
  const std::string ok = R"({"time":")" + Utc(0) + R"(","value":"+1.0"})";
  const auto s1 = [](const std::string &samples) { return R"({"sampleSetID":"s1","samples":[)" + samples + "]}"; };
  const auto one = [](const std::string &id, const std::string &value) { return SampleSet(id, {{Utc(0), value}}); };
  const BadSet cases[] = {
      {"42", 32, R"(Parsing error:"dataDynamicSamples[1]", Invalid JSON Object.)", true},
      {R"({"samples":[)" + ok + "]}", 32, "Unable to find mandatory properties : sampleSetID.", true},
      {R"({"sampleSetID":"s1"})", 32, "Unable to find mandatory properties : samples.", true},
      {R"({"other":1})", 32, "Unable to find mandatory properties : sampleSetID,samples.", true},
      {R"({"sampleSetID":7,"samples":[)" + ok + "]}", 43,
       R"(Unable to find "sampleSetID", Invalid "sampleSetID" property, expected type : JSON String in dynamic set with sample id:7.)"},
      {R"({"sampleSetID":"s1","samples":{"a":1}})", 43,
       R"(Unable to find "samples", Invalid "samples" property, expected type : JSON Array in dynamic set with sample id:"s1".)"},
      {one("s9", "\"+1.0\""), 49, R"(No dynamic data node is present in data outline with sample id:"s9".)"},
      {one("g1", "\"+1.0\""), 39,
       R"(Invalid sample set data for sample id:"g1". Either information in dataOutline is incorrect or sample set data is malformed.)"},
      {s1("1"), 32, "Parsing error:" + at0 + ", Invalid JSON Object."},
      {s1(R"({"value":"+1.0"})"), 39, R"(Unable to find mandatory property:"time" at )" + at0 + "."},
      {s1(R"({"time":")" + Utc(0) + R"("})"), 39, R"(Unable to find mandatory property:"value" at )" + at0 + "."},
      {SampleSet("s1", {{Utc(0), "\"1\""}, {"2024-13-01T00:00:00.000Z", "\"1\""}}), 39,
       R"(Invalid time value for :"sampleSetID:s1/sample[1]".)"},
      {s1(R"({"time":5,"value":"1"})"), 39, "Invalid time value for :" + at0 + "."},
      {one("s1", "\"abc\""), 39, "Invalid sample value:" + at0},
      {one("a1", R"([true,"1"])"), 43,
       R"(Invalid array item at index 0 for property "sampleSetID:a1/sample[0]/value", expected type : JSON String.)"},
      {one("a1", R"(["1"])"), 39, R"(Number array does not contains enough elements at "sampleSetID:a1/sample[0]".)"},
      {one("a1", R"(["1","2","3"])"), 39, R"(Invalid sample value:"sampleSetID:a1/sample[0]")"},
      {one("p1", R"({"length":"3","str":"abcdefg"})"), 39, "Padded string length cannot be greater than max length."},
      {one("p1", R"({"length":"x","str":"abc"})"), 39, R"(Invalid sample value:"sampleSetID:p1/sample[0]")"},
  };
  for (const bool samplesFirst : {false, true}) {
    for (const BadSet &c : cases) {
      const std::string text = V2Utc(kNodes, {kGood, c.set}, samplesFirst);
      const std::int64_t offset = c.offsetOfSet ? OffsetOf(text, c.set) : -1;
      EXPECT_EQ(Open(text).fault, (Fault{c.code, c.message, offset})) << c.set << (samplesFirst ? " (samples first)" : "");
    }
  }
}

TEST(SampleSetParser, RefusesATruncatedSampleSetWhereItEnds) {
  const std::string whole = V2Utc(kNodes, {kGood});
  const std::string text = whole.substr(0, whole.find("00:00:01"));
  EXPECT_EQ(Open(text).fault,
            (Fault{32, R"(Unable to find enclosing quotes for property value:"dataDynamicSamples[0]::samples[1]::time".)",
                   static_cast<std::int64_t>(text.size())}));
}

TEST(SampleSetParser, RefusesTimecodeTextsThatAreNoFramesOfTheRate) {
  const std::string at0 = R"(Invalid time value for :"sampleSetID:s1/sample[0]".)";
  for (const char *time : {"00:00:00:30", "00:60:00:00", "00:00:00"}) {
    EXPECT_EQ(Open(V1Timecode({Node("s1", 1)}, {SampleSet("s1", {{time, "\"1\""}})})).fault, (Fault{39, at0, -1}))
        << time;
  }
  // The labels drop frame skips still read, as the frames just before them.
  EXPECT_EQ(Open(V1Timecode({Node("s1", 1)}, {SampleSet("s1", {{"00:01:00:00", "\"1\""}})})).fault, Fault{});
}

TEST(SampleSetParser, RefusesASampleSetIdThatTwoNodesShare) {
  const std::string other = Node("s1", 1, NumberType(), "other");
  const std::string nested = GroupNode("g", Node("s2", 1) + "," + GroupNode("h", other, "H"));
  for (const std::string &text : {V2Utc({Node("s1", 1), other}, {kGood}), V2Utc({Node("s1", 1), nested}, {kGood}, true)}) {
    EXPECT_EQ(Open(text).fault,
              (Fault{37, R"(Duplicate sample id found. Sample Id:"s1" is assigned to more than one dynamic node in data outline.)", -1}))
        << text;
  }
}

TEST(SampleSetParser, IndexesTheSameWhicheverComesFirst) {
  const std::vector<std::string> nodes = {GroupNode("g", Node("s1", 2) + "," + Node("a1", 1, ArrayType())),
                                          Node("p1", 1, PaddedType()), Node("none", 3)};
  const std::vector<std::string> sets = {
      SampleSet("a1", {{Utc(5), R"(["+1.5",-2])"}}),
      SampleSet("s1", {{Utc(9), "\"+9.0\""}, {Utc(3), "\"+3.0\""}}),
      SampleSet("p1", {{Utc(4), R"({"length":5,"str":"h\"llo"})"}}),
  };
  for (const bool samplesFirst : {false, true}) {
    const Opened opened = Open(V2Utc(nodes, sets, samplesFirst));
    ASSERT_EQ(opened.fault, Fault{});
    const SampleSetIndex &index = opened.parser->samples().index();
    ASSERT_EQ(index.size(), 4u);
    const SampleSetEntry &s1 = *index.Find("s1");
    EXPECT_EQ(s1.state, kSampleSetIndexed);
    EXPECT_EQ(s1.count, 2u);
    EXPECT_EQ(s1.order, SampleOrder::Descending);
    EXPECT_EQ(s1.firstTime, Utc(9));
    EXPECT_EQ(s1.lastTime, Utc(3));
    EXPECT_EQ(s1.earliestTime, Utc(3));
    EXPECT_EQ(s1.declaredCount, 2u);
    EXPECT_EQ(index.Find("a1")->valueType.kind, static_cast<std::uint32_t>(PX_TYPE_NUMBER_STRING_ARRAY));
    EXPECT_EQ(index.Find("a1")->valueType.arraySize, 2u);
    EXPECT_EQ(index.Find("p1")->valueType.maxLen, 5u);
    // A node whose samples the file does not hold stays in state 4.
    EXPECT_EQ(index.Find("none")->state, kSampleSetNotSeen);
    // Seconds count from the earliest sample of all sets.
    EXPECT_EQ(opened.parser->samples().utcOriginText(), Utc(3));
  }
}

TEST(SampleSetParser, ReadsTheVersionOneArrayType) {
  const Opened opened =
      Open(V1Timecode({Node("a1", 1, ArrayType(true))}, {SampleSet("a1", {{"01:00:00:00", R"(["1","2"])"}})}));
  ASSERT_EQ(opened.fault, Fault{});
  EXPECT_EQ(opened.parser->samples().index().Find("a1")->valueType.kind,
            static_cast<std::uint32_t>(PX_TYPE_NUMBER_STRING_ARRAY));
  EXPECT_EQ(opened.parser->samples().utcOriginText(), "");
}

}  // namespace
}  // namespace ns_sensor
