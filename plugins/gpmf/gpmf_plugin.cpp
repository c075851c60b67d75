// The plug-in's entry point: the MP4 telemetry check and conversion handed to the shared frame.
#include <memory>
#include <string>
#include <vector>

#include "byte_source.hpp"
#include "chapters.hpp"
#include "converter_module.hpp"
#include "gpmf_conversion.hpp"
#include "gpmf_errors.hpp"
#include "track_index.hpp"

namespace gpmf {
namespace {

using palvex_plugins::ConversionRequest;
using palvex_plugins::OutputDocument;

// Accepts every ISO media file, telemetry or not: a video declined here would go on to
// converters that read it whole. Reads one box header.
bool Accepts(const std::string &inputPath) {
  FileSource source(inputPath);
  return LooksLikeIsoMedia(source);
}

bool Convert(const ConversionRequest &request, OutputDocument &output) {
  const std::vector<std::string> chapters = FindChapters(request.inputPath);
  const ConversionSummary summary = ConvertRecording(
      chapters.size(), [&](std::size_t c) { return std::make_unique<FileSource>(chapters[c]); }, output.root());
  return summary.samples > 0;
}

}  // namespace
}  // namespace gpmf

PX_PLUGIN_ENTRY(moduleIdentifier, host, functions, error) {
  (void)moduleIdentifier;
  palvex_plugins::InstallConverter({gpmf::kUnsupportedHost, &gpmf::Accepts, &gpmf::Convert}, host, functions, error);
}
