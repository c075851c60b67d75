// The library's views of the static data nodes: the raising forms of their operations,
// what the writer reads, and the `_v1` operations as statuses around the raising forms.
#pragma once

#include <cstdint>
#include <vector>

#include "plugin_model/model_records.hpp"
#include "plugin_model/plugin_status.hpp"
#include "plugin_model/shared_object.hpp"
#include "plugin_model/text_arguments.hpp"

namespace PX_PLUGIN {

// A pattern as a converter gives it.
inline NumberPattern PatternArgument(std::uint32_t isSigned, std::int32_t digitsInteger,
                                     std::int32_t digitsDecimal) {
  return {FlagArgument(isSigned), digitsInteger, digitsDecimal};
}

inline MinMax MinMaxArgument(double min, double max) {
  return {FiniteArgument(min), FiniteArgument(max)};
}

class IMgjsonStaticDataNum_I : public virtual IMgjsonStaticDataNum_v1, public virtual ISharedObject_I {
 public:
  virtual void SetPatternOrThrow(const NumberPattern &pattern) = 0;
  virtual void SetRangesOrThrow(const NumberRange &range) = 0;

  virtual NameView Names() const = 0;
  virtual double Value() const = 0;
  virtual NumberPattern Pattern() const = 0;
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
};

class IMgjsonStaticDataString_I : public virtual IMgjsonStaticDataString_v1, public virtual ISharedObject_I {
 public:
  virtual void SetPaddedStringPropertiesOrThrow(const PaddedStringProperties &properties) = 0;

  virtual NameView Names() const = 0;
  virtual const std::string &Value() const = 0;  // escaped
  virtual PaddedStringProperties Properties() const = 0;

  std::uint32_t SetPaddedStringProperties(std::uint32_t maxLength, std::uint32_t maxDigitsInLength,
                                          std::uint32_t eventMarker, PX_PluginError *error) final {
    return RunWithStatus(error, [&] {
      SetPaddedStringPropertiesOrThrow({maxLength, maxDigitsInLength, FlagArgument(eventMarker)});
    });
  }
};

class IMgjsonStaticDataBool_I : public virtual IMgjsonStaticDataBool_v1, public virtual ISharedObject_I {
 public:
  virtual NameView Names() const = 0;
  virtual bool Value() const = 0;
};

class IMgjsonStaticDataNumArr_I : public virtual IMgjsonStaticDataNumArr_v1, public virtual ISharedObject_I {
 public:
  virtual void SetPatternOrThrow(const NumberPattern &pattern) = 0;
  virtual void AddElementOrThrow(double value, std::string displayName) = 0;
  virtual void SetElementOccurringRangeOrThrow(std::uint32_t index, const MinMax &range) = 0;
  virtual void SetElementLegalRangeOrThrow(std::uint32_t index, const MinMax &range) = 0;
  virtual void SetPointOrThrow(bool isPoint) = 0;

  virtual NameView Names() const = 0;
  virtual const std::vector<double> &Values() const = 0;
  virtual NumberArrayProperties Properties() const = 0;

  std::uint32_t SetPattern(std::uint32_t isSigned, std::int32_t digitsInteger,
                           std::int32_t digitsDecimal, PX_PluginError *error) final {
    return RunWithStatus(error, [&] { SetPatternOrThrow(PatternArgument(isSigned, digitsInteger, digitsDecimal)); });
  }
  std::uint32_t AddElement(double value, const char *displayName, std::uint32_t displayNameLength,
                           PX_PluginError *error) final {
    return RunWithStatus(error, [&] {
      AddElementOrThrow(FiniteArgument(value), FreeTextArgument(displayName, displayNameLength));
    });
  }
  std::uint32_t SetElementOccurringRange(std::uint32_t index, double min, double max,
                                         PX_PluginError *error) final {
    return RunWithStatus(error, [&] { SetElementOccurringRangeOrThrow(index, MinMaxArgument(min, max)); });
  }
  std::uint32_t SetElementLegalRange(std::uint32_t index, double min, double max,
                                     PX_PluginError *error) final {
    return RunWithStatus(error, [&] { SetElementLegalRangeOrThrow(index, MinMaxArgument(min, max)); });
  }
  std::uint32_t SetPoint(std::uint32_t isPoint, PX_PluginError *error) final {
    return RunWithStatus(error, [&] { SetPointOrThrow(FlagArgument(isPoint)); });
  }
  std::uint32_t GetElementCount() final { return static_cast<std::uint32_t>(Values().size()); }
};

}  // namespace PX_PLUGIN
