// Converting generated files in memory into a test document, and reading back what the
// document wrote: each sample set by its match name, as (time text, value text) pairs.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "byte_source.hpp"
#include "gpmf_conversion.hpp"
#include "plugin_model/model_test_support.hpp"

namespace gpmf::testing {

using Samples = std::vector<std::pair<std::string, std::string>>;

struct Converted {
  ConversionSummary summary;
  std::map<std::string, Samples> sets;
  std::uint32_t rootChildren = 0;
};

// Converts the chapters (file bytes, first chapter first) and commits the document.
inline Converted ConvertBytes(const std::vector<std::string> &chapters) {
  PX_PLUGIN::testing::TestDocument document;
  Converted converted;
  converted.summary = ConvertRecording(
      chapters.size(), [&](std::size_t c) { return std::make_unique<MemorySource>(chapters[c]); }, document.root);
  converted.rootChildren = document.root->GetChildCount();
  if (converted.summary.samples > 0) {
    uint32_t committed = 0;
    PX_PLUGIN::Call(document.root, &PX_PLUGIN::IMgjsonRoot_v1::Commit, &committed);
  }
  for (const auto &set : document.log.sampleSets) converted.sets[set.id] = set.samples;
  return converted;
}

inline Converted ConvertBytes(const std::string &file) { return ConvertBytes(std::vector<std::string>{file}); }

}  // namespace gpmf::testing
