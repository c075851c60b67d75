// palvex validate FILE: opens the file as a host does, reads its outline and every sample
// of every sample set, closes it, and prints a one-line summary; a fault is reported as
// any error is.
#include <cinttypes>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "commands.hpp"
#include "file_report.hpp"
#include "opened_file.hpp"
#include "outline_walk.hpp"
#include "output.hpp"

namespace palvex::cli {
namespace {

constexpr const char kUsage[] = "usage: palvex [--locale LOCALE] validate FILE\n";
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

// The summary line, or empty after a fault.
std::optional<std::string> Validate(ISensorFileHandler *file, palvex::host::ErrorLog &errors) {
  FileReport report;
  Counter counter;
  if (!ReadFileReport(file, errors, report) || !WalkOutline(file, errors, counter)) return std::nullopt;
  uint64_t samples = 0;
  for (const std::string &id : counter.sampleSetIds) {
    const std::optional<uint64_t> count = ReadAllSamples(file, id, errors);
    if (!count) return std::nullopt;
    samples += *count;
  }
  char line[160];
  std::snprintf(line, sizeof line, "ok: schema version %" PRIu32 ", %" PRIu64 " nodes, %" PRIu64 " sample sets, %" PRIu64 " samples",
                report.info.schemaVersion, counter.nodes, static_cast<uint64_t>(counter.sampleSetIds.size()), samples);
  return std::string(line);
}

}  // namespace

int RunValidate(const GlobalOptions &options, const std::vector<std::string> &arguments) {
  if (arguments.size() != 1) return UsageError("validate takes one file", kUsage);
  palvex::host::Library library(options.locale.c_str(), options.PluginFolder());
  palvex::host::ErrorLog errors;
  std::optional<std::string> summary;
  {
    const OpenedFile file(library.manager(), arguments[0], errors);
    if (file.handler() != nullptr) summary = Validate(file.handler(), errors);
  }
  // Only once the file is closed again: a failing close is a fault too.
  if (summary && errors.empty()) std::printf("%s\n", summary->c_str());
  errors.errors.insert(errors.errors.begin(), library.errors().errors.begin(), library.errors().errors.end());
  return ReportErrors(errors);
}

}  // namespace palvex::cli
