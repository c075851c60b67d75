#include "gpx_document.hpp"

#include <algorithm>
#include <optional>
#include <string>

#include "gpx_errors.hpp"

namespace gpx {
namespace {

using PX_PLUGIN::PX_PluginException;

class Survey final : public GpxVisitor {
 public:
  void BeginPath(PathKind, std::uint64_t line) override {
    if (++paths_ > kMaxPaths) throw PX_PluginException(kTooManyPaths, static_cast<std::int64_t>(line));
  }
  void BeginSegment() override {}
  void PathPoint(const GpxPoint &point) override {
    if (!point.time) return;
    Note(*point.time);
    ++result.timedPathPoints;
  }
  void EndPath(std::string_view) override {}
  void Waypoint(const GpxPoint &point) override {
    if (point.time) Note(*point.time);
  }

  GpxSurvey result;

 private:
  // One zoned time makes the document GMT; times without a zone in the same file are
  // then taken as UTC, which is what GPX says its times are.
  void Note(const palvex_plugins::ParsedTime &time) {
    result.precision = std::max(result.precision, time.fractionDigits);
    result.gmt = result.gmt || time.zoned;
  }

  std::uint64_t paths_ = 0;
};

class Builder final : public GpxVisitor {
 public:
  Builder(PX_PLUGIN::IMgjsonRoot_v1 *root, const GpxSurvey &survey)
      : root_(root), times_(root, survey.precision, survey.gmt) {}

  void BeginPath(PathKind kind, std::uint64_t) override {
    kind_ = kind == PathKind::kTrack ? GroupKind::kTrack : GroupKind::kRoute;
    path_.emplace(root_, times_, names_, kind_);
  }
  void BeginSegment() override { path_->BeginSegment(); }
  void PathPoint(const GpxPoint &point) override { AddTo(*path_, point); }
  void EndPath(std::string_view name) override {
    const bool track = kind_ == GroupKind::kTrack;
    const std::uint64_t ordinal = ++(track ? tracks_ : routes_);
    const std::string fallback = (track ? "Track " : "Route ") + std::to_string(ordinal);
    Keep(path_->Finish(name.empty() ? std::string_view(fallback) : name));
    path_.reset();
  }
  void Waypoint(const GpxPoint &point) override {
    if (!waypoints_) waypoints_.emplace(root_, times_, names_, GroupKind::kWaypoints);
    AddTo(*waypoints_, point);
  }

  void Finish() {
    if (waypoints_) Keep(waypoints_->Finish("Waypoints"));
  }

  std::vector<GroupSummary> summaries;

 private:
  // Only groups with a timed point join the document.
  void Keep(GroupSummary summary) {
    if (summary.timedPoints > 0) summaries.push_back(std::move(summary));
  }
  static void AddTo(PathGroup &group, const GpxPoint &point) {
    if (point.time) {
      group.Add(point);
    } else {
      group.CountUntimed();
    }
  }

  PX_PLUGIN::IMgjsonRoot_v1 *root_;
  palvex_plugins::TimeLine times_;
  palvex_plugins::MatchNames names_;
  GroupKind kind_ = GroupKind::kTrack;
  std::optional<PathGroup> path_;
  std::optional<PathGroup> waypoints_;
  std::uint64_t tracks_ = 0;
  std::uint64_t routes_ = 0;
};

}  // namespace

GpxSurvey SurveyGpx(std::istream &in) {
  Survey survey;
  ParseGpx(in, survey);
  if (survey.result.timedPathPoints == 0) throw PX_PluginException(kNoTimedPoints);
  return survey.result;
}

std::vector<GroupSummary> BuildGpxDocument(std::istream &in, const GpxSurvey &survey,
                                           PX_PLUGIN::IMgjsonRoot_v1 *root) {
  Builder builder(root, survey);
  ParseGpx(in, builder);
  builder.Finish();
  return std::move(builder.summaries);
}

}  // namespace gpx
