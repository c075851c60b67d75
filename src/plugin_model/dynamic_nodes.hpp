// The library's dynamic data nodes. Samples become text as they arrive (time text from
// the document's time information, values in plain decimal or escaped) and go to the
// node's sample sink; what the outline needs of them is gathered alongside.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "plugin_model/document_state.hpp"
#include "plugin_model/dynamic_interfaces.hpp"
#include "plugin_model/value_statistics.hpp"

namespace PX_PLUGIN {

class MgjsonGroupImpl;

// What every dynamic node has: names, sample set properties, the samples and where the
// node stands (in a tree, completed, written or failed).
class MgjsonDynamicDataImpl : public virtual IMgjsonDynamicData_I {
 public:
  void SetNamesOrThrow(NodeNames names) override { names_ = std::move(names); }
  void SetSampleSetIdOrThrow(std::string id) override;
  void SetInterpolationOrThrow(std::uint32_t interpolation) override;
  void SetHasExpectedFrequencyOrThrow(bool hasExpectedFrequency) override {
    hasExpectedFrequency_ = hasExpectedFrequency;
  }
  void SetExpectedMaxInterSampleDurationOrThrow(std::optional<std::string> duration) override {
    maxInterSampleDuration_ = std::move(duration);
  }
  void CompleteSamplesOrThrow() override;

  const NodeNames &Names() const override { return names_; }
  const std::string &SampleSetId() const override { return sampleSetId_ ? *sampleSetId_ : names_.matchName; }
  std::uint32_t Interpolation() const override { return interpolation_; }
  bool HasExpectedFrequency() const override { return hasExpectedFrequency_; }
  std::uint64_t SampleCount() const override { return sampleCount_; }
  const std::optional<std::string> &ExpectedMaxInterSampleDuration() const override {
    return maxInterSampleDuration_;
  }
  ISampleSink &Samples() override;
  bool IsCompleted() const override { return completed_; }
  bool IsWritten() const override { return written_; }
  bool IsFailed() const override { return failed_; }
  bool IsLeftOut() const override { return failed_; }

  std::uint64_t DocumentTag() const { return document_->tag; }
  MgjsonGroupImpl *Parent() const { return parent_; }
  void SetParent(MgjsonGroupImpl *parent) { parent_ = parent; }

 protected:
  MgjsonDynamicDataImpl(std::shared_ptr<DocumentState> document, NodeNames names);
  ~MgjsonDynamicDataImpl() override;

  // Refuses (2031) once the samples are complete or the document is closed.
  void EnsureAcceptsSamples() const;
  // Refuses (2031) changes of what the sample texts were made with, once they are written.
  void EnsureLayoutOpen() const;
  std::string TimeTextOf(const SampleTime &time);
  // Keeps one sample; the value text must fit a record (2029 otherwise).
  void StoreSample(std::string_view timeText, std::string_view valueText);

 private:
  void DropSamples() noexcept;

  std::shared_ptr<DocumentState> document_;
  NodeNames names_;
  std::optional<std::string> sampleSetId_;
  std::uint32_t interpolation_ = PX_INTERPOLATION_LINEAR;
  bool hasExpectedFrequency_ = false;
  std::optional<std::string> maxInterSampleDuration_;
  std::unique_ptr<ISampleSink> samples_;
  std::uint64_t sampleCount_ = 0;
  UtcBaseCache utcBase_;
  FrameTextCache lastFrame_;
  MgjsonGroupImpl *parent_ = nullptr;
  bool completed_ = false;
  bool written_ = false;
  bool failed_ = false;
};

class MgjsonDynamicDataNumImpl : public virtual IMgjsonDynamicDataNum_I,
                                 public virtual MgjsonDynamicDataImpl,
                                 public virtual SharedObjectImpl {
 public:
  MgjsonDynamicDataNumImpl(std::shared_ptr<DocumentState> document, NodeNames names)
      : MgjsonDynamicDataImpl(std::move(document), std::move(names)) {}

  std::uint32_t GetKind() override { return PX_DYNAMIC_NUMBER; }
  void SetPatternOrThrow(const NumberPattern &least) override;
  void SetRangesOrThrow(const NumberRange &range) override { range_ = range; }
  void AddSampleOrThrow(const SampleTime &time, double value) override;
  NumberPattern Pattern() const override { return statistics_.Widen(least_); }
  NumberRange Range() const override;

 private:
  NumberPattern least_;
  std::optional<NumberRange> range_;
  NumberStatistics statistics_;
};

class MgjsonDynamicDataStringImpl : public virtual IMgjsonDynamicDataString_I,
                                    public virtual MgjsonDynamicDataImpl,
                                    public virtual SharedObjectImpl {
 public:
  MgjsonDynamicDataStringImpl(std::shared_ptr<DocumentState> document, NodeNames names)
      : MgjsonDynamicDataImpl(std::move(document), std::move(names)) {}

  std::uint32_t GetKind() override { return PX_DYNAMIC_STRING; }
  void SetPaddedStringPropertiesOrThrow(const PaddedStringProperties &least) override;
  void AddSampleOrThrow(const SampleTime &time, std::string_view text) override;
  PaddedStringProperties Properties() const override { return statistics_.Widen(least_); }

 private:
  PaddedStringProperties least_;
  TextStatistics statistics_;
};

class MgjsonDynamicDataNumArrImpl : public virtual IMgjsonDynamicDataNumArr_I,
                                    public virtual MgjsonDynamicDataImpl,
                                    public virtual SharedObjectImpl {
 public:
  MgjsonDynamicDataNumArrImpl(std::shared_ptr<DocumentState> document, NodeNames names)
      : MgjsonDynamicDataImpl(std::move(document), std::move(names)) {}

  std::uint32_t GetKind() override { return PX_DYNAMIC_NUMBER_ARRAY; }
  void SetPatternOrThrow(const NumberPattern &least) override;
  void AddComponentOrThrow(std::string displayName) override;
  void SetComponentOccurringRangeOrThrow(std::uint32_t index, const MinMax &range) override;
  void SetComponentLegalRangeOrThrow(std::uint32_t index, const MinMax &range) override;
  void SetPointOrThrow(bool isPoint) override { isPoint_ = isPoint; }
  void AddSampleOrThrow(const SampleTime &time, std::span<const double> values) override;
  std::uint32_t ComponentCount() const override { return static_cast<std::uint32_t>(components_.size()); }
  NumberArrayProperties Properties() const override;

 private:
  struct Component {
    std::string displayName;  // escaped
    std::optional<MinMax> occurring;
    std::optional<MinMax> legal;
    NumberStatistics statistics;
  };
  Component &ComponentAt(std::uint32_t index);

  NumberPattern least_;
  std::vector<Component> components_;
  NumberStatistics statistics_;  // of every value, for the one pattern of the array
  bool isPoint_ = false;
};

// A pattern given as a least pattern: negative digit counts count as 0.
NumberPattern LeastPattern(const NumberPattern &given);

}  // namespace PX_PLUGIN
