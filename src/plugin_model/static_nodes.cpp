#include "plugin_model/static_nodes.hpp"

#include "plugin_model/number_text.hpp"

namespace PX_PLUGIN {
namespace {

NumberPattern PatternOf(double value) {
  NumberStatistics statistics;
  statistics.Add(value, PlainNumberOf(value).digits);
  return statistics.Pattern();
}

}  // namespace

std::uint32_t MgjsonStaticDataImpl::SetNames(const char *displayName, std::uint32_t displayNameLength,
                                             const char *matchName, std::uint32_t matchNameLength,
                                             PX_PluginError *error) {
  return RunWithStatus(error, [&] {
    names_ = {FreeTextArgument(displayName, displayNameLength), MatchNameArgument(matchName, matchNameLength)};
  });
}

MgjsonStaticDataNumImpl::MgjsonStaticDataNumImpl(NodeNames names, double value)
    : MgjsonStaticDataImpl(std::move(names)),
      value_(value),
      pattern_(PatternOf(value)),
      range_{{value, value}, {value, value}} {}

MgjsonStaticDataStringImpl::MgjsonStaticDataStringImpl(NodeNames names, std::string value,
                                                       std::uint64_t rawLength)
    : MgjsonStaticDataImpl(std::move(names)), value_(std::move(value)) {
  TextStatistics statistics;
  statistics.Add(rawLength);
  properties_ = statistics.Widen({});
}

void MgjsonStaticDataNumArrImpl::AddElementOrThrow(double value, std::string displayName) {
  const NumberDigits digits = PlainNumberOf(value).digits;
  values_.reserve(values_.size() + 1);
  displayNames_.reserve(displayNames_.size() + 1);
  ranges_.reserve(ranges_.size() + 1);
  // Nothing below allocates, so the three lists never disagree in length.
  values_.push_back(value);
  displayNames_.push_back(std::move(displayName));
  ranges_.push_back({{value, value}, {value, value}});
  statistics_.Add(value, digits);
}

NumberRange &MgjsonStaticDataNumArrImpl::RangeAt(std::uint32_t index) {
  if (index >= ranges_.size()) RaisePluginError(ns_sensor::Msg::InvalidObjectModelArgument);
  return ranges_[index];
}

void MgjsonStaticDataNumArrImpl::SetElementOccurringRangeOrThrow(std::uint32_t index, const MinMax &range) {
  RangeAt(index).occurring = range;
}

void MgjsonStaticDataNumArrImpl::SetElementLegalRangeOrThrow(std::uint32_t index, const MinMax &range) {
  RangeAt(index).legal = range;
}

NumberArrayProperties MgjsonStaticDataNumArrImpl::Properties() const {
  return {pattern_.value_or(statistics_.Pattern()), ranges_, displayNames_, isPoint_};
}

}  // namespace PX_PLUGIN
