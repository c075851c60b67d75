// The index of sample sets: one entry per dynamic node of the data outline, keyed by the
// node's sampleSetID. An entry says how the node's values are read and, once the sample
// sets of the file have been parsed, where its samples lie in the compacted sample text.
//
// The index is built from the validated outline and changed only while the file is
// parsed; reading samples never changes it. It views the outline's sampleSetID texts and
// the compacted sample text rather than copying them: its owner keeps both alive, and
// rebuilds or resets the index whenever either is replaced. A file may hold a hundred
// thousand one-sample sets, so an entry owns no memory of its own.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "mgjson_read/rapidjson_config.hpp"
#include "mgjson_read/text_table.hpp"
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
  // Offsets of samples 0, 64, 128, ..., a part of the index's checkpoint list starting
  // at firstCheckpoint; set once every set has been parsed (SealCheckpoints).
  std::uint64_t firstCheckpoint = 0;
  std::span<const std::uint64_t> checkpoints;
  SampleOrder order = SampleOrder::Ascending;

  // Views of the compacted sample text.
  std::string_view firstTime;     // time text of the first sample in the file
  std::string_view lastTime;      // time text of the last sample in the file
  std::string_view earliestTime;  // smallest time text of the set
};

class SampleSetIndex {
 public:
  SampleSetIndex() = default;
  // The entries view the index's own checkpoint list.
  SampleSetIndex(const SampleSetIndex &) = delete;
  SampleSetIndex &operator=(const SampleSetIndex &) = delete;

  // Replaces the index with one entry in state 4 per "dataDynamic" node of a validated
  // outline, groups entered through their "children". A sampleSetID that two nodes share
  // raises DuplicateSampleId (37). The IDs are viewed in `outline`, which must outlive
  // the index or its next Build.
  void Build(const JsonValue &outline);

  // Drops every entry.
  void Clear() noexcept;

  // Puts every entry back in state 4 with nothing found, keeping what the outline says.
  void ForgetSamples() noexcept;

  // The checkpoints of every set, in one list: appended to while the sets are parsed,
  // then handed out to the entries by SealCheckpoints.
  std::vector<std::uint64_t> &checkpointList() { return checkpoints_; }
  void SealCheckpoints() noexcept;

  // The entry of an ID, or null. Sets are mostly asked for in the outline's order (the
  // sample sets of a file, a host walking the outline), so the entry after the one found
  // last is tried before the table of IDs: it lies next in memory.
  SampleSetEntry *Find(std::string_view sampleSetId);
  const SampleSetEntry *Find(std::string_view sampleSetId) const;
  // The same, and in storedId the index's view of the ID, which lives as long as the
  // entry does.
  const SampleSetEntry *Find(std::string_view sampleSetId, std::string_view &storedId) const;

  std::size_t size() const { return entries_.size(); }

  // Calls visit(id, entry) for every entry, in the outline's order.
  template <typename Visit>
  void ForEach(Visit &&visit) const {
    for (const Slot &slot : entries_) visit(slot.id, slot.entry);
  }
  template <typename Visit>
  void ForEach(Visit &&visit) {
    for (Slot &slot : entries_) visit(std::string_view(slot.id), slot.entry);
  }

 private:
  struct Slot {
    std::string_view id;
    SampleSetEntry entry;
  };
  void AddNodes(const JsonValue &nodes);
  const Slot *FindSlot(std::string_view sampleSetId) const;

  std::vector<Slot> entries_;  // in the outline's order
  // The IDs, numbered by their slot in entries_.
  TextTable positions_;
  std::vector<std::uint64_t> checkpoints_;
  // The entry after the one found last. Queries take no lock, so it is atomic; any
  // value serves.
  mutable std::atomic<std::uint32_t> nextGuess_{0};
};

// The value type of a dynamic node from its validated "dataType".
SampleValueType ValueTypeOfNode(const JsonValue &node);

}  // namespace ns_sensor
