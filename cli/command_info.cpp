// palvex info [--json] FILE: what the library says of an MGJSON file, for a person (an
// indented outline) or as one JSON object.
#include <charconv>
#include <cinttypes>
#include <cstdio>
#include <string>

#include "chunked_text.hpp"
#include "commands.hpp"
#include "file_report.hpp"
#include "info_json.hpp"
#include "opened_file.hpp"
#include "outline_walk.hpp"
#include "output.hpp"

namespace palvex::cli {
namespace {

constexpr int kIndentPerLevel = 2;

// The outline of a large file has a line per node: each line is made in one reused text,
// with no text made for its parts.
void AppendFormatted(std::string &text, double number, int precision) {
  char digits[32];
  // Spelled as "%.<precision>g" spells it.
  const auto written = std::to_chars(digits, digits + sizeof digits, number, std::chars_format::general, precision);
  text.append(digits, written.ptr);
}

void AppendNumber(std::string &text, double number) { AppendFormatted(text, number, 15); }

void AppendUnsigned(std::string &text, std::uint64_t number) {
  char digits[24];
  text.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
}

// A text in double quotes, with the characters that would break the line escaped.
void AppendQuoted(std::string &text, std::string_view value) {
  text += '"';
  for (const char c : value) {
    switch (c) {
      case '"': text += "\\\""; break;
      case '\\': text += "\\\\"; break;
      case '\n': text += "\\n"; break;
      case '\t': text += "\\t"; break;
      case '\r': text += "\\r"; break;
      default: text += c;
    }
  }
  text += '"';
}

std::string Quoted(const std::string &value) {
  std::string text;
  AppendQuoted(text, value);
  return text;
}

void AppendStaticValue(std::string &text, const PX_StaticDataInfo &info) {
  switch (info.valueKind) {
    case PX_TYPE_NUMBER:
    case PX_TYPE_NUMBER_STRING:
      AppendNumber(text, info.number);
      return;
    case PX_TYPE_STRING:
    case PX_TYPE_PADDED_STRING:
      AppendQuoted(text, info.text);
      return;
    case PX_TYPE_BOOLEAN:
      text += info.boolean ? "true" : "false";
      return;
    case PX_TYPE_NUMBER_ARRAY:
    case PX_TYPE_NUMBER_STRING_ARRAY:
      text += '[';
      for (std::size_t i = 0; i < info.numbers.size(); ++i) {
        if (i != 0) text += ", ";
        AppendNumber(text, info.numbers[i]);
      }
      text += ']';
      return;
    default:
      text += '?';
  }
}

void AppendTime(std::string &text, const palvex::host::Time &time) {
  text += time.text;
  if (const std::optional<double> seconds = SecondsOf(time)) {
    text += " (";
    AppendFormatted(text, *seconds, 10);
    text += " s)";
  }
}

void AppendDynamicSummary(std::string &text, const PX_DynamicDataInfo &info) {
  text += DataTypeWord(info.dataType.kind);
  text += ", sample set ";
  AppendQuoted(text, info.sampleSetId);
  if (info.interpolation != PX_INTERPOLATION_NONE) {
    text += ", ";
    text += InterpolationWord(info.interpolation);
  }
  text += ", ";
  AppendUnsigned(text, info.sampleCount);
  text += info.sampleCount == 1 ? " sample" : " samples";
  if (!info.firstSampleTime.text.empty()) {
    text += ", ";
    AppendTime(text, info.firstSampleTime);
    text += " to ";
    AppendTime(text, info.lastSampleTime);
  }
}

class TextOutline : public OutlineVisitor {
 public:
  void Node(const OutlineNode &node) override {
    line_.assign(static_cast<std::size_t>(kIndentPerLevel) * (node.depth + 1), ' ');
    line_ += node.path;
    line_ += ' ';
    line_ += NodeTypeWord(node.type);
    line_ += ' ';
    AppendQuoted(line_, node.displayName);
    line_ += " (";
    line_ += node.matchName;
    line_ += ')';
    if (node.staticInfo != nullptr) {
      line_ += ": ";
      line_ += DataTypeWord(node.staticInfo->dataType.kind);
      line_ += " = ";
      AppendStaticValue(line_, *node.staticInfo);
    }
    if (node.dynamicInfo != nullptr) {
      origin_.See(*node.dynamicInfo);
      line_ += ": ";
      AppendDynamicSummary(line_, *node.dynamicInfo);
    }
    line_ += '\n';
    text_.Append(line_);
  }
  const ChunkedText &text() const { return text_; }
  const TimeOriginFinder &origin() const { return origin_; }

 private:
  std::string line_;  // the line being made, reused from node to node
  ChunkedText text_;
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
  std::printf("Outline\n");
  outline.text().WriteTo(stdout);
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
