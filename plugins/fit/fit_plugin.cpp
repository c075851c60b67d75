// The plug-in's side of the ABI: the entry point and the five functions it hands the
// library, each run guarded so that no exception reaches the library.
#include <filesystem>
#include <fstream>
#include <string>

#include "fit_check.hpp"
#include "fit_document.hpp"
#include "fit_errors.hpp"
#include "fit_survey.hpp"
#include "palvex/plugin_kit.hpp"

namespace palvex_fit {
namespace {

using namespace PX_PLUGIN;

// Valid from InitializePlugin until terminatePlugin.
const PX_HostInterface_v1 *g_host = nullptr;

struct Session {
  std::string inputPath;
  std::string outputPath;
  std::string creator;
};

// Paths arrive as UTF-8; on Windows the narrow open would read them in the ANSI code page.
std::ifstream OpenInput(const std::string &path) {
  std::ifstream in(std::filesystem::u8path(path), std::ios::binary);
  if (!in) throw PX_PluginException(kCannotRead);
  return in;
}

void TerminatePlugin(PX_PluginError *) { g_host = nullptr; }

void InitializeSession(const PX_ConverterContext *converter, const char *inputPath, const char *,
                       const char *outputPath, PX_PluginSession *session, PX_PluginError *error) {
  RunGuarded(error, [&] {
    if (converter == nullptr || inputPath == nullptr || outputPath == nullptr || session == nullptr) {
      throw PX_PluginException(PX_PLUGIN_INVALID_ARGUMENT);
    }
    *session = new Session{inputPath, outputPath, converter->converterIdentifier};
  });
}

void TerminateSession(PX_PluginSession session, PX_PluginError *) { delete static_cast<Session *>(session); }

// Declines quietly whatever it cannot read: the check runs on other formats' files too.
void CheckFileFormat(const PX_ConverterContext *, const char *inputPath, PX_PluginError *error, uint32_t *result) {
  RunGuarded(error, [&] {
    std::ifstream in(std::filesystem::u8path(inputPath), std::ios::binary);
    *result = in && LooksLikeFit(in) ? 1 : 0;
  });
}

// Two passes over the file: the first checks it whole and finds the sessions, the second
// streams the records into the document.
void ConvertToMgjson(PX_PluginSession session, PX_PluginError *error, PX_PluginResult *result) {
  RunGuarded(error, [&] {
    const Session &state = *static_cast<const Session *>(session);
    FitSurvey survey;
    {
      std::ifstream in = OpenInput(state.inputPath);
      survey = SurveyFit(in);
    }
    if (survey.sessions.empty() && survey.timedRecords == 0) return;  // nothing to convert
    std::ifstream in = OpenInput(state.inputPath);
    OwnedRoot root(g_host, state.outputPath, state.creator);
    if (BuildFitDocument(survey, in, root.get()).groups == 0) return;
    result->success = root.Commit() ? 1 : 0;
  });
}

}  // namespace
}  // namespace palvex_fit

PX_PLUGIN_ENTRY(moduleIdentifier, host, functions, error) {
  (void)moduleIdentifier;
  if (!PX_PLUGIN::HostSupportsV1(host, functions)) {
    if (error != nullptr) error->code = palvex_fit::kUnsupportedHost;
    return;
  }
  palvex_fit::g_host = host;
  functions->terminatePlugin = &palvex_fit::TerminatePlugin;
  functions->initializeSession = &palvex_fit::InitializeSession;
  functions->terminateSession = &palvex_fit::TerminateSession;
  functions->checkFileFormat = &palvex_fit::CheckFileFormat;
  functions->convertToMgjson = &palvex_fit::ConvertToMgjson;
}
