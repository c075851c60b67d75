// Reducing streams of any length to what a plot can show: a bounded number of points,
// event marks and time ticks, gathered sample by sample so memory stays bounded too.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "svg_plot.hpp"

namespace palvex::cli {

// Keeps, in each of `buckets` equal slices of [xMin, xMax], the lowest and the highest
// point (in their time order): at most 2 * buckets points, and the outline of the curve
// survives, spikes included. A slice with one or two points keeps them as they are, so
// short series come through whole. Points outside the range go to the nearest edge slice;
// points whose y is not finite are dropped.
class PointReducer {
 public:
  PointReducer(double xMin, double xMax, std::size_t buckets);
  void Add(PlotPoint point);
  std::vector<PlotPoint> Points() const;

 private:
  struct Bucket {
    std::size_t count = 0;
    PlotPoint low, high;
  };
  std::size_t BucketOf(double x) const;

  double xMin_, xMax_;
  std::vector<Bucket> buckets_;
};

// Keeps the first event mark of each of `buckets` equal slices of [xMin, xMax]: closer
// marks would only be drawn over each other.
class EventThinner {
 public:
  EventThinner(double xMin, double xMax, std::size_t buckets);
  void Add(double x, std::string_view label);
  std::vector<EventMark> Marks() const;

 private:
  double xMin_, xMax_;
  std::vector<bool> taken_;
  std::vector<EventMark> marks_;
};

// Picks, for `count` evenly spaced places on the time axis, the sample time nearest to
// each, so that every tick stands exactly at a time whose text the file wrote.
class TickPicker {
 public:
  TickPicker(double xMin, double xMax, std::size_t count);
  void See(double x, std::string_view text);
  // In time order, one per distinct time.
  std::vector<TimeTick> Ticks() const;

 private:
  struct Candidate {
    double target = 0;
    bool seen = false;
    double distance = 0;
    TimeTick tick;
  };
  std::vector<Candidate> candidates_;
};

}  // namespace palvex::cli
