#include "fit_document.hpp"

#include <algorithm>
#include <memory>
#include <utility>

#include "fit_session_streams.hpp"

namespace palvex_fit {
namespace {

using namespace PX_PLUGIN;
using palvex_plugins::Instant;
using palvex_plugins::MatchNames;
using palvex_plugins::TimeLine;

constexpr std::uint32_t kWholeSeconds = 0;
constexpr bool kGmt = true;  // FIT times are UTC; device-start times count from 1970 UTC

void AddStatic(IMgjsonRoot_v1 *root, IMgjsonGroup_v1 *group, MatchNames &names, const StaticEntry &entry) {
  const std::string matchName = names.Make(entry.matchName);
  const StaticNode node = entry.number ? CreateStaticNumber(root, entry.displayName, matchName, *entry.number)
                                       : CreateStaticString(root, entry.displayName, matchName, entry.text);
  Call(group, &IMgjsonGroup_v1::AddStaticChild, node.views().node);
}

// Sends each timed record to its session's streams.
class RecordSink : public FitMessageSink {
 public:
  RecordSink(const FitSurvey &survey, IMgjsonRoot_v1 *root, MatchNames &names, TimeLine &times)
      : times_(times) {
    const std::size_t groups = std::max<std::size_t>(survey.sessions.size(), 1);
    for (std::size_t s = 0; s < groups; ++s) sessions_.push_back(std::make_unique<SessionStreams>(root, names));
    for (std::size_t s = 0; s < survey.sessions.size(); ++s) {
      if (survey.sessions[s].start) starts_.emplace_back(*survey.sessions[s].start, s);
    }
    std::stable_sort(starts_.begin(), starts_.end(),
                     [](const auto &a, const auto &b) { return a.first < b.first; });
    fields_.fill(nullptr);
  }

  bool Wants(std::uint16_t global) const override { return global == kRecordMessage; }

  void OnMessage(const FitMessage &message) override {
    if (!message.timestamp) return;  // a record without a time has no place on the time line
    const Instant at = FitTimeToInstant(*message.timestamp);
    for (const FieldView &field : message.fields) fields_[field.number] = &field;
    sessions_[SessionOf(at)]->Add(times_, at, fields_, message.developerFields);
    for (const FieldView &field : message.fields) fields_[field.number] = nullptr;
  }

  SessionStreams &session(std::size_t index) { return *sessions_[index]; }

 private:
  std::size_t SessionOf(const Instant &at) const {
    if (starts_.empty()) return 0;
    const auto after = std::upper_bound(starts_.begin(), starts_.end(), at,
                                        [](const Instant &time, const auto &start) { return time < start.first; });
    return after == starts_.begin() ? starts_.front().second : std::prev(after)->second;
  }

  TimeLine &times_;
  std::vector<std::unique_ptr<SessionStreams>> sessions_;
  std::vector<std::pair<Instant, std::size_t>> starts_;  // sessions with a start, by start
  FieldIndex fields_;
};

void AddDeviceGroup(const FitSurvey &survey, IMgjsonRoot_v1 *root, MatchNames &names) {
  if (survey.device.empty()) return;
  const Ref<IMgjsonGroup_v1> group = CreateGroup(root, "Device", names.Make("device"));
  for (const StaticEntry &entry : survey.device) AddStatic(root, group.get(), names, entry);
  Call(root, &IMgjsonGroup_v1::AddGroupChild, group.get());
}

}  // namespace

BuildResult BuildFitDocument(const FitSurvey &survey, std::istream &in, IMgjsonRoot_v1 *root) {
  TimeLine times(root, kWholeSeconds, kGmt);
  MatchNames names;
  AddDeviceGroup(survey, root, names);
  // Group names first, so that they keep their plain names whatever the streams are called.
  std::vector<std::pair<std::string, std::string>> groupNames;
  if (survey.sessions.empty()) groupNames.emplace_back("Activity", names.Make("activity"));
  for (std::size_t s = 0; s < survey.sessions.size(); ++s) {
    const std::string displayName = "Session " + std::to_string(s + 1);
    groupNames.emplace_back(displayName, names.Make(displayName));
  }

  RecordSink records(survey, root, names, times);
  BuildResult result;
  result.decoding = DecodeFit(in, records);

  for (std::size_t s = 0; s < groupNames.size(); ++s) {
    const Ref<IMgjsonGroup_v1> group = CreateGroup(root, groupNames[s].first, groupNames[s].second);
    if (s < survey.sessions.size()) {
      for (const StaticEntry &entry : survey.sessions[s].entries) AddStatic(root, group.get(), names, entry);
    }
    if (const std::uint64_t outOfOrder = records.session(s).outOfOrder(); outOfOrder > 0) {
      AddStatic(root, group.get(), names,
                {"Samples out of time order", "samplesOutOfTimeOrder", static_cast<double>(outOfOrder), {}});
    }
    records.session(s).AttachTo(group.get());
    if (group->GetChildCount() == 0) continue;  // an empty session says nothing
    Call(root, &IMgjsonGroup_v1::AddGroupChild, group.get());
    ++result.groups;
  }
  return result;
}

}  // namespace palvex_fit
