// Outline checks of both schema versions: each case an outline and the fault it must end in.
#include "mgjson_read/validator.hpp"

#include <gtest/gtest.h>

#include <string>

#include "mgjson_read/mgjson_test_support.hpp"
#include "mgjson_read/scanner.hpp"

namespace ns_sensor {
namespace {

using testing::Capture;
using testing::DynamicNode;
using testing::Fault;
using testing::GroupNode;
using testing::kNumberStringType;
using testing::StaticNodeV1;

// The scanner's document of an outline or object text.
JsonDocument Build(const std::string &text) {
  JsonDocument document;
  const MgjsonScanner scanner(text.data(), text.data() + text.size());
  if (text.front() == '[') {
    scanner.ParseArray(text.data(), PropertyPath("dataOutline"), &document, 0);
  } else {
    scanner.ParseObject(text.data(), PropertyPath("value"), &document, 0);
  }
  return document;
}

Fault ValidateOutline(int version, const std::string &outline) {
  const JsonDocument document = Build(outline);
  const PX_MgjsonValidator_v1 v1;
  const PX_MgjsonValidator_v2 v2;
  const PX_MgjsonValidator &validator = version == 1 ? static_cast<const PX_MgjsonValidator &>(v1) : v2;
  return Capture([&] { validator.ValidateDataOutline(document); });
}

std::string Node(const std::string &head, const std::string &tail) {
  return R"({"objectType":)" + head + tail + "}";
}

// A static node of version 2 with the given data type and value.
std::string StaticNodeV2(const std::string &dataType, const std::string &value,
                         const std::string &matchName = "gain") {
  return Node(R"("dataStatic","displayName":"Gain","matchName":")" + matchName + R"(")",
              R"(,"dataType":)" + dataType + R"(,"value":)" + value);
}

// A dynamic node whose members after matchName are given.
std::string DynamicWith(const std::string &members) {
  return Node(R"("dataDynamic","displayName":"Speed","matchName":"speed")", members);
}

const std::string kDynamicTail = R"(,"sampleSetID":"s","interpolation":"hold","sampleCount":3)";
const std::string kDynamicType = R"(,"dataType":)" + kNumberStringType;

const std::string kNumberArrayType =
    R"({"type":"numberArray","numberArrayProperties":{"pattern":{"isSigned":true,)"
    R"("digitsInteger":2,"digitsDecimal":1},"arraySize":2,"arrayDisplayNames":["x","y"],)"
    R"("arrayRanges":{"ranges":[{"occurring":{"min":0,"max":1},"legal":{"min":0,"max":1}},)"
    R"({"occuring":{"min":0,"max":1},"legal":{"min":0,"max":1}}]}}})";

struct Case {
  int version;
  std::string outline;
  Fault expected;
};

TEST(Validator, AcceptsWellFormedOutlines) {
  const Case cases[] = {
      {1, "[" + StaticNodeV1("") + "]", {}},  // an empty match name is a name like any other
      {1, "[" + StaticNodeV1("a") + "," + StaticNodeV1("A") + "]", {}},
      {1, "[" + GroupNode("g", DynamicNode("d", "s1") + "," + GroupNode("h", StaticNodeV1("x"))) + "]", {}},
      {1, "[" + DynamicWith(kDynamicType + R"(,"hasExpectedFrequecyB":true)" + kDynamicTail) + "]", {}},
      {1, R"([{"objectType":"dataStatic","displayName":"Vec","matchName":"vec","dataType":)" + kNumberArrayType + R"(,"value":["1","2"]}])", {}},
      {2, "[" + StaticNodeV2(R"({"type":"boolean"})", "true") + "]", {}},
      {2, "[" + StaticNodeV2(R"({"type":"numberArray","numberArrayProperties":{"pattern":{"isSigned":true,"digitsInteger":2,"digitsDecimal":1},"arraySize":2,"arrayDisplayNames":["x"],"arrayRanges":{"ranges":[{"occurring":{"min":0,"max":1},"legal":{"min":0,"max":1}}]},"isPoint":true}})", "[1,2]") + "]", {}},
      {2, "[" + DynamicWith(R"(,"dataType":{"type":"paddedString","paddedStringProperties":{"maxLen":8,"maxDigitsInStrLength":1,"eventMarkerB":false}},"hasExpectedFrequencyB":true)" + kDynamicTail + R"(,"expectedMaxInterSampleDuration":"00:00:01:00")") + "]", {}},
  };
  for (const Case &c : cases) EXPECT_EQ(ValidateOutline(c.version, c.outline), c.expected) << c.outline;
}

TEST(Validator, EnforcesMatchNameRules) {
  const std::string badName = " at \"dataOutline[0]:Gain\". Not following MGJSON guidelines.";
  const std::string unique = " MatchName must be unique for every node in \"dataOutline\".";
  const Case cases[] = {
      {1, "[" + StaticNodeV1("2speed") + "]", {42, "Invalid \"matchName\"" + badName}},
      {1, "[" + StaticNodeV1("speed_2") + "]", {42, "Invalid \"matchName\"" + badName}},
      {1, "[" + StaticNodeV1("sp eed") + "]", {42, "Invalid \"matchName\"" + badName}},
      {1, "[" + StaticNodeV1("caf\xC3\xA9") + "]", {42, "Invalid \"matchName\"" + badName}},
      {1, "[" + StaticNodeV1("") + "," + StaticNodeV1("", "Other") + "]",
       {40, "Duplicate MatchName:\"\" at \"dataOutline[1]:Other\"." + unique}},
      {1, "[" + GroupNode("g1", DynamicNode("a", "s1")) + "," + GroupNode("g2", DynamicNode("a", "s2")) + "]",
       {40, "Duplicate MatchName:\"a\" at \"dataOutline[1]:Group/children[0]:Speed\"." + unique}},
      {2, "[" + GroupNode("g", StaticNodeV2(R"({"type":"boolean"})", "false", "g")) + "]",
       {40, "Duplicate MatchName:\"g\" at \"dataOutline[0]:Group/children[0]:Gain\"." + unique}},
  };
  for (const Case &c : cases) EXPECT_EQ(ValidateOutline(c.version, c.outline), c.expected) << c.outline;
}

TEST(Validator, NamesTheAllowedValues) {
  const std::string at = "Invalid value for \"type\" at \"dataOutline[0]:Gain/dataType\", expected:";
  const Case cases[] = {
      {1, "[" + StaticNodeV2(R"({"type":"number"})", "1") + "]",
       {44, at + R"(one of "numberString", "paddedString" or "numberArray".)"}},
      {2, "[" + StaticNodeV2(R"({"type":"numberString"})", "1") + "]",
       {44, at + R"(one of "number", "string" , "boolean" or "numberArray".)"}},
      {2, "[" + DynamicWith(R"(,"dataType":{"type":"numberArray"})") + "]",
       {44, R"(Invalid value for "type" at "dataOutline[0]:Speed/dataType", expected:one of "numberString", "paddedString" or "numberStringArray"..)"}},
      {1, R"([{"objectType":"datastatic"}])",
       {44, R"(Invalid value for "objectType" at "dataOutline[0]", expected:one of "dataStatic", "dataDynamic" or "dataGroup".)"}},
      {1, "[" + DynamicWith(kDynamicType + R"(,"sampleSetID":"s","interpolation":"cubic")") + "]",
       {44, R"(Invalid value for "interpolation" at "dataOutline[0]:Speed", expected:one of "linear" or "hold".)"}},
  };
  for (const Case &c : cases) EXPECT_EQ(ValidateOutline(c.version, c.outline), c.expected) << c.outline;
}

TEST(Validator, ReportsMissingMembersAndWrongTypesWithTheirPaths) {
  const std::string node = "\"dataOutline[0]:Speed\"";
  const std::string range = "\"dataOutline[0]:Speed/dataType/numberStringProperties/range\"";
  const Case cases[] = {
      {1, "[1]", {43, "Invalid \"dataOutline\" type, expected type:JSON Object at \"dataOutline[0]\"."}},
      {1, R"([{"displayName":"x"}])", {28, "Unable to find mandatory property:\"objectType\" at \"dataOutline[0]\"."}},
      {1, "[" + DynamicWith(kDynamicType + R"(,"sampleSetID":"s","interpolation":"hold","sampleCount":3)") + "]",
       {28, "Unable to find mandatory property:\"hasExpectedFrequecyB\" at " + node + "."}},
      {1, "[" + DynamicWith(kDynamicType + R"(,"sampleSetID":7)") + "]",
       {43, "Invalid \"sampleSetID\" type, expected type:JSON String at " + node + "."}},
      {1, "[" + DynamicWith(R"(,"dataType":{"type":"numberString","numberStringProperties":{"pattern":{"isSigned":true,"digitsInteger":3,"digitsDecimal":2},"range":{"legal":{"min":0,"max":1}}}})") + "]",
       {28, "Unable to find mandatory property:\"occuring\" at " + range + "."}},
      {1, "[" + DynamicWith(R"(,"dataType":{"type":"numberString","numberStringProperties":{"pattern":{"isSigned":true,"digitsInteger":3,"digitsDecimal":2},"range":{"occurring":{"min":0,"max":1},"legal":5}}})") + "]",
       {43, "Invalid \"numberMinMax\" type, expected type:JSON Object at \"dataOutline[0]:Speed/dataType/numberStringProperties/range/legal\"."}},
      {1, "[" + DynamicWith(R"(,"dataType":{"type":"numberArray","numberArrayProperties":{"pattern":{"isSigned":true,"digitsInteger":2,"digitsDecimal":1},"arraySize":2,"arrayDisplayNames":["x",2]}})") + "]",
       {43, "Invalid \"arrayDisplayNames\" type, expected type:JSON String at \"dataOutline[0]:Speed/dataType/numberArrayProperties/arrayDisplayNames[1]\"."}},
      {1, "[" + DynamicWith(R"(,"dataType":{"type":"numberArray","numberArrayProperties":{"pattern":{"isSigned":true,"digitsInteger":2,"digitsDecimal":1},"arraySize":2,"arrayDisplayNames":["x"],"arrayRanges":{"ranges":[{"occurring":{"min":0,"max":1},"legal":{"min":0,"max":1}},3]}}})") + "]",
       {43, "Invalid \"ranges\" type, expected type:JSON Object at \"dataOutline[0]:Speed/dataType/numberArrayProperties/arrayRanges/ranges[1]\"."}},
      {1, R"([{"objectType":"dataStatic","displayName":"Label","matchName":"label","dataType":{"type":"paddedString","paddedStringProperties":{"maxLen":8,"maxDigitsInStrLength":1,"eventMarkerB":false}},"value":{"length":3}}])",
       {28, "Unable to find mandatory property:\"str\" at \"dataOutline[0]:Label/value\"."}},
      {1, R"([{"objectType":"dataStatic","displayName":"Vec","matchName":"vec","dataType":)" + kNumberArrayType + R"(,"value":["1",2]}])",
       {43, "Invalid \"value\" type, expected type:JSON String at \"dataOutline[0]:Vec/value[1]\"."}},
      {2, "[" + StaticNodeV2(R"({"type":"numberArray","numberArrayProperties":{"pattern":{"isSigned":true,"digitsInteger":2,"digitsDecimal":1},"arraySize":2,"arrayDisplayNames":["x"],"arrayRanges":{"ranges":[{"occurring":{"min":0,"max":1},"legal":{"min":0,"max":1}}]}}})", R"([1,"2"])") + "]",
       {43, "Invalid \"value\" type, expected type:JSON Number at \"dataOutline[0]:Gain/value[1]\"."}},
      {2, "[" + StaticNodeV2(R"({"type":"boolean"})", "1") + "]",
       {43, "Invalid \"value\" type, expected type:JSON Boolean at \"dataOutline[0]:Gain\"."}},
      {2, R"([{"objectType":"dataStatic","displayName":"Gain","matchName":"gain","dataType":{"type":"boolean"}}])",
       {28, "Unable to find mandatory property:\"value\" at \"dataOutline[0]:Gain\"."}},
      {1, "[" + GroupNode("g", StaticNodeV1("a") + R"(,{"objectType":5})") + "]",
       {43, "Invalid \"objectType\" type, expected type:JSON String at \"dataOutline[0]:Group/children[1]\"."}},
      {1, R"([{"objectType":"dataGroup","displayName":"G","matchName":"g","children":{"a":1}}])",
       {43, "Invalid \"children\" type, expected type:JSON Array at \"dataOutline[0]:G\"."}},
  };
  for (const Case &c : cases) EXPECT_EQ(ValidateOutline(c.version, c.outline), c.expected) << c.outline;
}

TEST(Validator, RefusesEmptyArraysTheScannerCannotProduce) {
  // Documents built by other means can hold empty arrays; the checks still hold.
  JsonDocument group = Build("[" + GroupNode("g", StaticNodeV1("a")) + "]");
  group[0]["children"].Clear();
  const PX_MgjsonValidator_v1 validator;
  EXPECT_EQ(Capture([&] { validator.ValidateDataOutline(group); }),
            (Fault{47, "Invalid \"children\", expected atleast 1 array item, found 0 at \"dataOutline[0]:Group\"."}));
  JsonDocument outline;
  outline.SetArray();
  EXPECT_EQ(Capture([&] { validator.ValidateDataOutline(outline); }),
            (Fault{47, "Invalid \"dataOutline\", expected atleast 1 array item, found 0."}));
  outline.SetObject();
  EXPECT_EQ(Capture([&] { validator.ValidateDataOutline(outline); }),
            (Fault{43, "Invalid \"dataOutline\" type, expected type:JSON Array."}));
}

}  // namespace
}  // namespace ns_sensor
