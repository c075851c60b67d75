// The plug-in's side of the ABI: the entry point, and the five functions it hands the
// library. Each function runs its body guarded, so no exception reaches the library.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "gust_document.hpp"
#include "gust_log.hpp"
#include "palvex/plugin_kit.hpp"

namespace gust {
namespace {

using namespace PX_PLUGIN;

// A header longer than this is not one: the check reads no further.
constexpr std::size_t kMaxHeaderLength = 4096;

// Valid from InitializePlugin until terminatePlugin.
const PX_HostInterface_v1 *g_host = nullptr;

struct Session {
  std::string inputPath;
  std::string outputPath;
  std::string creator;
};

// Paths arrive as UTF-8; on Windows the narrow open would read them in the ANSI code page.
std::ifstream OpenInput(const char *path) {
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

void TerminateSession(PX_PluginSession session, PX_PluginError *) {
  delete static_cast<Session *>(session);
}

void CheckFileFormat(const PX_ConverterContext *, const char *inputPath, PX_PluginError *error,
                     uint32_t *result) {
  RunGuarded(error, [&] {
    std::ifstream in = OpenInput(inputPath);
    std::string line(kMaxHeaderLength, '\0');
    in.read(line.data(), static_cast<std::streamsize>(line.size()));
    line.resize(static_cast<std::size_t>(in.gcount()));
    const std::size_t end = line.find('\n');
    if (end == std::string::npos && line.size() == kMaxHeaderLength) return;
    line.resize(std::min(end, line.size()));
    if (!line.empty() && line.back() == '\r') line.pop_back();
    *result = ReadHeader(line).has_value() ? 1 : 0;
  });
}

void ConvertToMgjson(PX_PluginSession session, PX_PluginError *error, PX_PluginResult *result) {
  RunGuarded(error, [&] {
    const Session &state = *static_cast<const Session *>(session);
    std::ifstream in = OpenInput(state.inputPath.c_str());
    if (!in) throw PX_PluginException(kCannotRead);
    const GustLog log = ReadGustLog(in);
    if (log.readings.empty()) return;  // no success and no error: nothing to convert
    OwnedRoot root(g_host, state.outputPath, state.creator);
    BuildGustDocument(log, root.get());
    result->success = root.Commit() ? 1 : 0;
  });
}

}  // namespace
}  // namespace gust

PX_PLUGIN_ENTRY(moduleIdentifier, host, functions, error) {
  (void)moduleIdentifier;
  if (!PX_PLUGIN::HostSupportsV1(host, functions)) {
    if (error != nullptr) error->code = gust::kUnsupportedHost;
    return;
  }
  gust::g_host = host;
  functions->terminatePlugin = &gust::TerminatePlugin;
  functions->initializeSession = &gust::InitializeSession;
  functions->terminateSession = &gust::TerminateSession;
  functions->checkFileFormat = &gust::CheckFileFormat;
  functions->convertToMgjson = &gust::ConvertToMgjson;
}
