// The plug-in's entry point: the drone telemetry subtitle check and conversion handed to
// the shared frame.
#include <string>

#include "converter_module.hpp"
#include "srt_document.hpp"
#include "srt_errors.hpp"

namespace srt {
namespace {

using PX_PLUGIN::PX_PluginException;
using palvex_plugins::ConversionRequest;
using palvex_plugins::OutputDocument;

// The check looks at no more than this: enough for the first few blocks.
constexpr std::size_t kCheckBytes = 16384;

bool Accepts(const std::string &inputPath) {
  const palvex_plugins::FileHead head = palvex_plugins::ReadHead(inputPath, kCheckBytes);
  return LooksLikeDroneSrt(head.bytes, head.complete);
}

bool Convert(const ConversionRequest &request, OutputDocument &output) {
  std::ifstream in = palvex_plugins::OpenInput(request.inputPath);
  if (!in) throw PX_PluginException(kCannotRead);
  return BuildSrtDocument(in, output.root());  // false: no telemetry, nothing to convert
}

}  // namespace
}  // namespace srt

PX_PLUGIN_ENTRY(moduleIdentifier, host, functions, error) {
  (void)moduleIdentifier;
  palvex_plugins::InstallConverter({srt::kUnsupportedHost, &srt::Accepts, &srt::Convert}, host, functions, error);
}
