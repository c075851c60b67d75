#include "mgjson_read/sample_index.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

#include "api/px_exception.hpp"
#include "mgjson_read/member_lookup.hpp"

namespace ns_sensor {
namespace {

std::string_view TextOf(const JsonValue &value) {
  return value.IsString() ? std::string_view(value.GetString(), value.GetStringLength()) : std::string_view();
}

const JsonValue *MemberOf(const JsonValue &object, std::string_view name) { return FindMemberValue(object, name); }

// A property that the validator made a number, as a count: truncated, and held within
// 32 bits (a negative or unreadable figure counts as 0).
std::uint32_t CountOf(const JsonValue *value) {
  if (value == nullptr || !value->IsNumber()) return 0;
  const double number = value->GetDouble();
  if (!(number > 0)) return 0;
  if (number >= static_cast<double>(std::numeric_limits<std::uint32_t>::max())) {
    return std::numeric_limits<std::uint32_t>::max();
  }
  return static_cast<std::uint32_t>(number);
}

// "sampleCount" is a JSON number; only a whole, non-negative one that a double holds
// exactly can be compared with the samples found.
std::optional<std::uint64_t> DeclaredCountOf(const JsonValue &node) {
  const JsonValue *value = MemberOf(node, "sampleCount");
  if (value == nullptr || !value->IsNumber()) return std::nullopt;
  const double number = value->GetDouble();
  constexpr double kLargestExact = 9007199254740992.0;  // 2^53
  if (!(number >= 0) || number > kLargestExact || std::floor(number) != number) return std::nullopt;
  return static_cast<std::uint64_t>(number);
}

}  // namespace

SampleValueType ValueTypeOfNode(const JsonValue &node) {
  SampleValueType valueType;
  const JsonValue *dataType = MemberOf(node, "dataType");
  if (dataType == nullptr) return valueType;
  const JsonValue *type = MemberOf(*dataType, "type");
  const std::string_view name = type == nullptr ? std::string_view() : TextOf(*type);
  if (name == "numberString") {
    valueType.kind = PX_TYPE_NUMBER_STRING;
  } else if (name == "paddedString") {
    valueType.kind = PX_TYPE_PADDED_STRING;
    const JsonValue *properties = MemberOf(*dataType, "paddedStringProperties");
    valueType.maxLen = properties == nullptr ? 0 : CountOf(MemberOf(*properties, "maxLen"));
  } else if (name == "numberStringArray" || name == "numberArray") {
    // Schema version 1 names the dynamic array type "numberArray"; its items are
    // number strings as in version 2.
    valueType.kind = PX_TYPE_NUMBER_STRING_ARRAY;
    const JsonValue *properties = MemberOf(*dataType, "numberArrayProperties");
    valueType.arraySize = properties == nullptr ? 0 : CountOf(MemberOf(*properties, "arraySize"));
  }
  return valueType;
}

namespace {

// An upper bound of the entries an outline makes: its nodes that are not groups. Sizing
// the table once spares the rehashing that growing it node by node costs.
std::size_t LeafCount(const JsonValue &nodes) {
  if (!nodes.IsArray()) return 0;
  std::size_t count = 0;
  for (const JsonValue &node : nodes.GetArray()) {
    const JsonValue *children = MemberOf(node, "children");
    count += children == nullptr ? 1 : LeafCount(*children);
  }
  return count;
}

}  // namespace

void SampleSetIndex::Build(const JsonValue &outline) {
  Clear();
  const std::size_t leaves = LeafCount(outline);
  entries_.reserve(leaves);
  positions_.Reserve(leaves);
  AddNodes(outline);
}

void SampleSetIndex::Clear() noexcept {
  entries_.clear();
  positions_.Clear();
  checkpoints_.clear();
  nextGuess_.store(0, std::memory_order_relaxed);
}

void SampleSetIndex::ForgetSamples() noexcept {
  for (Slot &slot : entries_) {
    SampleSetEntry fresh;
    fresh.valueType = slot.entry.valueType;
    fresh.declaredCount = slot.entry.declaredCount;
    slot.entry = fresh;
  }
  checkpoints_.clear();
}

void SampleSetIndex::SealCheckpoints() noexcept {
  const std::uint64_t listed = checkpoints_.size();
  for (Slot &slot : entries_) {
    SampleSetEntry &entry = slot.entry;
    if (entry.state != kSampleSetIndexed || entry.firstCheckpoint > listed) continue;
    const std::uint64_t wanted = (entry.count + kSamplesPerCheckpoint - 1) / kSamplesPerCheckpoint;
    // A list shorter than the count asks for fails the reader's range check.
    const std::uint64_t kept = std::min(wanted, listed - entry.firstCheckpoint);
    entry.checkpoints = std::span<const std::uint64_t>(checkpoints_.data() + entry.firstCheckpoint, kept);
  }
}

void SampleSetIndex::AddNodes(const JsonValue &nodes) {
  if (!nodes.IsArray()) return;
  for (const JsonValue &node : nodes.GetArray()) {
    const JsonValue *objectType = MemberOf(node, "objectType");
    if (objectType == nullptr) continue;
    const std::string_view kind = TextOf(*objectType);
    if (kind == "dataGroup") {
      if (const JsonValue *children = MemberOf(node, "children")) AddNodes(*children);
    } else if (kind == "dataDynamic") {
      const JsonValue *id = MemberOf(node, "sampleSetID");
      const std::string_view sampleSetId = id == nullptr ? std::string_view() : TextOf(*id);
      // The table numbers IDs as they come, as entries_ does.
      if (!positions_.Insert(sampleSetId)) Raise(Msg::DuplicateSampleId, Quoted(sampleSetId));
      SampleSetEntry entry;
      entry.valueType = ValueTypeOfNode(node);
      entry.declaredCount = DeclaredCountOf(node);
      entries_.push_back(Slot{sampleSetId, entry});
    }
  }
}

const SampleSetIndex::Slot *SampleSetIndex::FindSlot(std::string_view sampleSetId) const {
  std::size_t position = nextGuess_.load(std::memory_order_relaxed);
  if (position >= entries_.size() || entries_[position].id != sampleSetId) {
    const std::optional<std::uint32_t> found = positions_.Find(sampleSetId);
    if (!found) return nullptr;
    position = *found;
  }
  nextGuess_.store(static_cast<std::uint32_t>(position + 1), std::memory_order_relaxed);
  return &entries_[position];
}

SampleSetEntry *SampleSetIndex::Find(std::string_view sampleSetId) {
  const Slot *slot = FindSlot(sampleSetId);
  return slot == nullptr ? nullptr : &entries_[static_cast<std::size_t>(slot - entries_.data())].entry;
}

const SampleSetEntry *SampleSetIndex::Find(std::string_view sampleSetId) const {
  const Slot *slot = FindSlot(sampleSetId);
  return slot == nullptr ? nullptr : &slot->entry;
}

const SampleSetEntry *SampleSetIndex::Find(std::string_view sampleSetId,
                                           std::string_view &storedId) const {
  const Slot *slot = FindSlot(sampleSetId);
  if (slot == nullptr) return nullptr;
  storedId = slot->id;
  return &slot->entry;
}

}  // namespace ns_sensor
