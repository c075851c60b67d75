// The plug-in's entry point: the timed CSV check and conversion handed to the shared frame.
#include <string>

#include "converter_module.hpp"
#include "timed_csv_document.hpp"
#include "timed_csv_errors.hpp"
#include "timed_csv_layout.hpp"

namespace timed_csv {
namespace {

using PX_PLUGIN::PX_PluginException;
using palvex_plugins::ConversionRequest;
using palvex_plugins::OpenInput;
using palvex_plugins::OutputDocument;

// The check looks at no more than this: enough for a wide header and its first row.
constexpr std::size_t kCheckBytes = 16384;

// The converter claims "csv" and "tsv" only: a file of another name that nothing claims
// stays with the built-in converter, as it always did.
bool Accepts(const std::string &inputPath) {
  const std::string extension = palvex_plugins::ExtensionOf(inputPath);
  if (extension != "csv" && extension != "tsv") return false;
  const palvex_plugins::FileHead head = palvex_plugins::ReadHead(inputPath, kCheckBytes);
  return LooksLikeTimedCsv(head.bytes, extension == "tsv", head.complete);
}

// A first pass finds the columns and the time forms, the second writes the streams.
bool Convert(const ConversionRequest &request, OutputDocument &output) {
  const bool tabSeparated = request.extension == "tsv";
  std::ifstream scan = OpenInput(request.inputPath);
  if (!scan) throw PX_PluginException(kCannotRead);
  const TimedCsvLayout layout = ScanTimedCsv(scan, tabSeparated);
  scan.close();
  std::ifstream in = OpenInput(request.inputPath);
  if (!in) throw PX_PluginException(kCannotRead);
  return BuildTimedCsvDocument(in, layout, output.root());  // false: no value, nothing to convert
}

}  // namespace
}  // namespace timed_csv

PX_PLUGIN_ENTRY(moduleIdentifier, host, functions, error) {
  (void)moduleIdentifier;
  palvex_plugins::InstallConverter({timed_csv::kUnsupportedHost, &timed_csv::Accepts, &timed_csv::Convert}, host,
                                   functions, error);
}
