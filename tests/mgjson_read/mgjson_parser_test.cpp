// The top-level rules of both schema versions: which properties may come, in which order,
// which are required, and what a file must not hold after its closing brace.
#include "mgjson_read/mgjson_parser.hpp"

#include <gtest/gtest.h>

#include <string>

#include "mgjson_read/mgjson_test_support.hpp"

namespace ns_sensor {
namespace {

using testing::DynamicNode;
using testing::Fault;
using testing::kOneNodeOutline;
using testing::Open;

const std::string kTimecode = R"({"frameRate":{"value":30,"scale":1},"dropFrame":false})";
const std::string kUtc = R"({"precisionLength":3,"isGMT":true})";
const std::string kV1 = R"({"useTimecodeB":true,"timecodeInfo":)" + kTimecode +
                        R"(,"dataOutline":)" + kOneNodeOutline + "}";
const std::string kV2Head = R"({"version":"mgjson2.0.0","dynamicSamplesPresentB":true,)"
                            R"("dynamicDataInfo":{"useTimecodeB":false,"utcInfo":)" + kUtc + "}";
const std::string kV2 = kV2Head + R"(,"dataOutline":)" + kOneNodeOutline + "}";

// Offset of the first or the last occurrence of `marker` in `text`.
std::int64_t At(const std::string &text, const std::string &marker) {
  return static_cast<std::int64_t>(text.find(marker));
}
std::int64_t AtLast(const std::string &text, const std::string &marker) {
  return static_cast<std::int64_t>(text.rfind(marker));
}

struct Case {
  std::string text;
  Fault expected;
};

void ExpectFaults(const Case *begin, const Case *end) {
  for (const Case *c = begin; c != end; ++c) EXPECT_EQ(Open(c->text).fault, c->expected) << c->text;
}

TEST(MgjsonParser, ChoosesTheSchemaVersionByTheFirstProperty) {
  const struct {
    std::string text;
    bool version2;
  } cases[] = {
      {R"({"version":"mgjson2.0.0"})", true},
      {" \n{ \"version\" : \"MGJSON2.0.0\" ,", true},
      {R"({"version":"MgJsOn2.0.0","creator":"x"})", true},
      {R"({"version":"2.0.0"})", false},
      {R"({"version":"mgjson2.0.0 "})", false},
      {R"({"creator":"x","version":"mgjson2.0.0"})", false},
      {R"({"Version":"mgjson2.0.0"})", false},
      {R"({"version":"mgjson2.0.0)", false},
      {"", false},
  };
  for (const auto &c : cases) {
    EXPECT_EQ(IsSchemaVersion2(c.text.data(), c.text.size()), c.version2) << c.text;
    EXPECT_EQ(CreateMgjsonParser(c.text.data(), c.text.size())->GetSchemaVersion(), c.version2 ? 1u : 0u);
  }
}

TEST(MgjsonParser, ReadsBothVersions) {
  const auto v1 = Open(R"({"version":"1.0","creator":"unit test",)" + kV1.substr(1));
  ASSERT_EQ(v1.fault, Fault{});
  EXPECT_EQ(v1.parser->version(), "1.0");
  EXPECT_EQ(v1.parser->creator(), "unit test");
  EXPECT_EQ(v1.parser->seenProperties(),
            kSeenVersion | kSeenCreator | kSeenUseTimecode | kSeenTimecodeInfo | kSeenDataOutline);
  EXPECT_STREQ(v1.parser->dataOutline()[0]["matchName"].GetString(), "speed");

  const auto v2 = Open(kV2);
  ASSERT_EQ(v2.fault, Fault{});
  EXPECT_TRUE(v2.parser->dynamicSamplesPresent());
  EXPECT_FALSE(v2.parser->useTimecode());
}

TEST(MgjsonParser, RefusesMalformedTopLevels) {
  const std::string invalid = "Parsing error:, Invalid JSON.";
  const std::string trailing = kV1 + " \n x";
  const std::string unknown = R"({"useTimecodeB":true,"colour":1})";
  const Case cases[] = {
      {"", {32, "Unable to find MGJSON opening '{'.", 0}},
      {"  x{}", {32, "Unable to find MGJSON opening '{'.", 2}},
      {std::string("\x00\xff{", 3), {32, "Unable to find MGJSON opening '{'.", 0}},
      {"{ ", {32, invalid, 2}},
      {R"({"useTimecodeB":true, )", {32, invalid, 22}},
      {R"({"useTimecodeB":true )", {32, "Parsing error:\"useTimecodeB\", Invalid JSON.", 21}},
      {R"({"useTimecodeB":true)", {32, "Invalid \"useTimecodeB\" type, expected type:JSON Boolean.", 16}},
      {R"({"useTimecodeB":true x})", {32, "Unable to find Comma or Closing bracket after property:\"useTimecodeB\".", 21}},
      {R"({useTimecodeB:true})", {32, "Unable to find enclosing quotes for Mgjson key.", 1}},
      {R"({})", {32, "Unable to find enclosing quotes for Mgjson key.", 1}},
      {unknown, {32, "Invalid MGJSON key : colour.", At(unknown, "1}")}},
      {trailing, {32, invalid, AtLast(trailing, "x")}},
      {kV1 + "}", {32, invalid, static_cast<std::int64_t>(kV1.size())}},
      {R"({"version":1})", {32, "Unable to find enclosing quotes for property value:\"version\".", 11}},
      {R"({"creator":"a)", {32, "Unable to find enclosing quotes for property value:\"creator\".", 13}},
      {R"({"creator":"x"})", {32, "Unable to find mandatory properties : useTimecodeB,dataOutline.", -1}},
      {R"({"useTimecodeB":false,"dataOutline":)" + kOneNodeOutline + "}", {32, "Unable to find mandatory properties : utcInfo.", -1}},
      {R"({"useTimecodeB":true,"dataOutline":)" + kOneNodeOutline + "}", {32, "Unable to find mandatory properties : timecodeInfo.", -1}},
      {R"({"version":"mgjson2.0.0"})", {32, "Unable to find mandatory properties : dataOutline,dynamicSamplesPresentB.", -1}},
      {R"({"dataOutline":[1]})", {43, "Invalid \"dataOutline\" type, expected type:JSON Object at \"dataOutline[0]\".", -1}},
  };
  ExpectFaults(std::begin(cases), std::end(cases));
}

TEST(MgjsonParser, KeepsVersionOneTimeRulesInBothOrders) {
  const std::string utcThenTrue = R"({"utcInfo":)" + kUtc + R"(,"useTimecodeB":true})";
  const std::string trueThenUtc = R"({"useTimecodeB":true,"utcInfo":)" + kUtc + "}";
  const std::string timecodeThenFalse = R"({"timecodeInfo":)" + kTimecode + R"(,"useTimecodeB":false})";
  const std::string falseThenTimecode = R"({"useTimecodeB":false,"timecodeInfo":)" + kTimecode + "}";
  const std::string utcOnlyIfFalse = "\"utcInfo\" can be present if and only if \"useTimecodeB\" is set to false.";
  const std::string timecodeOnlyIfTrue = "\"timecodeInfo\" can be present if and only if \"useTimecodeB\" is set to true.";
  const std::string refused = " not defined as a top level property in MGJSON schema version 2.0.0.";
  const std::string present = R"({"dynamicSamplesPresentB":true})";
  const std::string info = R"({"useTimecodeB":true,"dynamicDataInfo":{"useTimecodeB":true}})";
  const Case cases[] = {
      {utcThenTrue, {46, utcOnlyIfFalse, AtLast(utcThenTrue, "true")}},
      {trueThenUtc, {46, utcOnlyIfFalse, At(trueThenUtc, "{\"p")}},
      {timecodeThenFalse, {46, timecodeOnlyIfTrue, AtLast(timecodeThenFalse, "false")}},
      {falseThenTimecode, {46, timecodeOnlyIfTrue, At(falseThenTimecode, "{\"f")}},
      {present, {30, "Invalid top level property. \"dynamicSamplesPresentB\"" + refused, At(present, "true")}},
      {info, {30, "Invalid top level property. \"dynamicDataInfo\"" + refused, At(info, "{\"useTimecodeB\":true}")}},
      {R"({"version":"2.0.0","creator":"x"})", {32, "Unable to find mandatory properties : useTimecodeB,dataOutline.", -1}},
  };
  ExpectFaults(std::begin(cases), std::end(cases));
}

TEST(MgjsonParser, KeepsVersionTwoOrderRules) {
  const std::string head = R"({"version":"mgjson2.0.0",)";
  const std::string infoFirst = head + R"("dynamicDataInfo":{"useTimecodeB":false}})";
  const std::string infoWhenAbsent = head + R"("dynamicSamplesPresentB":false,"dynamicDataInfo":{"useTimecodeB":false}})";
  const std::string samplesFirst = head + R"("dataDynamicSamples":[1]})";
  const std::string samplesWhenAbsent = head + R"("dynamicSamplesPresentB":false,"dataDynamicSamples":[1]})";
  const std::string samplesBeforeInfo = head + R"("dynamicSamplesPresentB":true,"dataDynamicSamples":[1]})";
  const std::string notAnArray = kV2Head + R"(,"dataDynamicSamples":{"a":1}})";
  const std::string badSample = kV2Head + R"(,"dataDynamicSamples":[{"sampleSetID":"s1","samples":[{"time":"x","value":1e5}]}]})";
  const std::string refused = " not defined as a top level property in MGJSON schema version 2.0.0.";
  const std::string useTimecode = head + R"("useTimecodeB":true})";
  const std::string syncList = head + R"("videoSyncTimeList":[1]})";
  const Case cases[] = {
      {infoFirst, {31, "\"dynamicSamplesPresentB\" must be present before \"dynamicDataInfo\" in MGJSON file.", At(infoFirst, "{\"u")}},
      {infoWhenAbsent, {31, "\"dynamicDataInfo\" can be present if and only if \"dynamicSamplesPresentB\" is set to true.", At(infoWhenAbsent, "{\"u")}},
      {samplesFirst, {31, "\"dynamicSamplesPresentB\" must be present before \"dataDynamicSamples\" in MGJSON file.", At(samplesFirst, "[1]")}},
      {samplesWhenAbsent, {31, "\"dataDynamicSamples\" can be present if and only if \"dynamicSamplesPresentB\" is set to true.", At(samplesWhenAbsent, "[1]")}},
      {samplesBeforeInfo, {31, "\"dynamicDataInfo\" must be present before \"dataDynamicSamples\" in MGJSON file.", At(samplesBeforeInfo, "[1]")}},
      {notAnArray, {43, "Invalid \"dataDynamicSamples\" type, expected type:JSON Array.", At(notAnArray, "{\"a\"")}},
      {badSample, {32, "Miss exponent in number", At(badSample, "}]}]}")}},
      {useTimecode, {30, "Invalid top level property. \"useTimecodeB\"" + refused, At(useTimecode, "true")}},
      {syncList, {30, "Invalid top level property. \"videoSyncTimeList\"" + refused, At(syncList, "[1]")}},
      {head + R"("dynamicSamplesPresentB":true,"dataOutline":)" + kOneNodeOutline + "}",
       {32, "Unable to find mandatory properties : dynamicDataInfo.", -1}},
      {kV2Head + R"(,"dataOutline":[)" + testing::StaticNodeV1("g") + "]}",
       {44, R"(Invalid value for "type" at "dataOutline[0]:Gain/dataType", expected:one of "number", "string" , "boolean" or "numberArray".)", -1}},
  };
  ExpectFaults(std::begin(cases), std::end(cases));
}

TEST(MgjsonParser, LocatesTheDynamicSamplesWithoutBuildingThem) {
  const std::string samples =
      R"([{"sampleSetID":"s1","samples":[{"time":"2024-01-01T00:00:00.000Z","value":"1"}]},)"
      R"( {"sampleSetID":"s2","samples":[{"time":"2024-01-01T00:00:00.000Z","value":"2"}]}])";
  const std::string outline = "[" + DynamicNode("speed", "s1") + "," + DynamicNode("rpm", "s2", "Rpm") + "]";
  const std::string text = kV2Head + R"(,"dataDynamicSamples":)" + samples + R"(,"dataOutline":)" + outline + "}";
  const auto parsed = Open(text);
  ASSERT_EQ(parsed.fault, Fault{});
  const DynamicSamplesLocation &location = parsed.parser->dynamicSamples();
  EXPECT_EQ(location.begin, static_cast<std::uint64_t>(At(text, samples)));
  EXPECT_EQ(location.end, location.begin + samples.size());
  EXPECT_EQ(location.sampleSetCount, 2u);
  EXPECT_TRUE(parsed.parser->seenProperties() & kSeenDataDynamicSamples);
}

TEST(MgjsonParser, ReadsARepeatedPropertyAgain) {
  const std::string second = "[" + DynamicNode("other", "s9", "Other") + "]";
  const auto parsed = Open(kV1.substr(0, kV1.size() - 1) + R"(,"dataOutline":)" + second +
                                  R"(,"creator":"a","creator":"b"})");
  ASSERT_EQ(parsed.fault, Fault{});
  EXPECT_STREQ(parsed.parser->dataOutline()[0]["matchName"].GetString(), "other");
  EXPECT_EQ(parsed.parser->creator(), "b");
}

}  // namespace
}  // namespace ns_sensor
