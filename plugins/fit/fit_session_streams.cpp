#include "fit_session_streams.hpp"

#include <algorithm>

namespace palvex_fit {
namespace {

using namespace PX_PLUGIN;
using palvex_plugins::Instant;
using palvex_plugins::TimedStream;
using palvex_plugins::TimeLine;

std::string DeveloperDisplayName(const DeveloperField &field) {
  std::string name = field.name.empty() ? "Developer field " + std::to_string(field.developerIndex) + "." +
                                              std::to_string(field.number)
                                        : field.name;
  if (!field.units.empty()) name += " [" + field.units + "]";
  return name;
}

}  // namespace

TimedStream &SessionStreams::Stream(std::unique_ptr<TimedStream> &slot, const std::string &displayName,
                                    const char *matchName) {
  if (!slot) {
    slot = std::make_unique<TimedStream>(root_, PX_DYNAMIC_NUMBER, displayName, names_.Make(matchName, "field"));
  }
  return *slot;
}

void SessionStreams::Add(TimeLine &times, const Instant &at, const FieldIndex &fields,
                         const std::vector<DeveloperFieldView> &developerFields) {
  if (last_ && at < *last_) ++outOfOrder_;
  last_ = at;
  for (std::size_t q = 0; q < kRecordQuantityCount; ++q) {
    const RecordQuantity &quantity = kRecordQuantities[q];
    const std::optional<double> value = RecordValue(quantity, fields);
    if (!value) continue;  // absent stays absent: a gap, never a zero
    Stream(quantities_[q], quantity.displayName, quantity.matchName).Add(times, at, *value);
    if (quantity.legalRange) {
      std::optional<Extent> &extent = extents_[q];
      extent = extent ? Extent{std::min(extent->min, *value), std::max(extent->max, *value)} : Extent{*value, *value};
    }
  }
  for (const DeveloperFieldView &field : developerFields) AddDeveloperValue(times, at, field);
}

void SessionStreams::AddDeveloperValue(TimeLine &times, const Instant &at, const DeveloperFieldView &field) {
  // Values stay unscaled, as the description's scale is advisory; only single numbers map.
  if (field.value.ElementCount() != 1) return;
  const std::optional<double> value = field.value.Number();
  if (!value) return;
  const std::string displayName = DeveloperDisplayName(*field.description);
  auto found = std::find_if(developer_.begin(), developer_.end(),
                            [&](const DeveloperStream &stream) { return stream.displayName == displayName; });
  if (found == developer_.end()) {
    if (developer_.size() == kMaxDeveloperStreams) return;
    developer_.push_back({displayName, nullptr});
    found = developer_.end() - 1;
  }
  Stream(found->stream, displayName, displayName.c_str()).Add(times, at, *value);
}

std::size_t SessionStreams::AttachTo(IMgjsonGroup_v1 *group) {
  std::size_t attached = 0;
  for (std::size_t q = 0; q < kRecordQuantityCount; ++q) {
    if (!quantities_[q]) continue;
    if (const auto &range = kRecordQuantities[q].legalRange; range && extents_[q]) {
      Call(quantities_[q]->views().number, &IMgjsonDynamicDataNum_v1::SetRanges, extents_[q]->min,
           extents_[q]->max, (*range)[0], (*range)[1]);
    }
    quantities_[q]->AttachTo(group);
    ++attached;
  }
  for (DeveloperStream &developer : developer_) {
    if (!developer.stream) continue;
    developer.stream->AttachTo(group);
    ++attached;
  }
  return attached;
}

}  // namespace palvex_fit
