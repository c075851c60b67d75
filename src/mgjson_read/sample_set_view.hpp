// Random access to the samples of one indexed sample set, in the compacted text: sample i
// is found from the nearest checkpoint the index kept (one per 64 samples) by passing
// over fewer than 64 samples. The offsets of the last block of 64 found so are kept, and
// the sample after the one read last starts right after it, so walking a set backwards
// or forwards costs about the same per sample as one pass over its text.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "mgjson_read/sample_index.hpp"

namespace ns_sensor {

class SampleSetView {
 public:
  // The entry must have passed the range check against `compacted`; its ID names the
  // set in faults.
  SampleSetView(const SampleSetEntry &entry, std::string_view sampleSetId, std::string_view compacted);

  std::uint64_t count() const { return entry_->count; }
  const SampleSetEntry &entry() const { return *entry_; }
  std::string_view sampleSetId() const { return id_; }

  // The compacted text of sample i (below count()). Raises InvalidSample (39) when the
  // text there is not a sample.
  std::string_view Sample(std::uint64_t index);

  // For a reader that finds the end of sample i itself: where the sample starts (the
  // text runs on to the end of the compacted text), then Finished with where it ended.
  const char *Start(std::uint64_t index);
  void Finished(std::uint64_t index, const char *after);
  const char *textEnd() const { return end_; }
  // The time text of sample i.
  std::string_view Time(std::uint64_t index);

  // The first index whose time makes `holds` true, for a predicate that is false for a
  // leading part of the set and true for the rest; count() when it is never true. Takes
  // O(log n) time reads over the checkpoints plus O(log 64) inside one block.
  template <typename Predicate>
  std::uint64_t PartitionPoint(Predicate holds);

  // Raises InvalidSample for sample i.
  [[noreturn]] void FailAt(std::uint64_t index) const;

 private:
  void LoadBlock(std::uint64_t block);
  std::string_view TimeOf(std::string_view sample, std::uint64_t index) const;

  const SampleSetEntry *entry_;
  std::string_view id_;
  const char *base_;
  const char *end_;

  std::uint64_t block_ = UINT64_MAX;  // the block whose offsets are kept
  // The sample read last: the next one starts right after it.
  std::uint64_t lastIndex_ = UINT64_MAX;
  std::uint64_t lastEnd_ = 0;
  std::uint64_t blockSize_ = 0;
  std::array<std::uint64_t, kSamplesPerCheckpoint> starts_{};
  std::array<std::uint64_t, kSamplesPerCheckpoint> ends_{};
};

template <typename Predicate>
std::uint64_t SampleSetView::PartitionPoint(Predicate holds) {
  const std::uint64_t checkpoints = entry_->checkpoints.size();
  // The first checkpoint whose sample holds.
  std::uint64_t low = 0;
  std::uint64_t high = checkpoints;
  while (low < high) {
    const std::uint64_t middle = low + (high - low) / 2;
    if (holds(Time(middle * kSamplesPerCheckpoint))) {
      high = middle;
    } else {
      low = middle + 1;
    }
  }
  if (low == 0) return 0;
  // The answer lies after the start of the block before: its first sample does not hold.
  const std::uint64_t block = low - 1;
  LoadBlock(block);
  std::uint64_t first = 1;
  std::uint64_t last = blockSize_;
  while (first < last) {
    const std::uint64_t middle = first + (last - first) / 2;
    if (holds(Time(block * kSamplesPerCheckpoint + middle))) {
      last = middle;
    } else {
      first = middle + 1;
    }
  }
  return block * kSamplesPerCheckpoint + first;
}

}  // namespace ns_sensor
