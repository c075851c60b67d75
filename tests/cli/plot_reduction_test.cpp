#include "plot_reduction.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace palvex::cli {
namespace {

std::vector<double> Xs(const std::vector<PlotPoint> &points) {
  std::vector<double> xs;
  for (const PlotPoint &point : points) xs.push_back(point.x);
  return xs;
}

TEST(PointReducer, KeepsShortSeriesWhole) {
  PointReducer reducer(0, 2, 1000);
  for (const PlotPoint point : {PlotPoint{0, 5}, PlotPoint{1, 5}, PlotPoint{2, -1}}) reducer.Add(point);
  EXPECT_EQ(Xs(reducer.Points()), (std::vector<double>{0, 1, 2}));
}

TEST(PointReducer, BoundsLongSeriesAndKeepsTheirExtremes) {
  constexpr int kCount = 200000;
  PointReducer reducer(0, kCount - 1, 1000);
  for (int i = 0; i < kCount; ++i) {
    const double spike = i == 123457 ? 1000 : i == 7 ? -1000 : 0;
    reducer.Add({static_cast<double>(i), std::sin(i * 0.001) + spike});
  }
  const std::vector<PlotPoint> points = reducer.Points();
  EXPECT_LE(points.size(), 2000u);
  EXPECT_GE(points.size(), 1000u);
  const std::vector<double> xs = Xs(points);
  EXPECT_TRUE(std::is_sorted(xs.begin(), xs.end()));
  const auto [low, high] = std::minmax_element(points.begin(), points.end(),
                                               [](const PlotPoint &a, const PlotPoint &b) { return a.y < b.y; });
  EXPECT_EQ(low->x, 7);
  EXPECT_EQ(high->x, 123457);
}

TEST(PointReducer, DropsValuesThatAreNotNumbersAndKeepsStraysAtTheEdges) {
  PointReducer reducer(10, 20, 10);
  reducer.Add({15, std::numeric_limits<double>::quiet_NaN()});
  reducer.Add({15, std::numeric_limits<double>::infinity()});
  reducer.Add({5, 1});   // before the range: first slice
  reducer.Add({25, 2});  // after it: last slice
  EXPECT_EQ(Xs(reducer.Points()), (std::vector<double>{5, 25}));
}

TEST(PointReducer, RangeWithoutWidthIsOneSlice) {
  PointReducer reducer(3, 3, 1000);
  for (const double y : {4.0, 1.0, 9.0, 5.0}) reducer.Add({3, y});
  const std::vector<PlotPoint> points = reducer.Points();
  ASSERT_EQ(points.size(), 2u);
  EXPECT_EQ(std::min(points[0].y, points[1].y), 1);
  EXPECT_EQ(std::max(points[0].y, points[1].y), 9);
}

TEST(EventThinner, KeepsTheFirstMarkOfEachSliceInTimeOrder) {
  EventThinner thinner(0, 10, 10);
  thinner.Add(7.2, "late");
  thinner.Add(0.1, "start");
  thinner.Add(0.5, "same slice as start");
  thinner.Add(std::numeric_limits<double>::quiet_NaN(), "nowhere");
  const std::vector<EventMark> marks = thinner.Marks();
  ASSERT_EQ(marks.size(), 2u);
  EXPECT_EQ(marks[0].label, "start");
  EXPECT_EQ(marks[1].label, "late");
}

TEST(TickPicker, PicksTheNearestSampleTimesOncePerTime) {
  TickPicker picker(0, 10, 3);  // aims at 0, 5, 10
  for (int i = 0; i <= 10; i += 3) picker.See(i, "t" + std::to_string(i));  // 0, 3, 6, 9
  const std::vector<TimeTick> ticks = picker.Ticks();
  ASSERT_EQ(ticks.size(), 3u);
  EXPECT_EQ(ticks[0].label, "t0");
  EXPECT_EQ(ticks[1].label, "t6");  // 1 from 5, where 3 is 2 away
  EXPECT_EQ(ticks[2].label, "t9");

  TickPicker single(0, 10, 4);
  single.See(2, "only");
  EXPECT_EQ(single.Ticks().size(), 1u);
}

}  // namespace
}  // namespace palvex::cli
