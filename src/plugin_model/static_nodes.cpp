#include "plugin_model/static_nodes.hpp"

#include <algorithm>
#include <limits>
#include <memory>

#include "plugin_model/number_text.hpp"

namespace PX_PLUGIN {
namespace {

NumberPattern PatternOf(double value) {
  NumberStatistics statistics;
  statistics.Add(value, PlainNumberOf(value).digits);
  return statistics.Pattern();
}

}  // namespace

StoredNames::StoredNames(const NodeNames &names) {
  const std::size_t total = names.displayName.size() + names.matchName.size();
  if (total > std::numeric_limits<std::uint32_t>::max()) RaisePluginError(ns_sensor::Msg::InvalidObjectModelArgument);
  if (total == 0) return;
  text_ = std::make_unique_for_overwrite<char[]>(total);
  names.displayName.copy(text_.get(), names.displayName.size());
  names.matchName.copy(text_.get() + names.displayName.size(), names.matchName.size());
  displayLength_ = static_cast<std::uint32_t>(names.displayName.size());
  matchLength_ = static_cast<std::uint32_t>(names.matchName.size());
}

std::uint32_t MgjsonStaticDataImpl::SetNames(const char *displayName, std::uint32_t displayNameLength,
                                             const char *matchName, std::uint32_t matchNameLength,
                                             PX_PluginError *error) {
  return RunWithStatus(error, [&] {
    names_ = StoredNames({FreeTextArgument(displayName, displayNameLength), MatchNameArgument(matchName, matchNameLength)});
  });
}

MgjsonStaticDataNumImpl::MgjsonStaticDataNumImpl(NodeNames names, double value)
    : MgjsonStaticDataImpl(names),
      value_(value),
      pattern_(PatternOf(value)),
      range_{{value, value}, {value, value}} {}

MgjsonStaticDataStringImpl::MgjsonStaticDataStringImpl(NodeNames names, std::string value,
                                                       std::uint64_t rawLength)
    : MgjsonStaticDataImpl(names), value_(std::move(value)) {
  TextStatistics statistics;
  statistics.Add(rawLength);
  properties_ = statistics.Widen({});
}

namespace {

// Geometric growth: reserving exactly one more on every add made building an array take
// time in the square of its length.
template <class T>
void RoomForOneMore(std::vector<T> &list) {
  if (list.size() == list.capacity()) list.reserve(std::max<std::size_t>(4, list.size() * 2));
}

}  // namespace

void MgjsonStaticDataNumArrImpl::AddElementOrThrow(double value, std::string displayName) {
  const NumberDigits digits = PlainNumberOf(value).digits;
  RoomForOneMore(values_);
  RoomForOneMore(displayNames_);
  RoomForOneMore(ranges_);
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
