// The library's static data nodes.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "plugin_model/static_interfaces.hpp"
#include "plugin_model/value_statistics.hpp"

namespace PX_PLUGIN {

class MgjsonGroupImpl;

// What every static node has: its names and its place in a tree.
class MgjsonStaticDataImpl : public virtual IMgjsonStaticData_v1 {
 public:
  std::uint32_t SetNames(const char *displayName, std::uint32_t displayNameLength,
                         const char *matchName, std::uint32_t matchNameLength,
                         PX_PluginError *error) override;

  NameView NamesOf() const { return names_.View(); }
  // The group holding the node; null while it is in none.
  MgjsonGroupImpl *Parent() const { return parent_; }
  void SetParent(MgjsonGroupImpl *parent) { parent_ = parent; }

 protected:
  explicit MgjsonStaticDataImpl(const NodeNames &names) : names_(names) {}
  ~MgjsonStaticDataImpl() override = default;

 private:
  StoredNames names_;
  MgjsonGroupImpl *parent_ = nullptr;
};

class MgjsonStaticDataNumImpl : public virtual IMgjsonStaticDataNum_I,
                                public virtual MgjsonStaticDataImpl,
                                public virtual SharedObjectImpl {
 public:
  MgjsonStaticDataNumImpl(NodeNames names, double value);

  std::uint32_t GetKind() override { return PX_STATIC_NUMBER; }
  void SetPatternOrThrow(const NumberPattern &pattern) override { pattern_ = pattern; }
  void SetRangesOrThrow(const NumberRange &range) override { range_ = range; }
  NameView Names() const override { return NamesOf(); }
  double Value() const override { return value_; }
  NumberPattern Pattern() const override { return pattern_; }
  NumberRange Range() const override { return range_; }

 private:
  double value_;
  NumberPattern pattern_;
  NumberRange range_;
};

class MgjsonStaticDataStringImpl : public virtual IMgjsonStaticDataString_I,
                                   public virtual MgjsonStaticDataImpl,
                                   public virtual SharedObjectImpl {
 public:
  // value: escaped; rawLength: its length before escaping.
  MgjsonStaticDataStringImpl(NodeNames names, std::string value, std::uint64_t rawLength);

  std::uint32_t GetKind() override { return PX_STATIC_STRING; }
  void SetPaddedStringPropertiesOrThrow(const PaddedStringProperties &properties) override {
    properties_ = properties;
  }
  NameView Names() const override { return NamesOf(); }
  const std::string &Value() const override { return value_; }
  PaddedStringProperties Properties() const override { return properties_; }

 private:
  std::string value_;
  PaddedStringProperties properties_;
};

class MgjsonStaticDataBoolImpl : public virtual IMgjsonStaticDataBool_I,
                                 public virtual MgjsonStaticDataImpl,
                                 public virtual SharedObjectImpl {
 public:
  MgjsonStaticDataBoolImpl(NodeNames names, bool value)
      : MgjsonStaticDataImpl(names), value_(value) {}

  std::uint32_t GetKind() override { return PX_STATIC_BOOLEAN; }
  NameView Names() const override { return NamesOf(); }
  bool Value() const override { return value_; }

 private:
  bool value_;
};

class MgjsonStaticDataNumArrImpl : public virtual IMgjsonStaticDataNumArr_I,
                                   public virtual MgjsonStaticDataImpl,
                                   public virtual SharedObjectImpl {
 public:
  explicit MgjsonStaticDataNumArrImpl(NodeNames names) : MgjsonStaticDataImpl(names) {}

  std::uint32_t GetKind() override { return PX_STATIC_NUMBER_ARRAY; }
  void SetPatternOrThrow(const NumberPattern &pattern) override { pattern_ = pattern; }
  void AddElementOrThrow(double value, std::string displayName) override;
  void SetElementOccurringRangeOrThrow(std::uint32_t index, const MinMax &range) override;
  void SetElementLegalRangeOrThrow(std::uint32_t index, const MinMax &range) override;
  void SetPointOrThrow(bool isPoint) override { isPoint_ = isPoint; }
  NameView Names() const override { return NamesOf(); }
  const std::vector<double> &Values() const override { return values_; }
  NumberArrayProperties Properties() const override;

 private:
  NumberRange &RangeAt(std::uint32_t index);

  std::vector<double> values_;
  std::vector<std::string> displayNames_;
  std::vector<NumberRange> ranges_;
  std::optional<NumberPattern> pattern_;  // as given; else what the values need
  NumberStatistics statistics_;
  bool isPoint_ = false;
};

}  // namespace PX_PLUGIN
