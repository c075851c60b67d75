// palvex info [--json] FILE: what the library says of an MGJSON file, for a person (an
// indented outline) or as one JSON object.
#include <cinttypes>
#include <cstdio>
#include <string>

#include "commands.hpp"
#include "file_report.hpp"
#include "info_json.hpp"
#include "opened_file.hpp"
#include "outline_walk.hpp"
#include "output.hpp"

namespace palvex::cli {
namespace {

constexpr int kIndentPerLevel = 2;

std::string Printf(const char *format, auto... values) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, format, values...);
  return buffer;
}

std::string Number(double number) { return Printf("%.15g", number); }

// A text in double quotes, with the characters that would break the line escaped.
std::string Quoted(const std::string &text) {
  std::string result = "\"";
  for (const char c : text) {
    switch (c) {
      case '"': result += "\\\""; break;
      case '\\': result += "\\\\"; break;
      case '\n': result += "\\n"; break;
      case '\t': result += "\\t"; break;
      case '\r': result += "\\r"; break;
      default: result += c;
    }
  }
  return result + "\"";
}

std::string StaticValue(const PX_StaticDataInfo &info) {
  switch (info.valueKind) {
    case PX_TYPE_NUMBER:
    case PX_TYPE_NUMBER_STRING:
      return Number(info.number);
    case PX_TYPE_STRING:
    case PX_TYPE_PADDED_STRING:
      return Quoted(info.text);
    case PX_TYPE_BOOLEAN:
      return info.boolean ? "true" : "false";
    case PX_TYPE_NUMBER_ARRAY:
    case PX_TYPE_NUMBER_STRING_ARRAY: {
      std::string list = "[";
      for (std::size_t i = 0; i < info.numbers.size(); ++i) list += (i ? ", " : "") + Number(info.numbers[i]);
      return list + "]";
    }
    default:
      return "?";
  }
}

std::string TimeText(const palvex::host::Time &time) {
  const std::optional<double> seconds = SecondsOf(time);
  return time.text + (seconds ? " (" + Printf("%.10g", *seconds) + " s)" : std::string());
}

std::string DynamicSummary(const PX_DynamicDataInfo &info) {
  std::string text = std::string(DataTypeWord(info.dataType.kind)) + ", sample set " + Quoted(info.sampleSetId);
  if (info.interpolation != PX_INTERPOLATION_NONE) text += std::string(", ") + InterpolationWord(info.interpolation);
  text += ", " + std::to_string(info.sampleCount) + (info.sampleCount == 1 ? " sample" : " samples");
  if (!info.firstSampleTime.text.empty()) {
    text += ", " + TimeText(info.firstSampleTime) + " to " + TimeText(info.lastSampleTime);
  }
  return text;
}

class TextOutline : public OutlineVisitor {
 public:
  void Node(const OutlineNode &node) override {
    text_.append(static_cast<std::size_t>(kIndentPerLevel) * (node.depth + 1), ' ');
    text_ += node.path + " " + NodeTypeWord(node.type) + " " + Quoted(node.displayName) + " (" + node.matchName + ")";
    if (node.staticInfo != nullptr) {
      text_ += std::string(": ") + DataTypeWord(node.staticInfo->dataType.kind) + " = " + StaticValue(*node.staticInfo);
    }
    if (node.dynamicInfo != nullptr) {
      origin_.See(*node.dynamicInfo);
      text_ += ": " + DynamicSummary(*node.dynamicInfo);
    }
    text_ += '\n';
  }
  const std::string &text() const { return text_; }
  const TimeOriginFinder &origin() const { return origin_; }

 private:
  std::string text_;
  TimeOriginFinder origin_;
};

std::string TimingLine(const PX_FileInfo &info, const std::optional<std::string> &origin) {
  std::string line;
  if (info.timeKind == PX_TIME_TIMECODE) {
    line = "timecode, " + std::to_string(info.frameRateValue) + "/" + std::to_string(info.frameRateScale) +
           " frames per second" + (info.dropFrame ? ", drop frame" : "");
  } else if (info.timeKind == PX_TIME_UTC) {
    line = "UTC, " + std::to_string(info.utcPrecision) + " fraction digits, " +
           (info.utcIsGmt ? "GMT" : "with offset");
  } else {
    line = "none";
  }
  if (origin) line += "; seconds count from " + *origin;
  return line;
}

bool PrintInfoText(ISensorFileHandler *file, palvex::host::ErrorLog &errors) {
  FileReport report;
  if (!ReadFileReport(file, errors, report)) return false;
  TextOutline outline;
  if (!WalkOutline(file, errors, outline)) return false;
  const PX_FileInfo &info = report.info;
  std::printf("File      %s\n", info.inputPath.c_str());
  if (info.mgjsonPath != info.inputPath) std::printf("MGJSON    %s\n", info.mgjsonPath.c_str());
  std::printf("Schema    %" PRIu32 " (version %s)\n", info.schemaVersion, Quoted(info.version).c_str());
  std::printf("Creator   %s\n", info.creator.c_str());
  std::printf("Timing    %s\n", TimingLine(info, outline.origin().Origin(file, info)).c_str());
  std::printf("Video sync\n");
  if (report.sync.entries.empty()) std::printf("  (none)\n");
  for (const auto &entry : report.sync.entries) {
    std::string target = entry.kind == PX_SYNC_TIME_STRING    ? "time " + entry.timeString
                         : entry.kind == PX_SYNC_FRAME_NUMBER ? "frame " + std::to_string(entry.frameNumber)
                                                              : "(no time)";
    std::printf("  %s  %s\n", entry.fileName.c_str(), target.c_str());
  }
  std::printf("Outline\n%s", outline.text().c_str());
  return true;
}

}  // namespace

int RunInfo(const GlobalOptions &options, const std::vector<std::string> &arguments) {
  bool json = false;
  std::string path;
  if (!ReadFileAndJsonArguments(arguments, path, json)) {
    return UsageError("info takes --json and one file", kInfoUsage);
  }
  if (path.empty()) return UsageError("info needs a file", kInfoUsage);
  palvex::host::Library library(options.locale.c_str(), options.PluginFolder());
  palvex::host::ErrorLog errors;
  {
    const OpenedFile file(library.manager(), path, errors);
    if (file.handler() != nullptr) {
      if (json) {
        PrintInfoJson(file.handler(), errors);
      } else {
        PrintInfoText(file.handler(), errors);
      }
    }
  }
  errors.errors.insert(errors.errors.begin(), library.errors().errors.begin(), library.errors().errors.end());
  return ReportErrors(errors);
}

}  // namespace palvex::cli
