#include "plugin_model/dynamic_nodes.hpp"

#include <algorithm>

#include "plugin_model/group_impl.hpp"
#include "plugin_model/number_text.hpp"

namespace PX_PLUGIN {

using ns_sensor::Msg;

NumberPattern LeastPattern(const NumberPattern &given) {
  return {given.isSigned, std::max(given.digitsInteger, 0), std::max(given.digitsDecimal, 0)};
}

// ---- What every dynamic node has -----------------------------------------------------------

MgjsonDynamicDataImpl::MgjsonDynamicDataImpl(std::shared_ptr<DocumentState> document, NodeNames names)
    : document_(std::move(document)), names_(std::move(names)) {}

MgjsonDynamicDataImpl::~MgjsonDynamicDataImpl() { DropSamples(); }

void MgjsonDynamicDataImpl::SetSampleSetIdOrThrow(std::string id) {
  EnsureLayoutOpen();
  sampleSetId_ = std::move(id);
}

void MgjsonDynamicDataImpl::SetInterpolationOrThrow(std::uint32_t interpolation) {
  if (interpolation != PX_INTERPOLATION_LINEAR && interpolation != PX_INTERPOLATION_HOLD) {
    RaisePluginError(Msg::UnknownKind);
  }
  interpolation_ = interpolation;
}

ISampleSink &MgjsonDynamicDataImpl::Samples() {
  if (!samples_) samples_ = document_->makeSink();
  return *samples_;
}

void MgjsonDynamicDataImpl::EnsureAcceptsSamples() const {
  if (completed_ || !document_->IsOpen()) RaisePluginError(Msg::ObjectModelWrongState);
}

void MgjsonDynamicDataImpl::EnsureLayoutOpen() const {
  if (completed_) RaisePluginError(Msg::ObjectModelWrongState);
}

std::string MgjsonDynamicDataImpl::TimeTextOf(const SampleTime &time) {
  const SampleTimeText &texts = document_->TimeText();
  if (const auto *frame = std::get_if<FrameTime>(&time)) return texts.AtFrame(frame->frame, lastFrame_);
  const auto &utc = std::get<UtcTime>(time);
  return texts.AtUtc(utc.base, utc.offsetNumerator, utc.offsetDenominator, utcBase_);
}

void MgjsonDynamicDataImpl::StoreSample(std::string_view timeText, std::string_view valueText) {
  if (valueText.size() > kLargestSampleValueText) RaisePluginError(Msg::InvalidObjectModelArgument);
  Samples().Add(timeText, valueText);
  ++sampleCount_;
  document_->samplesAdded = true;
}

void MgjsonDynamicDataImpl::DropSamples() noexcept {
  if (samples_) samples_->Clear();
  samples_.reset();
}

void MgjsonDynamicDataImpl::CompleteSamplesOrThrow() {
  if (completed_) return;
  // A sample set whose node is not in the outline makes the file unreadable, and one
  // appended after the outline corrupts it.
  if (!document_->IsOpen() || parent_ == nullptr || !parent_->IsInRootTree()) {
    RaisePluginError(Msg::ObjectModelWrongState);
  }
  if (!sampleSetId_) sampleSetId_ = names_.matchName;
  completed_ = true;
  if (sampleCount_ == 0) {
    DropSamples();
    return;
  }
  try {
    if (document_->writer == nullptr) RaisePluginError(Msg::ObjectModelWrongState);
    document_->writer->WriteSampleSet(*this);
  } catch (...) {
    failed_ = true;
    DropSamples();
    throw;
  }
  written_ = true;
  DropSamples();
}

// ---- Numbers ---------------------------------------------------------------------------------

void MgjsonDynamicDataNumImpl::SetPatternOrThrow(const NumberPattern &least) {
  EnsureLayoutOpen();
  least_ = LeastPattern(least);
}

void MgjsonDynamicDataNumImpl::AddSampleOrThrow(const SampleTime &time, double value) {
  EnsureAcceptsSamples();
  const PlainNumber number = PlainNumberOf(FiniteArgument(value));
  StoreSample(TimeTextOf(time), number.text);
  statistics_.Add(value, number.digits);
}

NumberRange MgjsonDynamicDataNumImpl::Range() const {
  if (range_) return *range_;
  return {statistics_.Extent(), statistics_.Extent()};
}

// ---- Strings ---------------------------------------------------------------------------------

void MgjsonDynamicDataStringImpl::SetPaddedStringPropertiesOrThrow(const PaddedStringProperties &least) {
  EnsureLayoutOpen();
  least_ = least;
}

void MgjsonDynamicDataStringImpl::AddSampleOrThrow(const SampleTime &time, std::string_view text) {
  EnsureAcceptsSamples();
  StoreSample(TimeTextOf(time), EscapeFreeText(text));
  statistics_.Add(text.size());
}

// ---- Number arrays ---------------------------------------------------------------------------

void MgjsonDynamicDataNumArrImpl::SetPatternOrThrow(const NumberPattern &least) {
  EnsureLayoutOpen();
  least_ = LeastPattern(least);
}

void MgjsonDynamicDataNumArrImpl::AddComponentOrThrow(std::string displayName) {
  // Every sample carries one value per component, so the count is fixed by the first.
  if (SampleCount() != 0) RaisePluginError(Msg::ObjectModelWrongState);
  EnsureLayoutOpen();
  components_.push_back({std::move(displayName), std::nullopt, std::nullopt, {}});
}

MgjsonDynamicDataNumArrImpl::Component &MgjsonDynamicDataNumArrImpl::ComponentAt(std::uint32_t index) {
  if (index >= components_.size()) RaisePluginError(Msg::InvalidObjectModelArgument);
  return components_[index];
}

void MgjsonDynamicDataNumArrImpl::SetComponentOccurringRangeOrThrow(std::uint32_t index, const MinMax &range) {
  ComponentAt(index).occurring = range;
}

void MgjsonDynamicDataNumArrImpl::SetComponentLegalRangeOrThrow(std::uint32_t index, const MinMax &range) {
  ComponentAt(index).legal = range;
}

void MgjsonDynamicDataNumArrImpl::AddSampleOrThrow(const SampleTime &time, std::span<const double> values) {
  EnsureAcceptsSamples();
  if (values.empty() || values.size() != components_.size()) {
    RaisePluginError(Msg::InvalidObjectModelArgument);
  }
  std::vector<NumberDigits> digits;
  digits.reserve(values.size());
  std::string joined;
  for (const double value : values) {
    const PlainNumber number = PlainNumberOf(FiniteArgument(value));
    if (!joined.empty()) joined += ',';
    joined += number.text;
    digits.push_back(number.digits);
  }
  StoreSample(TimeTextOf(time), joined);
  for (std::size_t i = 0; i < values.size(); ++i) {
    statistics_.Add(values[i], digits[i]);
    components_[i].statistics.Add(values[i], digits[i]);
  }
}

NumberArrayProperties MgjsonDynamicDataNumArrImpl::Properties() const {
  NumberArrayProperties properties;
  properties.pattern = statistics_.Widen(least_);
  properties.isPoint = isPoint_;
  for (const Component &component : components_) {
    const MinMax occurring = component.occurring.value_or(component.statistics.Extent());
    properties.ranges.push_back({occurring, component.legal.value_or(occurring)});
    properties.displayNames.push_back(component.displayName);
  }
  return properties;
}

}  // namespace PX_PLUGIN
