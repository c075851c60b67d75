// palvex samples [--from T] [--to T] [--format FORMAT] FILE DATAPATH: the samples of one
// dynamic node in ascending time order, read page by page so that memory stays bounded
// however long the sample set is, and written in the chosen format (sample_formats.hpp).
#include <cstdint>
#include <cstdio>
#include <limits>
#include <memory>
#include <optional>
#include <string>

#include "commands.hpp"
#include "opened_file.hpp"
#include "output.hpp"
#include "sample_formats.hpp"

namespace palvex::cli {
namespace {

constexpr uint32_t kPageSize = 4096;
constexpr std::size_t kMaxFractionDigits = 9;  // 10^9 is the largest power of ten in 32 bits

// value / scale seconds, as the library takes times.
struct Seconds {
  uint32_t value = 0;
  uint32_t scale = 1;
};
constexpr Seconds kLatest{std::numeric_limits<uint32_t>::max(), 1};

std::optional<uint32_t> ReadCount(const std::string &digits) {
  if (digits.empty() || digits.size() > 10 || digits.find_first_not_of("0123456789") != std::string::npos) {
    return std::nullopt;
  }
  const uint64_t value = std::stoull(digits);
  if (value > std::numeric_limits<uint32_t>::max()) return std::nullopt;
  return static_cast<uint32_t>(value);
}

// "1.5" as 15/10, "3/2" as 3/2; empty when the text is neither or does not fit 32 bits.
std::optional<Seconds> ReadSeconds(const std::string &text) {
  const std::size_t slash = text.find('/');
  if (slash != std::string::npos) {
    const auto value = ReadCount(text.substr(0, slash));
    const auto scale = ReadCount(text.substr(slash + 1));
    if (!value || !scale) return std::nullopt;
    return Seconds{*value, *scale};  // a scale of 0 is the library's to refuse
  }
  const std::size_t point = text.find('.');
  const std::string whole = text.substr(0, point);
  std::string fraction = point == std::string::npos ? std::string() : text.substr(point + 1);
  if (whole.empty() && fraction.empty()) return std::nullopt;
  // Trailing zeros change nothing and would only use up the scale's range.
  while (!fraction.empty() && fraction.back() == '0') fraction.pop_back();
  if (fraction.size() > kMaxFractionDigits) return std::nullopt;
  const auto value = ReadCount((whole.empty() ? "0" : whole) + fraction);
  if (!value) return std::nullopt;
  uint32_t scale = 1;
  for (std::size_t digit = 0; digit < fraction.size(); ++digit) scale *= 10;
  return Seconds{*value, scale};
}

bool IsLater(const Seconds &a, const Seconds &b) {
  return uint64_t{a.value} * b.scale > uint64_t{b.value} * a.scale;
}

struct Request {
  std::optional<Seconds> from;
  std::optional<Seconds> to;
  SampleFormat format = SampleFormat::kText;
  std::string file;
  std::string dataPath;
};

std::optional<Request> ReadArguments(const std::vector<std::string> &arguments, std::string &problem) {
  Request request;
  std::vector<std::string> positional;
  for (std::size_t at = 0; at < arguments.size(); ++at) {
    const std::string &argument = arguments[at];
    if (argument == "--from" || argument == "--to") {
      if (at + 1 == arguments.size()) {
        problem = argument + " needs a time";
        return std::nullopt;
      }
      const auto seconds = ReadSeconds(arguments[++at]);
      if (!seconds) {
        problem = "'" + arguments[at] + "' is not a time in seconds";
        return std::nullopt;
      }
      (argument == "--from" ? request.from : request.to) = seconds;
    } else if (argument == "--format") {
      const auto format = at + 1 < arguments.size() ? SampleFormatNamed(arguments[at + 1]) : std::nullopt;
      if (!format) {
        problem = "--format needs one of text, tsv, csv, json";
        return std::nullopt;
      }
      request.format = *format;
      ++at;
    } else {
      positional.push_back(argument);
    }
  }
  if (positional.size() != 2) {
    problem = "samples needs a file and a data path";
    return std::nullopt;
  }
  request.file = positional[0];
  request.dataPath = positional[1];
  return request;
}

// Writes the samples of the node between the two times, a page at a time; false when the
// library reported an error. Nothing is written before the first page arrives, so a query
// the library refuses leaves standard output empty.
bool PrintSamples(ISensorFileHandler *file, const PX_DynamicDataInfo &node, Seconds from, Seconds to,
                  SampleWriter &writer, palvex::host::ErrorLog &errors) {
  for (uint32_t skip = 0;; skip += kPageSize) {
    DynamicDataSampleSet page;
    page.skip = skip;
    page.limit = kPageSize;
    file->GetSampleSet(node.sampleSetId.c_str(), from.value, from.scale, to.value, to.scale, &page, &errors);
    if (!errors.empty()) return false;
    if (skip == 0) writer.Begin(node);
    for (const auto &sample : page.samples) writer.Write(sample);
    if (page.samples.size() < kPageSize) {
      writer.End();
      return true;
    }
  }
}

}  // namespace

int RunSamples(const GlobalOptions &options, const std::vector<std::string> &arguments) {
  std::string problem;
  const std::optional<Request> request = ReadArguments(arguments, problem);
  if (!request) return UsageError(problem, kSamplesUsage);
  Seconds from = request->from.value_or(Seconds{});
  Seconds to = request->to.value_or(kLatest);
  if (IsLater(from, to)) std::swap(from, to);  // ascending, whichever order they came in

  palvex::host::Library library(options.locale.c_str(), options.PluginFolder());
  palvex::host::ErrorLog errors;
  {
    const OpenedFile file(library.manager(), request->file, errors);
    if (file.handler() != nullptr) {
      PX_DynamicDataInfo node;
      file.handler()->GetDynamicDataInfo(request->dataPath.c_str(), &node, &errors);
      const std::unique_ptr<SampleWriter> writer = MakeSampleWriter(request->format);
      if (errors.empty()) PrintSamples(file.handler(), node, from, to, *writer, errors);
    }
  }
  errors.errors.insert(errors.errors.begin(), library.errors().errors.begin(), library.errors().errors.end());
  return ReportErrors(errors);
}

}  // namespace palvex::cli
