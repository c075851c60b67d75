// The timed CSV reader from any bytes: the check on them, then both passes and the
// document, written to a scratch output that is removed after each run. The first byte
// chooses comma or tab separation.
#include <cstdint>
#include <filesystem>
#include <sstream>
#include <string>
#include <system_error>

#include "fuzz_paths.hpp"
#include "plugin_model/mgjson_writer.hpp"
#include "plugin_model/root_impl.hpp"
#include "timed_csv_document.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  if (size == 0) return 0;
  static const std::string output = FuzzScratchPath("timed_csv.mgjson");
  const bool tab = (data[0] & 1) != 0;
  const std::string text(reinterpret_cast<const char *>(data + 1), size - 1);
  timed_csv::LooksLikeTimedCsv(text, tab, (data[0] & 2) != 0);
  PX_PLUGIN::RootSettings settings;
  settings.outputPath = output;
  settings.makeWriter = PX_PLUGIN::MakeMgjsonWriter;
  const auto owner = PX_PLUGIN::MgjsonRootImpl::Create(std::move(settings));
  PX_PLUGIN::IMgjsonRoot_v1 *root = owner->HandOut();
  try {
    std::istringstream scan(text);
    const timed_csv::TimedCsvLayout layout = timed_csv::ScanTimedCsv(scan, tab);
    std::istringstream in(text);
    if (timed_csv::BuildTimedCsvDocument(in, layout, root)) PX_PLUGIN::Call(root, &PX_PLUGIN::IMgjsonRoot_v1::Commit, nullptr);
  } catch (const PX_PLUGIN::PX_PluginException &) {
  }
  root->Release();
  owner->Dispose();
  std::error_code ignored;
  std::filesystem::remove(output, ignored);
  return 0;
}
