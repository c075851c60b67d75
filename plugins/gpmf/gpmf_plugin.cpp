// The plug-in's side of the ABI: the entry point and the five functions it hands the
// library, each run guarded so that no exception reaches the library.
#include <memory>
#include <string>
#include <vector>

#include "byte_source.hpp"
#include "chapters.hpp"
#include "gpmf_conversion.hpp"
#include "gpmf_errors.hpp"
#include "palvex/plugin_kit.hpp"
#include "track_index.hpp"

namespace gpmf {
namespace {

using namespace PX_PLUGIN;

// Valid from InitializePlugin until terminatePlugin.
const PX_HostInterface_v1 *g_host = nullptr;

struct Session {
  std::string inputPath;
  std::string outputPath;
  std::string creator;
};

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

// Accepts every ISO media file, telemetry or not: a video declined here would go on to
// converters that read it whole. Reads one box header; declines anything unreadable.
void CheckFileFormat(const PX_ConverterContext *, const char *inputPath, PX_PluginError *error, uint32_t *result) {
  RunGuarded(error, [&] {
    try {
      FileSource source(inputPath);
      *result = LooksLikeIsoMedia(source) ? 1 : 0;
    } catch (const PX_PluginException &) {
      *result = 0;
    }
  });
}

void ConvertToMgjson(PX_PluginSession session, PX_PluginError *error, PX_PluginResult *result) {
  RunGuarded(error, [&] {
    const Session &state = *static_cast<const Session *>(session);
    const std::vector<std::string> chapters = FindChapters(state.inputPath);
    OwnedRoot root(g_host, state.outputPath, state.creator);
    const ConversionSummary summary = ConvertRecording(
        chapters.size(), [&](std::size_t c) { return std::make_unique<FileSource>(chapters[c]); }, root.get());
    if (summary.samples == 0) return;  // no success and no error: nothing to convert
    result->success = root.Commit() ? 1 : 0;
  });
}

}  // namespace
}  // namespace gpmf

PX_PLUGIN_ENTRY(moduleIdentifier, host, functions, error) {
  (void)moduleIdentifier;
  if (!PX_PLUGIN::HostSupportsV1(host, functions)) {
    if (error != nullptr) error->code = gpmf::kUnsupportedHost;
    return;
  }
  gpmf::g_host = host;
  functions->terminatePlugin = &gpmf::TerminatePlugin;
  functions->initializeSession = &gpmf::InitializeSession;
  functions->terminateSession = &gpmf::TerminateSession;
  functions->checkFileFormat = &gpmf::CheckFileFormat;
  functions->convertToMgjson = &gpmf::ConvertToMgjson;
}
