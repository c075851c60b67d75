// palvex validate [--json] FILE: opens the file as a host does, reads its outline and every
// sample of every sample set, closes it, and prints a one-line summary (or a JSON object);
// a fault is reported as any error is.
#include <cinttypes>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "commands.hpp"
#include "file_report.hpp"
#include "json_output.hpp"
#include "opened_file.hpp"
#include "outline_walk.hpp"
#include "output.hpp"

namespace palvex::cli {
namespace {

constexpr uint32_t kPageSize = 65536;

class Counter : public OutlineVisitor {
 public:
  void Node(const OutlineNode &node) override {
    ++nodes;
    if (node.dynamicInfo != nullptr) sampleSetIds.push_back(node.dynamicInfo->sampleSetId);
  }
  uint64_t nodes = 0;
  std::vector<std::string> sampleSetIds;
};

// Reads every sample of a set by index, a page at a time; the count, or empty on a fault.
std::optional<uint64_t> ReadAllSamples(ISensorFileHandler *file, const std::string &id,
                                       palvex::host::ErrorLog &errors) {
  uint64_t count = 0;
  for (;;) {
    PX_DynamicSampleInfo page;
    file->GetDynamicSampleInfo(id.c_str(), static_cast<uint32_t>(count), kPageSize, 1, &page, &errors);
    if (!errors.empty()) return std::nullopt;
    count += page.samples.size();
    if (page.samples.size() < kPageSize) return count;
  }
}

struct Summary {
  uint32_t schemaVersion = 0;
  uint64_t nodes = 0;
  uint64_t sampleSets = 0;
  uint64_t samples = 0;
};

// What the file holds, or empty after a fault.
std::optional<Summary> Validate(ISensorFileHandler *file, palvex::host::ErrorLog &errors) {
  FileReport report;
  Counter counter;
  if (!ReadFileReport(file, errors, report) || !WalkOutline(file, errors, counter)) return std::nullopt;
  uint64_t samples = 0;
  for (const std::string &id : counter.sampleSetIds) {
    const std::optional<uint64_t> count = ReadAllSamples(file, id, errors);
    if (!count) return std::nullopt;
    samples += *count;
  }
  return Summary{report.info.schemaVersion, counter.nodes, counter.sampleSetIds.size(), samples};
}

void PrintText(const Summary &summary) {
  std::printf("ok: schema version %" PRIu32 ", %" PRIu64 " nodes, %" PRIu64 " sample sets, %" PRIu64 " samples\n",
              summary.schemaVersion, summary.nodes, summary.sampleSets, summary.samples);
}

// {"ok": true, "schemaVersion", "nodes", "sampleSets", "samples"}, or after a fault
// {"ok": false, "errors": [{"code", "message"}, ...]}; the errors go to standard error too.
void PrintJson(const std::optional<Summary> &summary, const palvex::host::ErrorLog &errors) {
  ChunkedText buffer;
  JsonWriter writer(buffer);
  writer.StartObject();
  writer.Key("ok");
  writer.Bool(summary.has_value());
  if (summary) {
    writer.Key("schemaVersion");
    writer.Uint(summary->schemaVersion);
    writer.Key("nodes");
    writer.Uint64(summary->nodes);
    writer.Key("sampleSets");
    writer.Uint64(summary->sampleSets);
    writer.Key("samples");
    writer.Uint64(summary->samples);
  } else {
    writer.Key("errors");
    writer.StartArray();
    for (const auto &error : errors.errors) {
      writer.StartObject();
      writer.Key("code");
      writer.Uint(error.code);
      writer.Key("message");
      WriteString(writer, error.message);
      writer.EndObject();
    }
    writer.EndArray();
  }
  writer.EndObject();
  buffer.Put('\n');
  buffer.WriteTo(stdout);
}

}  // namespace

int RunValidate(const GlobalOptions &options, const std::vector<std::string> &arguments) {
  bool json = false;
  std::string path;
  if (!ReadFileAndJsonArguments(arguments, path, json)) {
    return UsageError("validate takes --json and one file", kValidateUsage);
  }
  if (path.empty()) return UsageError("validate needs a file", kValidateUsage);
  palvex::host::Library library(options.locale.c_str(), options.PluginFolder());
  palvex::host::ErrorLog errors;
  std::optional<Summary> summary;
  {
    const OpenedFile file(library.manager(), path, errors);
    if (file.handler() != nullptr) summary = Validate(file.handler(), errors);
  }
  // Only once the file is closed again: a failing close is a fault too.
  if (!errors.empty()) summary.reset();
  errors.errors.insert(errors.errors.begin(), library.errors().errors.begin(), library.errors().errors.end());
  if (json) {
    PrintJson(summary, errors);
  } else if (summary) {
    PrintText(*summary);
  }
  return ReportErrors(errors);
}

}  // namespace palvex::cli
