#include "plot_reduction.hpp"

#include <algorithm>
#include <cmath>

namespace palvex::cli {
namespace {

// The slice of [xMin, xMax] cut in `slices` equal parts that x falls in; times outside
// the range go to the nearest edge, and a range without width is one slice.
std::size_t SliceOf(double x, double xMin, double xMax, std::size_t slices) {
  if (!(xMax > xMin)) return 0;
  const double at = (x - xMin) / (xMax - xMin) * static_cast<double>(slices);
  if (!(at > 0)) return 0;
  if (at >= static_cast<double>(slices)) return slices - 1;
  return static_cast<std::size_t>(at);
}

}  // namespace

PointReducer::PointReducer(double xMin, double xMax, std::size_t buckets)
    : xMin_(xMin), xMax_(xMax), buckets_(std::max<std::size_t>(buckets, 1)) {}

std::size_t PointReducer::BucketOf(double x) const { return SliceOf(x, xMin_, xMax_, buckets_.size()); }

void PointReducer::Add(PlotPoint point) {
  if (!std::isfinite(point.x) || !std::isfinite(point.y)) return;
  Bucket &bucket = buckets_[BucketOf(point.x)];
  if (bucket.count == 0) {
    bucket.low = bucket.high = point;
  } else if (point.y < bucket.low.y) {
    bucket.low = point;
  } else if (point.y > bucket.high.y || bucket.count == 1) {
    bucket.high = point;  // with one point so far, the second is kept whatever its value
  }
  ++bucket.count;
}

std::vector<PlotPoint> PointReducer::Points() const {
  std::vector<PlotPoint> points;
  for (const Bucket &bucket : buckets_) {
    if (bucket.count == 0) continue;
    if (bucket.count == 1) {
      points.push_back(bucket.low);
    } else if (bucket.low.x <= bucket.high.x) {
      points.push_back(bucket.low);
      points.push_back(bucket.high);
    } else {
      points.push_back(bucket.high);
      points.push_back(bucket.low);
    }
  }
  return points;
}

EventThinner::EventThinner(double xMin, double xMax, std::size_t buckets)
    : xMin_(xMin), xMax_(xMax), taken_(std::max<std::size_t>(buckets, 1), false) {}

void EventThinner::Add(double x, std::string_view label) {
  if (!std::isfinite(x)) return;
  const std::size_t slice = SliceOf(x, xMin_, xMax_, taken_.size());
  if (taken_[slice]) return;
  taken_[slice] = true;
  marks_.push_back({x, std::string(label)});
}

std::vector<EventMark> EventThinner::Marks() const {
  std::vector<EventMark> marks = marks_;
  std::stable_sort(marks.begin(), marks.end(), [](const EventMark &a, const EventMark &b) { return a.x < b.x; });
  return marks;
}

TickPicker::TickPicker(double xMin, double xMax, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    Candidate candidate;
    candidate.target = count == 1 ? xMin : xMin + (xMax - xMin) * static_cast<double>(i) / static_cast<double>(count - 1);
    candidates_.push_back(candidate);
  }
}

void TickPicker::See(double x, std::string_view text) {
  if (!std::isfinite(x)) return;
  for (Candidate &candidate : candidates_) {
    const double distance = std::fabs(x - candidate.target);
    if (candidate.seen && distance >= candidate.distance) continue;
    candidate.seen = true;
    candidate.distance = distance;
    candidate.tick = {x, std::string(text)};
  }
}

std::vector<TimeTick> TickPicker::Ticks() const {
  std::vector<TimeTick> ticks;
  for (const Candidate &candidate : candidates_) {
    if (candidate.seen) ticks.push_back(candidate.tick);
  }
  std::stable_sort(ticks.begin(), ticks.end(), [](const TimeTick &a, const TimeTick &b) { return a.x < b.x; });
  ticks.erase(std::unique(ticks.begin(), ticks.end(), [](const TimeTick &a, const TimeTick &b) { return a.x == b.x; }),
              ticks.end());
  return ticks;
}

}  // namespace palvex::cli
