// The plug-in's entry point: the FIT check and conversion handed to the shared frame.
#include <string>

#include "converter_module.hpp"
#include "fit_check.hpp"
#include "fit_document.hpp"
#include "fit_errors.hpp"
#include "fit_survey.hpp"

namespace palvex_fit {
namespace {

using namespace PX_PLUGIN;
using palvex_plugins::ConversionRequest;
using palvex_plugins::OpenInput;
using palvex_plugins::OutputDocument;

std::ifstream OpenOrThrow(const std::string &path) {
  std::ifstream in = OpenInput(path);
  if (!in) throw PX_PluginException(kCannotRead);
  return in;
}

bool Accepts(const std::string &inputPath) {
  std::ifstream in = OpenInput(inputPath);
  return in && LooksLikeFit(in);
}

// Two passes over the file: the first checks it whole and finds the sessions, the second
// streams the records into the document.
bool Convert(const ConversionRequest &request, OutputDocument &output) {
  FitSurvey survey;
  {
    std::ifstream in = OpenOrThrow(request.inputPath);
    survey = SurveyFit(in);
  }
  if (survey.sessions.empty() && survey.timedRecords == 0) return false;
  std::ifstream in = OpenOrThrow(request.inputPath);
  return BuildFitDocument(survey, in, output.root()).groups > 0;
}

}  // namespace
}  // namespace palvex_fit

PX_PLUGIN_ENTRY(moduleIdentifier, host, functions, error) {
  (void)moduleIdentifier;
  palvex_plugins::InstallConverter({palvex_fit::kUnsupportedHost, &palvex_fit::Accepts, &palvex_fit::Convert},
                                   host, functions, error);
}
