// palvex plot FILE DATAPATH... [-o OUT.svg]: the dynamic nodes at the paths drawn against
// time as one SVG picture. Samples are read page by page and reduced as they arrive
// (plot_reduction.hpp), so memory and the picture stay bounded however long the sets are.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "commands.hpp"
#include "file_report.hpp"
#include "json_output.hpp"
#include "opened_file.hpp"
#include "output.hpp"
#include "plot_reduction.hpp"
#include "sample_formats.hpp"
#include "svg_plot.hpp"

namespace palvex::cli {
namespace {

constexpr uint32_t kPageSize = 4096;
constexpr std::size_t kPointSlices = 1000;  // two points per slice: at most 2,000 per series
constexpr std::size_t kEventSlices = 1000;
constexpr std::size_t kTimeTicks = 6;
constexpr double kFractionSecondsBelow = 10;  // a UTC axis shorter than this shows fractions

struct Request {
  std::string file;
  std::vector<std::string> dataPaths;
  std::optional<std::string> output;
};

std::optional<Request> ReadArguments(const std::vector<std::string> &arguments, std::string &problem) {
  Request request;
  std::vector<std::string> positional;
  for (std::size_t at = 0; at < arguments.size(); ++at) {
    if (arguments[at] != "-o") {
      positional.push_back(arguments[at]);
    } else if (at + 1 < arguments.size()) {
      request.output = arguments[++at];
    } else {
      problem = "-o needs a file name";
      return std::nullopt;
    }
  }
  if (positional.size() < 2) {
    problem = "plot needs a file and at least one data path";
    return std::nullopt;
  }
  request.file = positional.front();
  request.dataPaths.assign(positional.begin() + 1, positional.end());
  return request;
}

bool IsArray(uint32_t kind) { return kind == PX_TYPE_NUMBER_ARRAY || kind == PX_TYPE_NUMBER_STRING_ARRAY; }

// One node's samples turned into series: a line for a number, a line per component for an
// array, marks for texts.
class NodeSeries {
 public:
  NodeSeries(const PX_DynamicDataInfo &node, double xMin, double xMax)
      : node_(node), events_(xMin, xMax, kEventSlices) {
    if (node.dataType.kind == PX_TYPE_PADDED_STRING) return;
    names_ = IsArray(node.dataType.kind) ? ValueColumnNames(node) : std::vector<std::string>{node.displayName};
    for (std::size_t i = 0; i < names_.size(); ++i) lines_.emplace_back(xMin, xMax, kPointSlices);
  }

  void Add(double x, const palvex::host::Sample &sample) {
    if (lines_.empty()) {
      events_.Add(x, ValidUtf8(sample.text));
      return;
    }
    for (std::size_t i = 0; i < lines_.size() && i < sample.numbers.size(); ++i) lines_[i].Add({x, sample.numbers[i]});
  }

  void AddTo(Plot &plot) const {
    if (lines_.empty()) {
      plot.events.push_back({ValidUtf8(node_.displayName), events_.Marks()});
      return;
    }
    for (std::size_t i = 0; i < lines_.size(); ++i) plot.lines.push_back({ValidUtf8(names_[i]), lines_[i].Points()});
  }

  const PX_DynamicDataInfo &node() const { return node_; }

 private:
  PX_DynamicDataInfo node_;
  std::vector<std::string> names_;
  std::vector<PointReducer> lines_;
  EventThinner events_;
};

// A tick's text: timecode as the file writes it; UTC as the time of day, with its
// fraction only on short axes; seconds when the file has no time kind.
std::string TickLabel(const palvex::host::Sample &sample, double x, uint32_t timeKind, double span) {
  if (timeKind == PX_TIME_TIMECODE) return sample.time.text;
  if (timeKind != PX_TIME_UTC) return std::to_string(x);
  const std::string &text = sample.time.text;
  const std::size_t t = text.find('T');
  if (t == std::string::npos) return text;
  std::string clock = text.substr(t + 1);
  clock = clock.substr(0, clock.find_first_of("Z+-"));
  if (span >= kFractionSecondsBelow) clock = clock.substr(0, clock.find('.'));
  return clock;
}

std::string TimeCaption(uint32_t timeKind, const std::string &firstTime) {
  if (timeKind == PX_TIME_TIMECODE) return "time (timecode)";
  if (timeKind != PX_TIME_UTC) return "time (seconds)";
  return "time (UTC, " + firstTime.substr(0, firstTime.find('T')) + ")";
}

// Reads every sample of the node into its series and the ticks; false after an error.
bool ReadNode(ISensorFileHandler *file, NodeSeries &series, TickPicker &ticks, uint32_t timeKind, double span,
              palvex::host::ErrorLog &errors) {
  const PX_DynamicDataInfo &node = series.node();
  // Times the library could not express as seconds leave the whole range to ask for.
  const bool known = node.firstSampleTime.denominator != 0 && node.lastSampleTime.denominator != 0;
  const palvex::host::Time first = known ? node.firstSampleTime : palvex::host::Time{0, 1, {}};
  const palvex::host::Time last = known ? node.lastSampleTime : palvex::host::Time{UINT32_MAX, 1, {}};
  for (uint32_t skip = 0;; skip += kPageSize) {
    DynamicDataSampleSet page;
    page.skip = skip;
    page.limit = kPageSize;
    file->GetSampleSet(node.sampleSetId.c_str(), first.numerator, first.denominator, last.numerator,
                       last.denominator, &page, &errors);
    if (!errors.empty()) return false;
    for (const auto &sample : page.samples) {
      const std::optional<double> x = SecondsOf(sample.time);
      if (!x) continue;
      series.Add(*x, sample);
      ticks.See(*x, TickLabel(sample, *x, timeKind, span));
    }
    if (page.samples.size() < kPageSize) return true;
  }
}

// The plot of the nodes at the paths; empty after an error (reported in errors).
std::optional<Plot> ReadPlot(ISensorFileHandler *file, const Request &request, palvex::host::ErrorLog &errors) {
  PX_FileInfo info;
  file->GetFileInfo(&info, &errors);
  std::vector<PX_DynamicDataInfo> nodes(request.dataPaths.size());
  for (std::size_t i = 0; i < nodes.size() && errors.empty(); ++i) {
    file->GetDynamicDataInfo(request.dataPaths[i].c_str(), &nodes[i], &errors);
  }
  if (!errors.empty()) return std::nullopt;

  Plot plot;
  bool any = false;
  std::string firstTime;
  for (const PX_DynamicDataInfo &node : nodes) {
    const auto first = SecondsOf(node.firstSampleTime), last = SecondsOf(node.lastSampleTime);
    if (!first || !last) continue;
    if (!any || *first < plot.xMin) firstTime = node.firstSampleTime.text;
    plot.xMin = any ? std::min({plot.xMin, *first, *last}) : std::min(*first, *last);
    plot.xMax = any ? std::max({plot.xMax, *first, *last}) : std::max(*first, *last);
    any = true;
  }
  const double span = plot.xMax - plot.xMin;
  TickPicker ticks(plot.xMin, plot.xMax, kTimeTicks);
  for (const PX_DynamicDataInfo &node : nodes) {
    NodeSeries series(node, plot.xMin, plot.xMax);
    if (!ReadNode(file, series, ticks, info.timeKind, span, errors)) return std::nullopt;
    series.AddTo(plot);
  }
  plot.title = ValidUtf8(request.file);
  plot.timeCaption = TimeCaption(info.timeKind, ValidUtf8(firstTime));
  plot.timeTicks = ticks.Ticks();
  return plot;
}

// Standard output, or the file named; false when the file cannot be written.
bool WriteOut(const std::string &svg, const std::optional<std::string> &output) {
  if (!output) return std::fwrite(svg.data(), 1, svg.size(), stdout) == svg.size();
  std::FILE *file = std::fopen(output->c_str(), "wb");
  if (file == nullptr) return false;
  const bool written = std::fwrite(svg.data(), 1, svg.size(), file) == svg.size();
  const bool closed = std::fclose(file) == 0;
  if (!(written && closed)) std::remove(output->c_str());
  return written && closed;
}

}  // namespace

int RunPlot(const GlobalOptions &options, const std::vector<std::string> &arguments) {
  std::string problem;
  const std::optional<Request> request = ReadArguments(arguments, problem);
  if (!request) return UsageError(problem, kPlotUsage);

  palvex::host::Library library(options.locale.c_str(), options.PluginFolder());
  palvex::host::ErrorLog errors;
  std::optional<Plot> plot;
  {
    const OpenedFile file(library.manager(), request->file, errors);
    if (file.handler() != nullptr) plot = ReadPlot(file.handler(), *request, errors);
  }
  errors.errors.insert(errors.errors.begin(), library.errors().errors.begin(), library.errors().errors.end());
  if (!errors.empty() || !plot) return ReportErrors(errors);
  if (!WriteOut(RenderSvg(*plot), request->output)) {
    std::fprintf(stderr, "palvex: cannot write '%s'\n", request->output.value_or("standard output").c_str());
    return kExitError;
  }
  return kExitOk;
}

}  // namespace palvex::cli
