#include "path_group.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

namespace gpx {

using namespace PX_PLUGIN;
using palvex_plugins::Instant;
using palvex_plugins::TimedStream;

namespace {

// Computed values keep what a GPS fix can tell: millimetres per second, hundredths of a
// degree, centimetres.
constexpr int kSpeedDecimals = 3;
constexpr int kHeadingDecimals = 2;
constexpr int kDistanceDecimals = 2;

double Round(double value, int decimals) {
  const double scale = std::pow(10.0, decimals);
  return std::round(value * scale) / scale;
}

}  // namespace

struct PathGroup::Series {
  Series(IMgjsonRoot_v1 *root, std::uint32_t kind, std::string_view displayName, std::string_view matchName)
      : stream(root, kind, displayName, matchName) {}

  void Add(palvex_plugins::TimeLine &times, const Instant &at, double value) {
    stream.Add(times, at, value);
    lowest = std::min(lowest, value);
    highest = std::max(highest, value);
  }

  TimedStream stream;
  double lowest = std::numeric_limits<double>::infinity();
  double highest = -std::numeric_limits<double>::infinity();
  std::optional<std::pair<double, double>> legal;
};

PathGroup::PathGroup(IMgjsonRoot_v1 *root, palvex_plugins::TimeLine &times, palvex_plugins::MatchNames &names,
                     GroupKind kind)
    : root_(root), times_(times), names_(names), kind_(kind) {}

PathGroup::~PathGroup() = default;

void PathGroup::BeginSegment() { previous_.reset(); }

PathGroup::Series &PathGroup::Stream(std::unique_ptr<Series> &slot, std::string_view displayName,
                                     std::string_view matchName, std::optional<std::pair<double, double>> legal) {
  if (!slot) {
    // Waypoints' positions must not take the match names an artist expects of the track.
    const std::string hint = (kind_ == GroupKind::kWaypoints ? "waypoint " : "") + std::string(matchName);
    slot = std::make_unique<Series>(root_, PX_DYNAMIC_NUMBER, displayName, names_.Make(hint));
    slot->legal = legal;
  }
  return *slot;
}

PathGroup::Series *PathGroup::ExtensionStream(const ExtensionValue &value) {
  // Unknown names get a key of their own, apart from the known fields' match names.
  const std::string key = value.field != nullptr ? std::string(value.field->matchName) : "?" + value.name;
  for (auto &[known, series] : extensions_) {
    if (known == key) return series.get();
  }
  if (extensions_.size() >= kMaxExtensionStreams) return nullptr;
  const std::string_view display = value.field != nullptr ? value.field->displayName : value.name;
  const std::string match =
      names_.Make(value.field != nullptr ? value.field->matchName : std::string_view(value.name), "extension");
  extensions_.emplace_back(key, std::make_unique<Series>(root_, PX_DYNAMIC_NUMBER, display, match));
  return extensions_.back().second.get();
}

void PathGroup::Add(const GpxPoint &point) {
  const Instant at = point.time->instant;
  first_ = summary_.timedPoints == 0 ? at : std::min(first_, at);
  last_ = summary_.timedPoints == 0 ? at : std::max(last_, at);
  ++summary_.timedPoints;
  if (kind_ == GroupKind::kWaypoints && !point.name.empty()) {
    if (!name_) {
      name_ = std::make_unique<Series>(root_, PX_DYNAMIC_STRING, "Name", names_.Make("waypointName"));
      name_->stream.SetInterpolation(PX_INTERPOLATION_HOLD);
      Call(name_->stream.views().string, &IMgjsonDynamicDataString_v1::SetPaddedStringProperties, 0u, 0u, 1u);
    }
    name_->stream.AddText(times_, at, point.name);
  }
  Stream(latitude_, "Latitude [°]", "latitude", std::pair(-90.0, 90.0)).Add(times_, at, point.latitude);
  Stream(longitude_, "Longitude [°]", "longitude", std::pair(-180.0, 180.0)).Add(times_, at, point.longitude);
  if (point.elevation) Stream(elevation_, "Elevation [m]", "elevation").Add(times_, at, *point.elevation);
  if (kind_ == GroupKind::kWaypoints) return;
  AddMotion(point, at);
  for (const ExtensionValue &value : point.extensions) {
    if (Series *series = ExtensionStream(value)) series->Add(times_, at, value.value);
  }
}

void PathGroup::AddMotion(const GpxPoint &point, const Instant &at) {
  const GeoPosition here{point.latitude, point.longitude};
  double step = 0;
  if (previous_) {
    step = DistanceMetres(*previous_, here);
    summary_.distance += step;
  }
  if (point.speed) {
    Stream(speed_, "Speed [m/s]", "speed").Add(times_, at, *point.speed);
  } else if (previous_) {
    // No speed for a repeated or backward time: there is no interval to divide by.
    const double seconds = palvex_plugins::SecondsBetween(at, previousTime_);
    if (seconds > 0) Stream(speed_, "Speed [m/s]", "speed").Add(times_, at, Round(step / seconds, kSpeedDecimals));
  }
  const std::pair<double, double> circle(0.0, 360.0);
  std::optional<double> heading = point.course;
  // Standing still has no direction: the previous heading holds.
  if (!heading && previous_ && step > 0) {
    heading = Round(HeadingDegrees(*previous_, here), kHeadingDecimals);
    if (*heading >= 360.0) heading = 0.0;
  }
  if (heading) {
    Series &series = Stream(heading_, "Heading [°]", "heading", circle);
    // Between 359° and 1° a linear blend would swing through south.
    if (series.stream.sampleCount() == 0) series.stream.SetInterpolation(PX_INTERPOLATION_HOLD);
    series.Add(times_, at, *heading);
  }
  Stream(distance_, "Distance [m]", "distance").Add(times_, at, Round(summary_.distance, kDistanceDecimals));
  previous_ = here;
  previousTime_ = at;
}

void PathGroup::AddStatics(IMgjsonGroup_v1 *group, std::string_view displayName) {
  const auto addStatic = [&](const StaticNode &node) {
    Call(group, &IMgjsonGroup_v1::AddStaticChild, node.views().node);
  };
  if (kind_ != GroupKind::kWaypoints) {
    addStatic(CreateStaticString(root_, "Name", names_.Make("name"), displayName));
    addStatic(CreateStaticString(root_, "Start time", names_.Make("startTime"),
                                 palvex_plugins::FormatTime(first_, times_.precision(), times_.gmt())));
    addStatic(CreateStaticNumber(root_, "Duration [s]", names_.Make("duration"),
                                 palvex_plugins::SecondsBetween(last_, first_)));
    addStatic(CreateStaticNumber(root_, "Total distance [m]", names_.Make("totalDistance"),
                                 Round(summary_.distance, kDistanceDecimals)));
  }
  if (summary_.untimedPoints > 0) {
    addStatic(CreateStaticNumber(root_, "Points without time", names_.Make("pointsWithoutTime"),
                                 static_cast<double>(summary_.untimedPoints)));
  }
  if (summary_.outOfOrder > 0) {
    addStatic(CreateStaticNumber(root_, "Samples out of time order", names_.Make("samplesOutOfTimeOrder"),
                                 static_cast<double>(summary_.outOfOrder)));
  }
}

GroupSummary PathGroup::Finish(std::string_view displayName) {
  summary_.displayName = displayName;
  if (summary_.timedPoints == 0) return summary_;
  // Every timed point has a latitude sample: its steps back are the group's.
  summary_.outOfOrder = latitude_->stream.backwardSteps();
  const std::string_view fallback = kind_ == GroupKind::kTrack ? "track" : kind_ == GroupKind::kRoute ? "route" : "waypoints";
  Ref<IMgjsonGroup_v1> group = CreateGroup(root_, displayName, names_.Make(displayName, fallback));
  AddStatics(group.get(), displayName);
  std::vector<Series *> streams = {name_.get(),    latitude_.get(), longitude_.get(), elevation_.get(),
                                   speed_.get(),   heading_.get(),  distance_.get()};
  for (auto &extension : extensions_) streams.push_back(extension.second.get());
  for (Series *series : streams) {
    if (series == nullptr) continue;
    if (series->legal && series->stream.sampleCount() > 0) {
      Call(series->stream.views().number, &IMgjsonDynamicDataNum_v1::SetRanges, series->lowest, series->highest,
           series->legal->first, series->legal->second);
    }
    series->stream.AttachTo(group.get());
  }
  Call(root_, &IMgjsonGroup_v1::AddGroupChild, group.get());
  for (Series *series : streams) {
    if (series != nullptr && series->stream.sampleCount() > 0) {
      Call(series->stream.views().node, &IMgjsonDynamicData_v1::CompleteSamples);
    }
  }
  return summary_;
}

}  // namespace gpx
