// The library's views of the dynamic data nodes: the raising forms of their operations,
// what the writer reads, and the `_v1` operations as statuses around the raising forms.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "plugin_model/sample_sink.hpp"
#include "plugin_model/static_interfaces.hpp"

namespace PX_PLUGIN {

class IMgjsonDynamicData_I : public virtual IMgjsonDynamicData_v1 {
 public:
  virtual void SetNamesOrThrow(NodeNames names) = 0;
  virtual void SetSampleSetIdOrThrow(std::string id) = 0;
  virtual void SetInterpolationOrThrow(std::uint32_t interpolation) = 0;
  virtual void SetHasExpectedFrequencyOrThrow(bool hasExpectedFrequency) = 0;
  virtual void SetExpectedMaxInterSampleDurationOrThrow(std::optional<std::string> duration) = 0;
  virtual void CompleteSamplesOrThrow() = 0;

  virtual const NodeNames &Names() const = 0;
  // The ID given, else the match name (fixed when the sample set is written).
  virtual const std::string &SampleSetId() const = 0;
  virtual std::uint32_t Interpolation() const = 0;  // PX_Interpolation
  virtual bool HasExpectedFrequency() const = 0;
  virtual std::uint64_t SampleCount() const = 0;
  virtual const std::optional<std::string> &ExpectedMaxInterSampleDuration() const = 0;  // escaped
  // The samples in the order of adding: time texts, and value texts (numbers in plain
  // decimal, not yet widened; number arrays joined by ","; strings escaped, whose length
  // for "length" is UnescapedLength of the text). Empty once the sample set was written.
  virtual ISampleSink &Samples() = 0;
  virtual bool IsCompleted() const = 0;  // CompleteSamples ran (or commit ran it)
  virtual bool IsWritten() const = 0;    // its sample set is in the file
  virtual bool IsFailed() const = 0;     // writing its sample set failed
  // Whether the outline leaves the node out: its sample set failed. (A node without
  // samples is left out as well, for having nothing to show.)
  virtual bool IsLeftOut() const = 0;

  std::uint32_t SetNames(const char *displayName, std::uint32_t displayNameLength,
                         const char *matchName, std::uint32_t matchNameLength,
                         PX_PluginError *error) final {
    return RunWithStatus(error, [&] {
      SetNamesOrThrow({FreeTextArgument(displayName, displayNameLength), MatchNameArgument(matchName, matchNameLength)});
    });
  }
  std::uint32_t SetSampleSetId(const char *id, std::uint32_t idLength, PX_PluginError *error) final {
    return RunWithStatus(error, [&] { SetSampleSetIdOrThrow(FreeTextArgument(id, idLength)); });
  }
  std::uint32_t SetInterpolation(std::uint32_t interpolation, PX_PluginError *error) final {
    return RunWithStatus(error, [&] { SetInterpolationOrThrow(interpolation); });
  }
  std::uint32_t SetHasExpectedFrequency(std::uint32_t hasExpectedFrequency, PX_PluginError *error) final {
    return RunWithStatus(error, [&] { SetHasExpectedFrequencyOrThrow(FlagArgument(hasExpectedFrequency)); });
  }
  std::uint32_t SetExpectedMaxInterSampleDuration(const char *duration, std::uint32_t durationLength,
                                                  PX_PluginError *error) final {
    return RunWithStatus(error, [&] {
      if (duration == nullptr && durationLength == 0) {
        SetExpectedMaxInterSampleDurationOrThrow(std::nullopt);
      } else {
        SetExpectedMaxInterSampleDurationOrThrow(FreeTextArgument(duration, durationLength));
      }
    });
  }
  std::uint32_t CompleteSamples(PX_PluginError *error) final {
    return RunWithStatus(error, [&] { CompleteSamplesOrThrow(); });
  }
};

// Where a sample's time comes from.
struct FrameTime {
  std::uint64_t frame;
};
struct UtcTime {
  std::string_view base;
  std::uint32_t offsetNumerator;
  std::uint32_t offsetDenominator;
};
using SampleTime = std::variant<FrameTime, UtcTime>;

class IMgjsonDynamicDataNum_I : public virtual IMgjsonDynamicDataNum_v1,
                                public virtual IMgjsonDynamicData_I,
                                public virtual ISharedObject_I {
 public:
  virtual void SetPatternOrThrow(const NumberPattern &least) = 0;
  virtual void SetRangesOrThrow(const NumberRange &range) = 0;
  virtual void AddSampleOrThrow(const SampleTime &time, double value) = 0;

  virtual NumberPattern Pattern() const = 0;  // the least pattern widened by the samples
  virtual NumberRange Range() const = 0;

  std::uint32_t SetPattern(std::uint32_t isSigned, std::int32_t digitsInteger,
                           std::int32_t digitsDecimal, PX_PluginError *error) final {
    return RunWithStatus(error, [&] { SetPatternOrThrow(PatternArgument(isSigned, digitsInteger, digitsDecimal)); });
  }
  std::uint32_t SetRanges(double occurringMin, double occurringMax, double legalMin,
                          double legalMax, PX_PluginError *error) final {
    return RunWithStatus(error, [&] {
      SetRangesOrThrow({MinMaxArgument(occurringMin, occurringMax), MinMaxArgument(legalMin, legalMax)});
    });
  }
  std::uint32_t AddSampleAtFrame(std::uint64_t frame, double value, PX_PluginError *error) final {
    return RunWithStatus(error, [&] { AddSampleOrThrow(FrameTime{frame}, value); });
  }
  std::uint32_t AddSampleAtUtc(const char *utcBase, std::uint32_t utcBaseLength,
                               std::uint32_t offsetNumerator, std::uint32_t offsetDenominator,
                               double value, PX_PluginError *error) final {
    return RunWithStatus(error, [&] {
      AddSampleOrThrow(UtcTime{TextArgument(utcBase, utcBaseLength), offsetNumerator, offsetDenominator}, value);
    });
  }
  std::uint64_t GetSampleCount() final { return SampleCount(); }
};

class IMgjsonDynamicDataString_I : public virtual IMgjsonDynamicDataString_v1,
                                   public virtual IMgjsonDynamicData_I,
                                   public virtual ISharedObject_I {
 public:
  virtual void SetPaddedStringPropertiesOrThrow(const PaddedStringProperties &least) = 0;
  virtual void AddSampleOrThrow(const SampleTime &time, std::string_view text) = 0;

  virtual PaddedStringProperties Properties() const = 0;  // the least widened by the samples

  std::uint32_t SetPaddedStringProperties(std::uint32_t maxLength, std::uint32_t maxDigitsInLength,
                                          std::uint32_t eventMarker, PX_PluginError *error) final {
    return RunWithStatus(error, [&] {
      SetPaddedStringPropertiesOrThrow({maxLength, maxDigitsInLength, FlagArgument(eventMarker)});
    });
  }
  std::uint32_t AddSampleAtFrame(std::uint64_t frame, const char *text, std::uint32_t textLength,
                                 PX_PluginError *error) final {
    return RunWithStatus(error, [&] { AddSampleOrThrow(FrameTime{frame}, TextArgument(text, textLength)); });
  }
  std::uint32_t AddSampleAtUtc(const char *utcBase, std::uint32_t utcBaseLength,
                               std::uint32_t offsetNumerator, std::uint32_t offsetDenominator,
                               const char *text, std::uint32_t textLength, PX_PluginError *error) final {
    return RunWithStatus(error, [&] {
      AddSampleOrThrow(UtcTime{TextArgument(utcBase, utcBaseLength), offsetNumerator, offsetDenominator},
                       TextArgument(text, textLength));
    });
  }
  std::uint64_t GetSampleCount() final { return SampleCount(); }
};

class IMgjsonDynamicDataNumArr_I : public virtual IMgjsonDynamicDataNumArr_v1,
                                   public virtual IMgjsonDynamicData_I,
                                   public virtual ISharedObject_I {
 public:
  virtual void SetPatternOrThrow(const NumberPattern &least) = 0;
  virtual void AddComponentOrThrow(std::string displayName) = 0;
  virtual void SetComponentOccurringRangeOrThrow(std::uint32_t index, const MinMax &range) = 0;
  virtual void SetComponentLegalRangeOrThrow(std::uint32_t index, const MinMax &range) = 0;
  virtual void SetPointOrThrow(bool isPoint) = 0;
  virtual void AddSampleOrThrow(const SampleTime &time, std::span<const double> values) = 0;

  virtual std::uint32_t ComponentCount() const = 0;
  virtual NumberArrayProperties Properties() const = 0;  // pattern widened by the samples

  std::uint32_t SetPattern(std::uint32_t isSigned, std::int32_t digitsInteger,
                           std::int32_t digitsDecimal, PX_PluginError *error) final {
    return RunWithStatus(error, [&] { SetPatternOrThrow(PatternArgument(isSigned, digitsInteger, digitsDecimal)); });
  }
  std::uint32_t AddComponent(const char *displayName, std::uint32_t displayNameLength,
                             PX_PluginError *error) final {
    return RunWithStatus(error, [&] { AddComponentOrThrow(FreeTextArgument(displayName, displayNameLength)); });
  }
  std::uint32_t SetComponentOccurringRange(std::uint32_t index, double min, double max,
                                           PX_PluginError *error) final {
    return RunWithStatus(error, [&] { SetComponentOccurringRangeOrThrow(index, MinMaxArgument(min, max)); });
  }
  std::uint32_t SetComponentLegalRange(std::uint32_t index, double min, double max,
                                       PX_PluginError *error) final {
    return RunWithStatus(error, [&] { SetComponentLegalRangeOrThrow(index, MinMaxArgument(min, max)); });
  }
  std::uint32_t SetPoint(std::uint32_t isPoint, PX_PluginError *error) final {
    return RunWithStatus(error, [&] { SetPointOrThrow(FlagArgument(isPoint)); });
  }
  std::uint32_t GetComponentCount() final { return ComponentCount(); }
  std::uint32_t AddSampleAtFrame(std::uint64_t frame, const double *values, std::uint32_t valueCount,
                                 PX_PluginError *error) final {
    return RunWithStatus(error, [&] { AddSampleOrThrow(FrameTime{frame}, ValuesArgument(values, valueCount)); });
  }
  std::uint32_t AddSampleAtUtc(const char *utcBase, std::uint32_t utcBaseLength,
                               std::uint32_t offsetNumerator, std::uint32_t offsetDenominator,
                               const double *values, std::uint32_t valueCount,
                               PX_PluginError *error) final {
    return RunWithStatus(error, [&] {
      AddSampleOrThrow(UtcTime{TextArgument(utcBase, utcBaseLength), offsetNumerator, offsetDenominator},
                       ValuesArgument(values, valueCount));
    });
  }
  std::uint64_t GetSampleCount() final { return SampleCount(); }

 private:
  static std::span<const double> ValuesArgument(const double *values, std::uint32_t count) {
    if (values == nullptr && count != 0) RaisePluginError(ns_sensor::Msg::InvalidObjectModelArgument);
    return {values, count};
  }
};

}  // namespace PX_PLUGIN
