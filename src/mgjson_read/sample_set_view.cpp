#include "mgjson_read/sample_set_view.hpp"

#include <algorithm>
#include <string>

#include "api/px_exception.hpp"
#include "mgjson_read/compact_json.hpp"

namespace ns_sensor {
namespace {

// Most samples begin with their time, as every writer of ours puts it.
constexpr std::string_view kTimeFirst = "{\"time\":\"";

}  // namespace

SampleSetView::SampleSetView(const SampleSetEntry &entry, std::string_view sampleSetId,
                             std::string_view compacted)
    : entry_(&entry), id_(sampleSetId), base_(compacted.data()), end_(compacted.data() + compacted.size()) {}

void SampleSetView::FailAt(std::uint64_t index) const {
  Raise(Msg::InvalidSample, Quoted("sampleSetID:" + std::string(id_) + "/sample[" + std::to_string(index) + "]"));
}

void SampleSetView::LoadBlock(std::uint64_t block) {
  const std::uint64_t first = block * kSamplesPerCheckpoint;
  const std::uint64_t size = std::min<std::uint64_t>(kSamplesPerCheckpoint, entry_->count - first);
  std::uint64_t offset = entry_->checkpoints[block];
  for (std::uint64_t i = 0; i < size; ++i) {
    if (i != 0) {
      // Neighbouring samples are separated by one ",".
      if (base_ + offset == end_ || base_[offset] != ',') FailAt(first + i);
      ++offset;
    }
    const char *after = compact_json::SkipValue(base_ + offset, end_);
    if (after == nullptr) FailAt(first + i);
    starts_[i] = offset;
    ends_[i] = static_cast<std::uint64_t>(after - base_);
    offset = ends_[i];
  }
  block_ = block;
  blockSize_ = size;
}

const char *SampleSetView::Start(std::uint64_t index) {
  if (index >= entry_->count) FailAt(index);
  const std::uint64_t block = index / kSamplesPerCheckpoint;
  if (block == block_) return base_ + starts_[index % kSamplesPerCheckpoint];
  if (index == lastIndex_ + 1 && lastIndex_ != UINT64_MAX) {
    if (base_ + lastEnd_ == end_ || base_[lastEnd_] != ',') FailAt(index);
    return base_ + lastEnd_ + 1;
  }
  if (index % kSamplesPerCheckpoint == 0) return base_ + entry_->checkpoints[block];
  LoadBlock(block);
  return base_ + starts_[index % kSamplesPerCheckpoint];
}

void SampleSetView::Finished(std::uint64_t index, const char *after) {
  lastIndex_ = index;
  lastEnd_ = static_cast<std::uint64_t>(after - base_);
}

std::string_view SampleSetView::Sample(std::uint64_t index) {
  const char *start = Start(index);
  const char *after = compact_json::SkipValue(start, end_);
  if (after == nullptr) FailAt(index);
  Finished(index, after);
  return std::string_view(start, static_cast<std::size_t>(after - start));
}

std::string_view SampleSetView::TimeOf(std::string_view sample, std::uint64_t index) const {
  if (sample.starts_with(kTimeFirst)) {
    const std::string_view rest = sample.substr(kTimeFirst.size());
    const std::size_t closing = rest.find('"');
    if (closing != std::string_view::npos) return rest.substr(0, closing);
  }
  compact_json::MemberReader members(sample.data(), sample.data() + sample.size());
  std::string_view key;
  std::string_view value;
  while (members.Next(key, value)) {
    if (key == "time" && value.size() >= 2 && value.front() == '"') return value.substr(1, value.size() - 2);
  }
  FailAt(index);
}

std::string_view SampleSetView::Time(std::uint64_t index) { return TimeOf(Sample(index), index); }

}  // namespace ns_sensor
