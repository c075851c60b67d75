// Drawing a plot of values against time as SVG text: pure code, series in, text out.
// The caller reduces long series first (plot_reduction.hpp) so that the picture stays
// small however many samples a stream holds.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace palvex::cli {

struct PlotPoint {
  double x = 0;  // seconds
  double y = 0;
};

// One polyline with its legend name.
struct LineSeries {
  std::string name;
  std::vector<PlotPoint> points;
};

struct EventMark {
  double x = 0;
  std::string label;
};

// Vertical marks, each labelled with its text.
struct EventSeries {
  std::string name;
  std::vector<EventMark> marks;
};

struct TimeTick {
  double x = 0;
  std::string label;
};

// Texts are UTF-8; they are escaped for XML here.
struct Plot {
  std::string title;
  std::string timeCaption;  // under the time axis
  double xMin = 0, xMax = 0;
  std::vector<TimeTick> timeTicks;
  std::vector<LineSeries> lines;
  std::vector<EventSeries> events;
};

// The whole SVG document. Each line series is one <polyline>, each event mark one
// <line class="event">; nothing else uses those elements, so a reader can count them.
std::string RenderSvg(const Plot &plot);

// text with &, <, >, " and ' as entities, and the control characters XML 1.0 forbids
// as U+FFFD.
std::string XmlEscaped(std::string_view text);

}  // namespace palvex::cli
