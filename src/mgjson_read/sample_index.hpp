// The index of sample sets: one entry per dynamic node of the data outline, keyed by the
// node's sampleSetID. An entry says how the node's values are read and, once the sample
// sets of the file have been parsed, where its samples lie in the compacted sample text.
//
// The index is built from the validated outline and changed only while the file is
// parsed; reading samples never changes it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "mgjson_read/rapidjson_config.hpp"
#include "palvex/records.h"

namespace ns_sensor {

// Entry states.
inline constexpr std::uint32_t kSampleSetIndexed = 0;  // the samples were found and checked
inline constexpr std::uint32_t kSampleSetNotSeen = 4;  // no sample data seen for this ID yet

// Every this many samples the index keeps the offset of one, so that sample i is reached
// from the nearest kept offset by passing over fewer than this many samples.
inline constexpr std::uint64_t kSamplesPerCheckpoint = 64;

// How the sample times of a set run in the file.
enum class SampleOrder : std::uint8_t {
  Ascending,   // never decreasing (equal neighbours allowed)
  Descending,  // never increasing, and decreasing at least once
  Unordered,   // increasing somewhere and decreasing somewhere else
};

// What a node's data type says about reading one of its values.
struct SampleValueType {
  std::uint32_t kind = PX_TYPE_UNKNOWN;  // PX_TYPE_NUMBER_STRING, _PADDED_STRING or _NUMBER_STRING_ARRAY
  std::uint32_t arraySize = 0;           // number string arrays: elements of every value
  std::uint32_t maxLen = 0;              // padded strings: the longest text
};

struct SampleSetEntry {
  std::uint32_t state = kSampleSetNotSeen;
  SampleValueType valueType;
  // The node's "sampleCount" when it is a whole number that a count can hold.
  std::optional<std::uint64_t> declaredCount;

  // Where the samples lie in the compacted text, as offsets from the region's base. Each
  // sample is one compacted JSON object; neighbours are separated by one ",".
  std::uint64_t start = 0;   // first byte of the first sample
  std::uint64_t end = 0;     // one past the last byte of the last sample
  std::uint64_t stride = 0;  // length of the shortest sample: the per-sample figure of the range check
  std::uint64_t count = 0;   // samples found
  std::vector<std::uint64_t> checkpoints;  // offset of samples 0, 64, 128, ...
  SampleOrder order = SampleOrder::Ascending;

  std::string firstTime;     // time text of the first sample in the file
  std::string lastTime;      // time text of the last sample in the file
  std::string earliestTime;  // smallest time text of the set
};

class SampleSetIndex {
 public:
  // Replaces the index with one entry in state 4 per "dataDynamic" node of a validated
  // outline, groups entered through their "children". A sampleSetID that two nodes share
  // raises DuplicateSampleId (37).
  void Build(const JsonValue &outline);

  // Drops every entry.
  void Clear() noexcept { entries_.clear(); }

  // The entry of an ID, or null.
  SampleSetEntry *Find(std::string_view sampleSetId);
  const SampleSetEntry *Find(std::string_view sampleSetId) const;
  // The same, and in storedId the index's own copy of the ID, which lives as long as the
  // entry does.
  const SampleSetEntry *Find(std::string_view sampleSetId, std::string_view &storedId) const;

  std::size_t size() const { return entries_.size(); }

  // Calls visit(id, entry) for every entry, in no particular order.
  template <typename Visit>
  void ForEach(Visit &&visit) const {
    for (const auto &[id, entry] : entries_) visit(std::string_view(id), entry);
  }
  template <typename Visit>
  void ForEach(Visit &&visit) {
    for (auto &[id, entry] : entries_) visit(std::string_view(id), entry);
  }

 private:
  // Not noexcept on purpose: the standard library then keeps each key's hash with its
  // entry instead of hashing keys again while it walks a bucket.
  struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const {
      return std::hash<std::string_view>{}(text);
    }
  };
  void AddNodes(const JsonValue &nodes);

  std::unordered_map<std::string, SampleSetEntry, TextHash, std::equal_to<>> entries_;
};

// The value type of a dynamic node from its validated "dataType".
SampleValueType ValueTypeOfNode(const JsonValue &node);

}  // namespace ns_sensor
