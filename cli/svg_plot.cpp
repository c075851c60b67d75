#include "svg_plot.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace palvex::cli {
namespace {

// The page: the plot area, with room for the value ticks on the left, the time ticks and
// caption below, and the legend on the right.
constexpr double kWidth = 960, kHeight = 480;
constexpr double kLeft = 80, kRight = 230, kTop = 30, kBottom = 70;
constexpr double kAreaRight = kWidth - kRight, kAreaBottom = kHeight - kBottom;
constexpr double kLegendRowHeight = 18;
constexpr double kMinLabelGap = 14;  // px between event labels, else the later one is left out
constexpr int kValueTicks = 5;
constexpr int kMaxValueTicks = 12;
constexpr double kValueMargin = 0.05;  // of the value span, above and below
constexpr double kFlatTimeSpan = 1;    // seconds shown when all samples share one time

// Colours far enough apart to tell the series from each other; reused in turn.
constexpr const char *kColours[] = {"#2563a8", "#d9622b", "#3a9a48", "#b8323a", "#7a53a6",
                                    "#8c6d31", "#c4479c", "#5f6b73", "#1c9aa6", "#a3a12a"};
constexpr std::size_t kColourCount = sizeof kColours / sizeof kColours[0];

std::string Number(double value, const char *format) {
  char text[64];
  std::snprintf(text, sizeof text, format, value + 0.0);  // + 0.0: no "-0"
  return text;
}
std::string Coordinate(double value) { return Number(value, "%.1f"); }

struct Range {
  double low, high;
};

// A range with some width, so that a constant series or a single time still has a place:
// `flat` on either side when it has none.
Range Widened(Range range, double margin, double flat) {
  if (!(range.high > range.low)) return {range.low - flat, range.high + flat};
  const double pad = (range.high - range.low) * margin;
  return {range.low - pad, range.high + pad};
}

Range ValueRange(const std::vector<LineSeries> &lines) {
  bool any = false;
  Range range{0, 0};
  for (const LineSeries &line : lines) {
    for (const PlotPoint &point : line.points) {
      if (!any) range = {point.y, point.y};
      range.low = std::min(range.low, point.y);
      range.high = std::max(range.high, point.y);
      any = true;
    }
  }
  if (!any) return {0, 1};
  return Widened(range, kValueMargin, range.low == 0 ? 1 : std::fabs(range.low) * 0.5);
}

// 1, 2 or 5 times a power of ten, so that about kValueTicks ticks span the range.
double TickStep(Range range) {
  const double raw = (range.high - range.low) / kValueTicks;
  const double power = std::pow(10.0, std::floor(std::log10(raw)));
  const double scaled = raw / power;
  return (scaled < 1.5 ? 1 : scaled < 3 ? 2 : scaled < 7 ? 5 : 10) * power;
}

class Canvas {
 public:
  Canvas(Range time, Range value) : time_(time), value_(value) {}
  double X(double seconds) const { return kLeft + (seconds - time_.low) / (time_.high - time_.low) * (kAreaRight - kLeft); }
  double Y(double value) const { return kAreaBottom - (value - value_.low) / (value_.high - value_.low) * (kAreaBottom - kTop); }

 private:
  Range time_, value_;
};

std::string Line(double x1, double y1, double x2, double y2, const std::string &attributes) {
  return "<line x1=\"" + Coordinate(x1) + "\" y1=\"" + Coordinate(y1) + "\" x2=\"" + Coordinate(x2) + "\" y2=\"" +
         Coordinate(y2) + "\"" + (attributes.empty() ? "" : " " + attributes) + "/>\n";
}

std::string Text(double x, double y, std::string_view text, const std::string &attributes) {
  return "<text x=\"" + Coordinate(x) + "\" y=\"" + Coordinate(y) + "\" " + attributes + ">" + XmlEscaped(text) +
         "</text>\n";
}

std::string Axes(const Plot &plot, const Canvas &canvas, Range value) {
  std::string svg = "<g class=\"axes\" stroke=\"#444\" fill=\"none\">\n";
  svg += Line(kLeft, kTop, kLeft, kAreaBottom, "");
  svg += Line(kLeft, kAreaBottom, kAreaRight, kAreaBottom, "");
  svg += "</g>\n<g class=\"ticks\" fill=\"#222\">\n";
  for (const TimeTick &tick : plot.timeTicks) {
    const double x = canvas.X(tick.x);
    svg += Line(x, kAreaBottom, x, kAreaBottom + 5, "stroke=\"#444\"");
    svg += Text(x, kAreaBottom + 20, tick.label, "text-anchor=\"middle\"");
  }
  const double step = TickStep(value);
  if (std::isfinite(step) && step > 0) {
    int drawn = 0;
    for (double at = std::ceil(value.low / step) * step; at <= value.high && drawn < kMaxValueTicks; at += step, ++drawn) {
      const double y = canvas.Y(at);
      svg += Line(kLeft - 5, y, kAreaRight, y, "stroke=\"#ddd\"");
      svg += Text(kLeft - 8, y + 4, Number(at, "%g"), "text-anchor=\"end\"");
    }
  }
  svg += Text((kLeft + kAreaRight) / 2, kHeight - 20, plot.timeCaption, "text-anchor=\"middle\"");
  return svg + "</g>\n";
}

std::string Polyline(const LineSeries &line, const Canvas &canvas, const char *colour) {
  std::string points;
  for (const PlotPoint &point : line.points) {
    if (!points.empty()) points += ' ';
    points += Coordinate(canvas.X(point.x)) + "," + Coordinate(canvas.Y(point.y));
  }
  return "<polyline fill=\"none\" stroke=\"" + std::string(colour) + "\" stroke-width=\"1.5\" points=\"" + points +
         "\"/>\n";
}

std::string Events(const EventSeries &events, const Canvas &canvas, const char *colour) {
  std::string svg = "<g class=\"events\" fill=\"" + std::string(colour) + "\">\n";
  double lastLabel = -kWidth;
  for (const EventMark &mark : events.marks) {
    const double x = canvas.X(mark.x);
    svg += Line(x, kTop, x, kAreaBottom,
                "class=\"event\" stroke=\"" + std::string(colour) + "\" stroke-dasharray=\"4 3\"");
    if (x - lastLabel < kMinLabelGap) continue;
    lastLabel = x;
    // Read upwards along the mark, ending just below the top of the plot area.
    const std::string at = Coordinate(x - 3) + "," + Coordinate(kTop + 4);
    svg += Text(x - 3, kTop + 4, mark.label, "text-anchor=\"end\" transform=\"rotate(-90," + at + ")\"");
  }
  return svg + "</g>\n";
}

std::string LegendEntry(std::size_t row, std::string_view name, const char *colour, bool dashed) {
  const double y = kTop + 10 + kLegendRowHeight * static_cast<double>(row);
  const double x = kAreaRight + 20;
  std::string svg = Line(x, y - 4, x + 24, y - 4,
                         "stroke=\"" + std::string(colour) + "\" stroke-width=\"2\"" +
                             (dashed ? " stroke-dasharray=\"4 3\"" : ""));
  return svg + Text(x + 30, y, name, "fill=\"#222\"");
}

}  // namespace

std::string RenderSvg(const Plot &plot) {
  const Range time = Widened({plot.xMin, plot.xMax}, 0, kFlatTimeSpan / 2);
  const Range value = ValueRange(plot.lines);
  const Canvas canvas(time, value);
  const std::string size = "width=\"" + Number(kWidth, "%g") + "\" height=\"" + Number(kHeight, "%g") + "\"";
  std::string svg = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                    "<svg xmlns=\"http://www.w3.org/2000/svg\" " + size + " viewBox=\"0 0 " +
                    Number(kWidth, "%g") + " " + Number(kHeight, "%g") +
                    "\" font-family=\"sans-serif\" font-size=\"12\">\n";
  svg += "<title>" + XmlEscaped(plot.title) + "</title>\n";
  svg += "<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n";
  svg += Axes(plot, canvas, value);
  std::string legend = "<g class=\"legend\">\n";
  std::size_t colour = 0;
  for (const LineSeries &line : plot.lines) {
    const char *stroke = kColours[colour % kColourCount];
    svg += Polyline(line, canvas, stroke);
    legend += LegendEntry(colour++, line.name, stroke, false);
  }
  for (const EventSeries &events : plot.events) {
    const char *stroke = kColours[colour % kColourCount];
    svg += Events(events, canvas, stroke);
    legend += LegendEntry(colour++, events.name, stroke, true);
  }
  return svg + legend + "</g>\n</svg>\n";
}

std::string XmlEscaped(std::string_view text) {
  std::string escaped;
  escaped.reserve(text.size());
  for (const char c : text) {
    switch (c) {
      case '&': escaped += "&amp;"; break;
      case '<': escaped += "&lt;"; break;
      case '>': escaped += "&gt;"; break;
      case '"': escaped += "&quot;"; break;
      case '\'': escaped += "&apos;"; break;
      case '\t': case '\n': case '\r': escaped += c; break;
      default:
        if (static_cast<unsigned char>(c) < 0x20) {
          escaped += "\xEF\xBF\xBD";  // U+FFFD
        } else {
          escaped += c;
        }
    }
  }
  return escaped;
}

}  // namespace palvex::cli
