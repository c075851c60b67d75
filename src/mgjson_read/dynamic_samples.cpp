#include "mgjson_read/dynamic_samples.hpp"

#include <utility>

#include "mgjson_read/sample_set_parser.hpp"

namespace ns_sensor {

void DynamicSamples::IndexOutline(const JsonValue &outline) { index_.Build(outline); }

void DynamicSamples::Compact(std::string_view arrayText, std::uint64_t fileOffset) {
  // A repeated "dataDynamicSamples" replaces the first; the index views no text of it.
  index_.ForgetSamples();
  file_.reset();
  layout_ = {};
  auto file = std::make_unique<CompactedSampleFile>();
  CompactedSampleFile &target = *file;
  layout_ = CompactJsonArray(arrayText, fileOffset, [&target](std::string_view chunk) { target.Append(chunk); });
  target.FinishWriting();
  file_ = std::move(file);
}

void DynamicSamples::Complete(const SampleTiming &timing) {
  timing_ = timing;
  axis_ = TimeAxis{};
  axis_.timecode = timing.timecode;
  axis_.rate = timing.rate;
  axis_.precision = timing.precision;
  originText_.clear();
  if (!file_) return;
  ParseSampleSets(file_->text(), layout_, timing_, index_);
  index_.SealCheckpoints();
  if (timing_.timecode) return;
  index_.ForEach([this](std::string_view, const SampleSetEntry &entry) {
    if (entry.state != kSampleSetIndexed) return;
    if (originText_.empty() || CompareTimes(timing_, entry.earliestTime, originText_) < 0) {
      originText_ = entry.earliestTime;
    }
  });
  // Checked by the sample-set parse, so it reads.
  if (!originText_.empty()) (void)ParseUtcTime(originText_, timing_.precision, axis_.origin);
}

void DynamicSamples::Drop() noexcept {
  file_.reset();
  layout_ = {};
  originText_.clear();
  index_.ForgetSamples();
}

}  // namespace ns_sensor
