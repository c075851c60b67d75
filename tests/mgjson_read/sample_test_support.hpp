// Small MGJSON files with dynamic samples, written for the sample tests: outline nodes of
// the three dynamic data types, sample sets, and files of both time kinds.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "mgjson_read/mgjson_test_support.hpp"

namespace ns_sensor::testing {

inline const std::string kPattern = R"("pattern":{"isSigned":true,"digitsInteger":3,"digitsDecimal":1})";
inline const std::string kRange = R"({"occurring":{"min":-1,"max":1},"legal":{"min":-100,"max":100}})";

// The dataType of each dynamic kind: number strings, two-element number string arrays
// (named "numberArray" in version 1), padded strings of at most five characters.
inline std::string NumberType() {
  return R"({"type":"numberString","numberStringProperties":{)" + kPattern + R"(,"range":)" + kRange + "}}";
}
inline std::string ArrayType(bool version1 = false) {
  return std::string(R"({"type":")") + (version1 ? "numberArray" : "numberStringArray") +
         R"(","numberArrayProperties":{)" + kPattern + R"(,"arraySize":2,"arrayDisplayNames":["x","y"],)"
         R"("arrayRanges":{"ranges":[)" + kRange + "," + kRange + "]}}}";
}
inline std::string PaddedType() {
  return R"({"type":"paddedString","paddedStringProperties":{"maxLen":5,"maxDigitsInStrLength":1,"eventMarkerB":false}})";
}

// A dynamic node; its match name is "m" followed by the ID unless one is given.
inline std::string Node(std::string_view sampleSetId, std::uint64_t sampleCount, const std::string &dataType = NumberType(),
                        std::string_view matchName = {}) {
  const std::string name = matchName.empty() ? "m" + std::string(sampleSetId) : std::string(matchName);
  return R"({"objectType":"dataDynamic","displayName":"N)" + std::string(sampleSetId) + R"(","matchName":")" + name +
         R"(","dataType":)" + dataType + R"(,"sampleSetID":")" + std::string(sampleSetId) +
         R"(","interpolation":"linear","hasExpectedFrequencyB":false,"sampleCount":)" + std::to_string(sampleCount) + "}";
}

// One sample: a time text and the JSON text of a value.
struct Sample {
  std::string time;
  std::string value;
};

inline std::string SampleSet(std::string_view sampleSetId, const std::vector<Sample> &samples) {
  std::string text = R"({"sampleSetID":")" + std::string(sampleSetId) + R"(","samples":[)";
  for (std::size_t i = 0; i < samples.size(); ++i) {
    if (i != 0) text += ',';
    text += R"({"time":")" + samples[i].time + R"(","value":)" + samples[i].value + "}";
  }
  return text + "]}";
}

// 2024-01-01 plus the given seconds and milliseconds, with three fraction digits and Z.
inline std::string Utc(unsigned seconds, unsigned millis = 0) {
  char text[40];
  std::snprintf(text, sizeof text, "2024-01-%02uT%02u:%02u:%02u.%03uZ", 1 + seconds / 86400, seconds / 3600 % 24,
                seconds / 60 % 60, seconds % 60, millis);
  return text;
}

// A number string value.
inline std::string Number(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "\"%+.1f\"", value);
  return text;
}

// A version 2 UTC file (three fraction digits, GMT) with the outline nodes and sample
// sets given, the samples before or after the outline.
inline std::string V2Utc(const std::vector<std::string> &nodes, const std::vector<std::string> &sets,
                         bool samplesFirst = false) {
  std::string outline = "\"dataOutline\":[";
  for (std::size_t i = 0; i < nodes.size(); ++i) outline += (i ? "," : "") + nodes[i];
  outline += "]";
  std::string samples = "\"dataDynamicSamples\":[";
  for (std::size_t i = 0; i < sets.size(); ++i) samples += (i ? ",\n  " : "\n  ") + sets[i];
  samples += "\n]";
  const std::string head = R"({"version":"MGJSON2.0.0","dynamicSamplesPresentB":true,)"
                           R"("dynamicDataInfo":{"useTimecodeB":false,"utcInfo":{"precisionLength":3,"isGMT":true}},)";
  return head + (samplesFirst ? samples + "," + outline : outline + "," + samples) + "}";
}

// A version 1 timecode file at 30000/1001 drop frame, samples after the outline.
inline std::string V1Timecode(const std::vector<std::string> &nodes, const std::vector<std::string> &sets) {
  std::string text = R"({"useTimecodeB":true,"timecodeInfo":{"frameRate":{"value":30000,"scale":1001},"dropFrame":true},)"
                     R"("dataOutline":[)";
  for (std::size_t i = 0; i < nodes.size(); ++i) text += (i ? "," : "") + nodes[i];
  text += R"(],"dataDynamicSamples":[)";
  for (std::size_t i = 0; i < sets.size(); ++i) text += (i ? "," : "") + sets[i];
  return text + "]}";
}

}  // namespace ns_sensor::testing
