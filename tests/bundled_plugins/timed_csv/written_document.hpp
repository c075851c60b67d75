// A document built by a bundled plug-in's reader into a real root, committed to a file of
// a fresh temporary folder and read back as JSON: what the tests of the readers check.
#pragma once

#include <rapidjson/document.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "palvex/plugin_kit.hpp"
#include "platform/file_test_support.hpp"
#include "plugin_model/writer_test_support.hpp"

namespace bundled_test {

struct WrittenDocument {
  bool built = false;      // the builder said there was something to write
  std::uint32_t code = 0;  // of the PX_PluginException it threw, 0 when none
  std::int64_t detail1 = -1;
  std::int64_t detail2 = -1;
  rapidjson::Document json;

  const rapidjson::Value &UtcInfo() const { return json["dynamicDataInfo"]["utcInfo"]; }

  // The top-level outline entry with this match name, or null.
  const rapidjson::Value *Node(const std::string &matchName) const {
    for (const auto &node : json["dataOutline"].GetArray()) {
      if (matchName == node["matchName"].GetString()) return &node;
    }
    return nullptr;
  }

  std::vector<std::string> DisplayNames() const {
    std::vector<std::string> names;
    for (const auto &node : json["dataOutline"].GetArray()) names.emplace_back(node["displayName"].GetString());
    return names;
  }

  // (time, value) of each sample of a set; a padded string's value is its text.
  std::vector<std::pair<std::string, std::string>> Samples(const std::string &id) const {
    std::vector<std::pair<std::string, std::string>> samples;
    for (const auto &set : json["dataDynamicSamples"].GetArray()) {
      if (id != set["sampleSetID"].GetString()) continue;
      for (const auto &sample : set["samples"].GetArray()) {
        const auto &value = sample["value"];
        samples.emplace_back(sample["time"].GetString(), value.IsObject() ? value["str"].GetString() : value.GetString());
      }
    }
    return samples;
  }
};

// Runs build(root) -> bool on a root that writes a real file, commits when it returns
// true, and reads the file back.
template <typename Build>
WrittenDocument WriteDocument(Build &&build) {
  const palvex::testing::ScratchFolder folder;
  PX_PLUGIN::testing::WritingDocument document(folder);
  WrittenDocument written;
  try {
    written.built = build(document.root);
    if (written.built) PX_PLUGIN::Call(document.root, &PX_PLUGIN::IMgjsonRoot_v1::Commit, nullptr);
  } catch (const PX_PLUGIN::PX_PluginException &e) {
    written.code = e.code();
    written.detail1 = e.detail1();
    written.detail2 = e.detail2();
  }
  if (written.built && written.code == 0) written.json.Parse(document.Text().c_str());
  return written;
}

}  // namespace bundled_test
