#include "svg_plot.hpp"

#include <gtest/gtest.h>

namespace palvex::cli {
namespace {

std::size_t Count(const std::string &text, const std::string &needle) {
  std::size_t count = 0;
  for (std::size_t at = text.find(needle); at != std::string::npos; at = text.find(needle, at + needle.size())) ++count;
  return count;
}

// The point counts of the polylines, in order.
std::vector<std::size_t> PolylinePoints(const std::string &svg) {
  std::vector<std::size_t> counts;
  for (std::size_t at = svg.find("<polyline "); at != std::string::npos; at = svg.find("<polyline ", at + 1)) {
    const std::size_t start = svg.find("points=\"", at) + 8;
    const std::string points = svg.substr(start, svg.find('"', start) - start);
    counts.push_back(points.empty() ? 0 : Count(points, " ") + 1);
  }
  return counts;
}

TEST(XmlEscaped, WritesMarkupCharactersAsEntitiesAndKeepsTheRest) {
  struct Case {
    const char *text;
    const char *escaped;
  };
  const Case kCases[] = {
      {"a&b", "a&amp;b"},
      {"<tag attr=\"v\" other='w'>", "&lt;tag attr=&quot;v&quot; other=&apos;w&apos;&gt;"},
      {"tab\there", "tab\there"},
      {"bell\x07", "bell\xEF\xBF\xBD"},
      {"Gro\xC3\x9F", "Gro\xC3\x9F"},
  };
  for (const Case &c : kCases) EXPECT_EQ(XmlEscaped(c.text), c.escaped) << c.text;
}

TEST(RenderSvg, DrawsOnePolylinePerSeriesAndOneMarkPerEvent) {
  Plot plot;
  plot.title = "run & walk";
  plot.timeCaption = "time (UTC, 2024-05-04)";
  plot.xMin = 0;
  plot.xMax = 2;
  plot.timeTicks = {{0, "06:30:00"}, {2, "06:30:02"}};
  plot.lines = {{"Heart <bpm>", {{0, 112}, {1, 118}, {2, 121}}}, {"Latitude", {{0, 51.5}, {2, 51.6}}}};
  plot.events = {{"Lap", {{0, "start"}, {1.5, "turn"}}}};
  const std::string svg = RenderSvg(plot);

  EXPECT_EQ(svg.rfind("<?xml", 0), 0u);
  EXPECT_EQ(Count(svg, "<svg "), 1u);
  EXPECT_EQ(svg.substr(svg.size() - 7), "</svg>\n");
  EXPECT_EQ(PolylinePoints(svg), (std::vector<std::size_t>{3, 2}));
  EXPECT_EQ(Count(svg, "class=\"event\""), 2u);
  EXPECT_NE(svg.find(">Heart &lt;bpm&gt;</text>"), std::string::npos);
  EXPECT_NE(svg.find("<title>run &amp; walk</title>"), std::string::npos);
  EXPECT_NE(svg.find(">06:30:02</text>"), std::string::npos);
  EXPECT_NE(svg.find(">turn</text>"), std::string::npos);
  // Each text element opens and closes.
  EXPECT_EQ(Count(svg, "<text "), Count(svg, "</text>"));
}

// Ranges without width (one sample, a constant, no series at all) must still give
// coordinates, never "nan" or "inf".
TEST(RenderSvg, FlatRangesStillGiveFiniteCoordinates) {
  const std::vector<LineSeries> kLines[] = {
      {{"one", {{5, 7}}}},
      {{"zero", {{5, 0}, {5, 0}}}},
      {},
  };
  for (const auto &lines : kLines) {
    Plot plot;
    plot.xMin = plot.xMax = 5;
    plot.lines = lines;
    plot.events = {{"mark", {{5, "here"}}}};
    const std::string svg = RenderSvg(plot);
    EXPECT_EQ(svg.find("nan"), std::string::npos) << svg;
    EXPECT_EQ(svg.find("inf"), std::string::npos) << svg;
    EXPECT_EQ(PolylinePoints(svg).size(), lines.size());
  }
}

}  // namespace
}  // namespace palvex::cli
