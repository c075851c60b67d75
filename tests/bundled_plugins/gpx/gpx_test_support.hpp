// GPX texts converted the way the plug-in does it (survey, then build), into a root whose
// writer records each sample set as time and value texts.
#pragma once

#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "gpx_document.hpp"
#include "plugin_model/model_test_support.hpp"

namespace gpx::testing {

using SampleTexts = std::vector<std::pair<std::string, std::string>>;  // time, value

struct Converted {
  GpxSurvey survey;
  std::vector<GroupSummary> groups;
  std::map<std::string, SampleTexts> sets;  // by sample set ID (the match name)
  std::uint32_t commitStatus = 0;
};

inline Converted Convert(const std::string &text) {
  Converted result;
  std::istringstream first(text), second(text);
  result.survey = SurveyGpx(first);
  PX_PLUGIN::testing::TestDocument document;
  result.groups = BuildGpxDocument(second, result.survey, document.root);
  result.commitStatus = document.root->Commit(nullptr, nullptr);
  for (const auto &set : document.log.sampleSets) result.sets[set.id] = set.samples;
  return result;
}

// The values of a sample set, without times.
inline std::vector<std::string> Values(const Converted &converted, const std::string &id) {
  std::vector<std::string> values;
  const auto found = converted.sets.find(id);
  if (found == converted.sets.end()) return values;
  for (const auto &sample : found->second) values.push_back(sample.second);
  return values;
}

// A GPX 1.1 document around body.
inline std::string Gpx(const std::string &body) {
  return "<?xml version=\"1.0\"?>\n<gpx version=\"1.1\" creator=\"test\" xmlns:x=\"urn:test\">\n" + body + "</gpx>\n";
}

// A track point with a time and optional further children.
inline std::string Point(double lat, double lon, const std::string &time, const std::string &children = "") {
  std::ostringstream text;
  text.precision(10);
  text << "<trkpt lat=\"" << lat << "\" lon=\"" << lon << "\">";
  if (!time.empty()) text << "<time>" << time << "</time>";
  text << children << "</trkpt>\n";
  return text.str();
}

}  // namespace gpx::testing
