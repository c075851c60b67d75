#include "mgjson_read/sample_reader.hpp"

#include <new>

#include "api/px_exception.hpp"
#include "mgjson_read/sample_members.hpp"

namespace ns_sensor {
namespace {

[[noreturn]] void RaiseNoMemory(std::string_view sampleSetId) {
  Raise(Msg::SampleMemoryNotAvailable, "sample set id:" + std::string(sampleSetId));
}

// a > b for two times with non-zero denominators, exactly.
bool IsAfter(RationalTime a, RationalTime b) {
  return std::uint64_t{a.numerator} * b.denominator > std::uint64_t{b.numerator} * a.denominator;
}

bool PassesRangeCheck(const SampleSetEntry &entry, std::uint64_t regionSize) {
  const std::uint64_t count = entry.count;
  if (!entry.declaredCount || *entry.declaredCount != count || count == 0) return false;
  if (entry.checkpoints.size() != (count + kSamplesPerCheckpoint - 1) / kSamplesPerCheckpoint) return false;
  if (entry.start >= entry.end || entry.end > regionSize) return false;
  constexpr std::uint64_t kBase = 0;  // the compacted text is the region
  std::uint64_t last = 0;
  return !__builtin_mul_overflow(count - 1, entry.stride, &last) &&
         !__builtin_add_overflow(last, kBase + entry.start, &last) &&
         !__builtin_add_overflow(last, count - 1, &last) && last < regionSize;
}

}  // namespace

// ---- Cursor ----------------------------------------------------------------------------

void SampleCursor::Add(const Segment &segment) {
  if (segment.length == 0) return;
  segments_[segmentCount_] = segment;
  segments_[segmentCount_].scanAt = segment.first;
  ++segmentCount_;
  count_ += segment.length;
}

bool SampleCursor::WithinTimes(std::uint64_t index) {
  const std::string_view time = view_.Time(index);
  return CompareTimes(*timing_, time, lowText_) >= 0 && CompareTimes(*timing_, time, highText_) <= 0;
}

bool SampleCursor::Advance(std::uint64_t &index) {
  while (current_ < segmentCount_) {
    Segment &segment = segments_[current_];
    if (yielded_ == segment.length) {
      ++current_;
      yielded_ = 0;
      continue;
    }
    if (!segment.filtered) {
      index = segment.backward ? segment.first - yielded_ : segment.first + yielded_;
      ++yielded_;
      return true;
    }
    while (segment.scanAt < segment.scanEnd) {
      const std::uint64_t candidate = segment.scanAt++;
      if (WithinTimes(candidate)) {
        index = candidate;
        ++yielded_;
        return true;
      }
    }
    yielded_ = segment.length;  // counted when the cursor was made; cannot run short
  }
  return false;
}

void SampleCursor::Skip(std::uint64_t samples) {
  try {
    std::uint64_t index = 0;
    while (samples != 0 && current_ < segmentCount_) {
      Segment &segment = segments_[current_];
      if (!segment.filtered && yielded_ < segment.length) {
        const std::uint64_t passed = std::min(samples, segment.length - yielded_);
        yielded_ += passed;
        samples -= passed;
        continue;
      }
      if (!Advance(index)) return;
      --samples;
    }
  } catch (const std::bad_alloc &) {
    RaiseNoMemory(view_.sampleSetId());
  }
}

void SampleCursor::Decode(std::uint64_t index, SampleView &sample) {
  const SampleMembers members = ReadSampleMembers(view_.Start(index), view_.textEnd(), timing_->textLength);
  // The time passed IsReadableTime when the file was opened; its length guards the rest.
  if (members.after == nullptr || members.value.empty() || members.time.size() != timing_->textLength + 2) {
    view_.FailAt(index);
  }
  view_.Finished(index, members.after);
  if (ReadSampleValue(view_.entry().valueType, members.value, value_) != ValueFault::None) view_.FailAt(index);
  const std::string_view time = members.time.substr(1, timing_->textLength);
  sample.index = index;
  sample.time = time;
  sample.seconds = seconds_.Of(time);
  sample.kind = view_.entry().valueType.kind;
  sample.numbers = value_.numbers;
  sample.text = value_.text;
}

bool SampleCursor::Next(SampleView &sample) {
  try {
    std::uint64_t index = 0;
    if (!Advance(index)) return false;
    Decode(index, sample);
    return true;
  } catch (const std::bad_alloc &) {
    RaiseNoMemory(view_.sampleSetId());
  }
}

// ---- Selection -------------------------------------------------------------------------

const SampleSetEntry &SampleReader::CheckedEntry(std::string_view sampleSetId, std::string_view *storedId) const {
  std::string_view stored;
  const SampleSetEntry *entry = index_->Find(sampleSetId, stored);
  if (entry == nullptr) Raise(Msg::SampleIdNotFound, Quoted(sampleSetId));
  if (entry->state == kSampleSetNotSeen) Raise(Msg::SamplesNotFound, Quoted(sampleSetId));
  if (!PassesRangeCheck(*entry, compacted_.size())) Raise(Msg::InvalidSampleSetInfo, Quoted(sampleSetId));
  if (storedId != nullptr) *storedId = stored;
  return *entry;
}

SampleCursor SampleReader::SelectBetween(std::string_view sampleSetId, RationalTime start, RationalTime end,
                                         bool withNeighbours) const {
  if (start.denominator == 0) Raise(Msg::ZeroScaleValue, Quoted("startTime"));
  if (end.denominator == 0) Raise(Msg::ZeroScaleValue, Quoted("endTime"));
  std::string_view storedId;
  const SampleSetEntry &entry = CheckedEntry(sampleSetId, &storedId);
  try {
    SampleCursor cursor(SampleSetView(entry, storedId, compacted_), *timing_, *axis_);
    const bool descending = IsAfter(start, end);
    cursor.lowText_ = SecondsToSearchText(*axis_, descending ? end : start, TimeRounding::Later);
    cursor.highText_ = SecondsToSearchText(*axis_, descending ? start : end, TimeRounding::Earlier);
    const SampleTiming &timing = *timing_;
    const std::string &low = cursor.lowText_;
    const std::string &high = cursor.highText_;
    SampleSetView &view = cursor.view_;
    const std::uint64_t count = entry.count;
    if (entry.order == SampleOrder::Unordered) {
      std::uint64_t within = 0;
      std::uint64_t before = count;  // the latest sample before the times, count when none
      std::uint64_t after = count;   // the earliest after them
      std::string_view beforeTime;
      std::string_view afterTime;
      for (std::uint64_t i = 0; i < count; ++i) {
        const std::string_view time = view.Time(i);
        if (CompareTimes(timing, time, low) < 0) {
          if (before == count || CompareTimes(timing, time, beforeTime) > 0) before = i, beforeTime = time;
        } else if (CompareTimes(timing, time, high) > 0) {
          if (after == count || CompareTimes(timing, time, afterTime) < 0) after = i, afterTime = time;
        } else {
          ++within;
        }
      }
      if (withNeighbours && before != count) cursor.Add({.first = before, .length = 1});
      cursor.Add({.first = 0, .length = within, .filtered = true, .scanEnd = count});
      if (withNeighbours && after != count) cursor.Add({.first = after, .length = 1});
      return cursor;
    }
    // Monotonic: the selected samples are one run of indices [first, last).
    std::uint64_t first = 0;
    std::uint64_t last = 0;
    if (entry.order == SampleOrder::Ascending) {
      first = view.PartitionPoint([&](std::string_view t) { return CompareTimes(timing, t, low) >= 0; });
      last = view.PartitionPoint([&](std::string_view t) { return CompareTimes(timing, t, high) > 0; });
    } else {
      first = view.PartitionPoint([&](std::string_view t) { return CompareTimes(timing, t, high) <= 0; });
      last = view.PartitionPoint([&](std::string_view t) { return CompareTimes(timing, t, low) < 0; });
    }
    last = std::max(first, last);  // empty when no representable time lies between the two
    if (withNeighbours) {
      if (first > 0) --first;
      if (last < count) ++last;
    }
    cursor.reversed_ = descending;
    const bool forward = (entry.order == SampleOrder::Ascending) != descending;
    cursor.Add(forward ? SampleCursor::Segment{.first = first, .length = last - first}
                       : SampleCursor::Segment{.first = last - 1, .length = last - first, .backward = true});
    return cursor;
  } catch (const std::bad_alloc &) {
    RaiseNoMemory(sampleSetId);
  }
}

SampleCursor SampleReader::SelectByIndex(std::string_view sampleSetId, std::uint64_t first,
                                         std::uint64_t count) const {
  std::string_view storedId;
  const SampleSetEntry &entry = CheckedEntry(sampleSetId, &storedId);
  SampleCursor cursor(SampleSetView(entry, storedId, compacted_), *timing_, *axis_);
  cursor.reversed_ = entry.order == SampleOrder::Descending;
  if (first < entry.count) cursor.Add({.first = first, .length = std::min(count, entry.count - first)});
  return cursor;
}

}  // namespace ns_sensor
