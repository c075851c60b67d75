#include "mgjson_read/sample_set_parser.hpp"

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "mgjson_read/compact_json.hpp"
#include "mgjson_read/sample_members.hpp"
#include "mgjson_read/sample_seconds.hpp"
#include "mgjson_read/sample_value.hpp"
#include "mgjson_read/scanner.hpp"

namespace ns_sensor {
namespace {

using compact_json::MemberReader;

std::string SetPath(std::size_t index) { return "dataDynamicSamples[" + std::to_string(index) + "]"; }

std::string SamplePosition(std::string_view sampleSetId, std::uint64_t index) {
  return "sampleSetID:" + std::string(sampleSetId) + "/sample[" + std::to_string(index) + "]";
}

struct SetMembers {
  std::string_view id;       // the value's text
  std::string_view samples;  // the value's text
  bool hasId = false;
  bool hasSamples = false;
};

SetMembers ReadSetMembers(const char *at, const char *end, std::size_t setIndex, std::uint64_t fileOffset) {
  SetMembers set;
  MemberReader members(at, end);
  std::string_view key;
  std::string_view value;
  while (members.Next(key, value)) {
    if (key == "sampleSetID") {
      set.id = value;
      set.hasId = true;
    } else if (key == "samples") {
      set.samples = value;
      set.hasSamples = true;
    }
  }
  if (members.failed()) RaiseAtOffset(Msg::InvalidJsonObject, static_cast<std::int64_t>(fileOffset), Quoted(SetPath(setIndex)));
  if (!set.hasId || !set.hasSamples) {
    const std::string missing = !set.hasId && !set.hasSamples ? "sampleSetID,samples"
                                : !set.hasId                  ? "sampleSetID"
                                                              : "samples";
    RaiseAtOffset(Msg::MissingRequiredProperties, static_cast<std::int64_t>(fileOffset), missing);
  }
  return set;
}

// Reads the samples of one set into `entry`, checking each.
class SampleSetReader {
 public:
  SampleSetReader(std::string_view compacted, std::string_view sampleSetId, const SampleTiming &timing,
                  const SampleValueType &valueType, std::vector<std::uint64_t> &checkpoints)
      : base_(compacted.data()), id_(sampleSetId), timing_(timing), valueType_(valueType),
        checkpoints_(checkpoints) {}

  // `samples` is the text of the set's "samples" array.
  void Read(std::string_view samples, SampleSetEntry &entry) {
    const char *at = samples.data() + 1;
    const char *const end = samples.data() + samples.size();
    std::uint64_t index = 0;
    std::string_view previous;
    std::string_view earliest;
    bool rising = false;
    bool falling = false;
    while (at != end && *at != ']') {
      const char *const sampleStart = at;
      const std::string_view time = CheckSample(at, end, index);
      const std::uint64_t length = static_cast<std::uint64_t>(at - sampleStart);
      if (index == 0) {
        entry.start = Offset(sampleStart);
        entry.stride = length;
        entry.firstCheckpoint = checkpoints_.size();
        entry.firstTime = time;
        earliest = time;
      } else {
        const int order = CompareReadableTimes(timing_, previous, time);
        rising = rising || order < 0;
        falling = falling || order > 0;
        // Until the first fall the first time is the smallest.
        if (falling && CompareReadableTimes(timing_, time, earliest) < 0) earliest = time;
      }
      if (index % kSamplesPerCheckpoint == 0) checkpoints_.push_back(Offset(sampleStart));
      entry.stride = std::min(entry.stride, length);
      entry.end = Offset(at);
      previous = time;
      ++index;
      if (at != end && *at == ',') ++at;
    }
    if (at == end) Raise(Msg::InvalidSampleSetData, Quoted(id_));
    if (index == 0) return;
    entry.count = index;
    entry.order = rising && falling ? SampleOrder::Unordered : falling ? SampleOrder::Descending : SampleOrder::Ascending;
    entry.lastTime = previous;
    entry.earliestTime = earliest;
    entry.state = kSampleSetIndexed;
  }

 private:
  std::uint64_t Offset(const char *at) const { return static_cast<std::uint64_t>(at - base_); }

  // Checks the sample at `at`, moves `at` past it and returns its time text.
  std::string_view CheckSample(const char *&at, const char *end, std::uint64_t index) {
    const auto position = [&] { return Quoted(SamplePosition(id_, index)); };
    if (*at != '{') RaiseAtOffset(Msg::InvalidJsonObject, -1, position());
    const SampleMembers members = ReadSampleMembers(at, end, timing_.textLength);
    if (members.after == nullptr) Raise(Msg::InvalidSampleSetData, Quoted(id_));
    if (members.time.empty()) Raise(Msg::SampleMissingRequiredPropertyAtPath, Quoted("time"), position());
    if (members.value.empty()) Raise(Msg::SampleMissingRequiredPropertyAtPath, Quoted("value"), position());
    // A time is a plain string: an escape would make its bytes differ from its text.
    const bool isString = members.time.size() >= 2 && members.time.front() == '"';
    const std::string_view time = isString ? members.time.substr(1, members.time.size() - 2) : std::string_view();
    if (!isString || time.find('\\') != std::string_view::npos || !IsReadableTime(timing_, time)) {
      Raise(Msg::InvalidSampleSetTime, position());
    }
    switch (ReadSampleValue(valueType_, members.value, value_)) {
      case ValueFault::None:
        break;
      case ValueFault::Unreadable:
        Raise(Msg::InvalidSampleValue, position());
      case ValueFault::ArrayItemType:
        Raise(Msg::SampleSetInvalidArrayItem, value_.failedItem, Quoted(SamplePosition(id_, index) + "/value"),
              "JSON String");
      case ValueFault::ArrayTooShort:
        Raise(Msg::InvalidNumberArrayCount, position());
      case ValueFault::PaddedTooLong:
        Raise(Msg::InvalidPaddedStringLength);
    }
    at = members.after;
    return time;
  }

  const char *base_;
  std::string_view id_;
  const SampleTiming &timing_;
  const SampleValueType &valueType_;
  std::vector<std::uint64_t> &checkpoints_;  // the index's list, appended to
  DecodedValue value_;
};

void ParseSampleSet(std::string_view compacted, const CompactedItem &item, std::size_t setIndex,
                    const SampleTiming &timing, SampleSetIndex &index) {
  const char *const end = compacted.data() + compacted.size();
  const char *const at = compacted.data() + std::min<std::uint64_t>(item.offset, compacted.size());
  if (at == end || *at != '{') {
    RaiseAtOffset(Msg::InvalidJsonObject, static_cast<std::int64_t>(item.fileOffset), Quoted(SetPath(setIndex)));
  }
  const SetMembers set = ReadSetMembers(at, end, setIndex, item.fileOffset);
  std::string_view idBody;
  bool escaped = false;
  const char *idEnd = set.id.data() + set.id.size();
  if (compact_json::ReadString(set.id.data(), idEnd, idBody, escaped) != idEnd) {
    Raise(Msg::SampleSetInvalidPropertyType, Quoted("sampleSetID"), Quoted("sampleSetID"), "JSON String", set.id);
  }
  std::string idScratch;
  const std::string_view sampleSetId = compact_json::StringText(idBody, escaped, idScratch);
  if (set.samples.empty() || set.samples.front() != '[') {
    Raise(Msg::SampleSetInvalidPropertyType, Quoted("samples"), Quoted("samples"), "JSON Array", Quoted(sampleSetId));
  }
  SampleSetEntry *entry = index.Find(sampleSetId);
  if (entry == nullptr) Raise(Msg::DynamicNodeNotPresent, Quoted(sampleSetId));
  // A second set for the same node, or a node whose type names no sample form.
  if (entry->state != kSampleSetNotSeen || entry->valueType.kind == PX_TYPE_UNKNOWN || !timing.known) {
    Raise(Msg::InvalidSampleSetData, Quoted(sampleSetId));
  }
  // The entry changes only once the whole set has been read.
  SampleSetEntry found = *entry;
  SampleSetReader(compacted, sampleSetId, timing, entry->valueType, index.checkpointList()).Read(set.samples, found);
  *entry = std::move(found);
}

}  // namespace

void ParseSampleSets(std::string_view compacted, const CompactedArray &layout,
                     const SampleTiming &timing, SampleSetIndex &index) {
  for (std::size_t i = 0; i < layout.items.size(); ++i) ParseSampleSet(compacted, layout.items[i], i, timing, index);
}

}  // namespace ns_sensor
