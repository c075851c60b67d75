// The timed CSV converter's side of the ABI: the entry point and the five functions it
// hands the library, each run guarded so that no exception reaches the library.
#include <filesystem>
#include <fstream>
#include <string>

#include "palvex/plugin_kit.hpp"
#include "timed_csv_document.hpp"
#include "timed_csv_errors.hpp"
#include "timed_csv_layout.hpp"

namespace timed_csv {
namespace {

using namespace PX_PLUGIN;

// The check looks at no more than this: enough for a wide header and its first row.
constexpr std::size_t kCheckBytes = 16384;

// Valid from InitializePlugin until terminatePlugin.
const PX_HostInterface_v1 *g_host = nullptr;

struct Session {
  std::string inputPath;
  std::string outputPath;
  std::string creator;
  bool tabSeparated = false;
};

// Paths arrive as UTF-8; on Windows the narrow open would read them in the ANSI code page.
std::ifstream OpenInput(const std::string &path) {
  return std::ifstream(std::filesystem::u8path(path), std::ios::binary);
}

// The converter claims "csv" and "tsv" only: a file of another name that nothing claims
// stays with the built-in converter, as it always did.
std::string Extension(const std::string &path) {
  const std::size_t name = path.find_last_of("/\\") + 1;  // npos + 1 is 0
  const std::size_t dot = path.rfind('.');
  std::string extension = dot == std::string::npos || dot < name ? "" : path.substr(dot + 1);
  for (char &c : extension) c = (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
  return extension;
}

void TerminatePlugin(PX_PluginError *) { g_host = nullptr; }

void InitializeSession(const PX_ConverterContext *converter, const char *inputPath, const char *extension,
                       const char *outputPath, PX_PluginSession *session, PX_PluginError *error) {
  RunGuarded(error, [&] {
    if (converter == nullptr || inputPath == nullptr || outputPath == nullptr || session == nullptr) {
      throw PX_PluginException(PX_PLUGIN_INVALID_ARGUMENT);
    }
    const bool tab = extension != nullptr && std::string_view(extension) == "tsv";
    *session = new Session{inputPath, outputPath, converter->converterIdentifier, tab};
  });
}

void TerminateSession(PX_PluginSession session, PX_PluginError *) { delete static_cast<Session *>(session); }

void CheckFileFormat(const PX_ConverterContext *, const char *inputPath, PX_PluginError *error, uint32_t *result) {
  RunGuarded(error, [&] {
    const std::string extension = Extension(inputPath);
    if (extension != "csv" && extension != "tsv") return;
    std::ifstream in = OpenInput(inputPath);
    std::string head(kCheckBytes, '\0');
    in.read(head.data(), static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<std::size_t>(in.gcount()));
    const bool complete = head.size() < kCheckBytes;
    *result = LooksLikeTimedCsv(head, extension == "tsv", complete) ? 1 : 0;
  });
}

void ConvertToMgjson(PX_PluginSession session, PX_PluginError *error, PX_PluginResult *result) {
  RunGuarded(error, [&] {
    const Session &state = *static_cast<const Session *>(session);
    std::ifstream scan = OpenInput(state.inputPath);
    if (!scan) throw PX_PluginException(kCannotRead);
    const TimedCsvLayout layout = ScanTimedCsv(scan, state.tabSeparated);
    scan.close();
    std::ifstream in = OpenInput(state.inputPath);
    if (!in) throw PX_PluginException(kCannotRead);
    OwnedRoot root(g_host, state.outputPath, state.creator);
    if (!BuildTimedCsvDocument(in, layout, root.get())) return;  // no value: nothing to convert
    result->success = root.Commit() ? 1 : 0;
  });
}

}  // namespace
}  // namespace timed_csv

PX_PLUGIN_ENTRY(moduleIdentifier, host, functions, error) {
  (void)moduleIdentifier;
  if (!PX_PLUGIN::HostSupportsV1(host, functions)) {
    if (error != nullptr) error->code = timed_csv::kUnsupportedHost;
    return;
  }
  timed_csv::g_host = host;
  functions->terminatePlugin = &timed_csv::TerminatePlugin;
  functions->initializeSession = &timed_csv::InitializeSession;
  functions->terminateSession = &timed_csv::TerminateSession;
  functions->checkFileFormat = &timed_csv::CheckFileFormat;
  functions->convertToMgjson = &timed_csv::ConvertToMgjson;
}
