// The plug-in's entry point: the GPX check and conversion handed to the shared frame.
#include <string>

#include "converter_module.hpp"
#include "gpx_document.hpp"
#include "gpx_errors.hpp"
#include "gpx_sniff.hpp"

namespace gpx {
namespace {

using PX_PLUGIN::PX_PluginException;
using palvex_plugins::ConversionRequest;
using palvex_plugins::OutputDocument;

std::ifstream OpenOrThrow(const std::string &path) {
  std::ifstream in = palvex_plugins::OpenInput(path);
  if (!in) throw PX_PluginException(kCannotRead, 0);
  return in;
}

// Asked of files of any extension: declines whatever it cannot open or read.
bool Accepts(const std::string &inputPath) {
  return LooksLikeGpx(palvex_plugins::ReadHead(inputPath, kSniffLength).bytes);
}

bool Convert(const ConversionRequest &request, OutputDocument &output) {
  // The first pass checks everything before an output exists.
  GpxSurvey survey;
  {
    std::ifstream in = OpenOrThrow(request.inputPath);
    survey = SurveyGpx(in);
  }
  std::ifstream in = OpenOrThrow(request.inputPath);
  BuildGpxDocument(in, survey, output.root());
  return true;
}

}  // namespace
}  // namespace gpx

PX_PLUGIN_ENTRY(moduleIdentifier, host, functions, error) {
  (void)moduleIdentifier;
  palvex_plugins::InstallConverter({gpx::kUnsupportedHost, &gpx::Accepts, &gpx::Convert}, host, functions, error);
}
