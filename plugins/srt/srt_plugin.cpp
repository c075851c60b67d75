// The drone telemetry subtitle converter's side of the ABI: the entry point and the five
// functions it hands the library, each run guarded so that no exception reaches the library.
#include <filesystem>
#include <fstream>
#include <string>

#include "palvex/plugin_kit.hpp"
#include "srt_document.hpp"
#include "srt_errors.hpp"

namespace srt {
namespace {

using namespace PX_PLUGIN;

// The check looks at no more than this: enough for the first few blocks.
constexpr std::size_t kCheckBytes = 16384;

// Valid from InitializePlugin until terminatePlugin.
const PX_HostInterface_v1 *g_host = nullptr;

struct Session {
  std::string inputPath;
  std::string outputPath;
  std::string creator;
};

// Paths arrive as UTF-8; on Windows the narrow open would read them in the ANSI code page.
std::ifstream OpenInput(const std::string &path) {
  return std::ifstream(std::filesystem::u8path(path), std::ios::binary);
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

void CheckFileFormat(const PX_ConverterContext *, const char *inputPath, PX_PluginError *error, uint32_t *result) {
  RunGuarded(error, [&] {
    std::ifstream in = OpenInput(inputPath);
    std::string head(kCheckBytes, '\0');
    in.read(head.data(), static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<std::size_t>(in.gcount()));
    const bool complete = head.size() < kCheckBytes;
    *result = LooksLikeDroneSrt(head, complete) ? 1 : 0;
  });
}

void ConvertToMgjson(PX_PluginSession session, PX_PluginError *error, PX_PluginResult *result) {
  RunGuarded(error, [&] {
    const Session &state = *static_cast<const Session *>(session);
    std::ifstream in = OpenInput(state.inputPath);
    if (!in) throw PX_PluginException(kCannotRead);
    OwnedRoot root(g_host, state.outputPath, state.creator);
    if (!BuildSrtDocument(in, root.get())) return;  // no telemetry: nothing to convert
    result->success = root.Commit() ? 1 : 0;
  });
}

}  // namespace
}  // namespace srt

PX_PLUGIN_ENTRY(moduleIdentifier, host, functions, error) {
  (void)moduleIdentifier;
  if (!PX_PLUGIN::HostSupportsV1(host, functions)) {
    if (error != nullptr) error->code = srt::kUnsupportedHost;
    return;
  }
  srt::g_host = host;
  functions->terminatePlugin = &srt::TerminatePlugin;
  functions->initializeSession = &srt::InitializeSession;
  functions->terminateSession = &srt::TerminateSession;
  functions->checkFileFormat = &srt::CheckFileFormat;
  functions->convertToMgjson = &srt::ConvertToMgjson;
}
