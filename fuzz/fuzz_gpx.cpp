// The GPX plug-in's whole conversion from bytes: the check, both passes, the document
// built into a real root and committed to a scratch output that is removed after each run.
#include <cstdint>
#include <filesystem>
#include <new>
#include <sstream>
#include <string>
#include <system_error>

#include "fuzz_paths.hpp"
#include "gpx_document.hpp"
#include "gpx_sniff.hpp"
#include "plugin_model/mgjson_writer.hpp"
#include "plugin_model/root_impl.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace PX_PLUGIN;
  static const std::string output = FuzzScratchPath("gpx.mgjson");
  const std::string bytes(reinterpret_cast<const char *>(data), size);
  gpx::LooksLikeGpx(std::string_view(bytes).substr(0, gpx::kSniffLength));
  RootSettings settings;
  settings.outputPath = output;
  settings.makeWriter = MakeMgjsonWriter;
  const auto owner = MgjsonRootImpl::Create(std::move(settings));
  IMgjsonRoot_v1 *root = owner->HandOut();
  try {
    std::istringstream first(bytes), second(bytes);
    const gpx::GpxSurvey survey = gpx::SurveyGpx(first);
    gpx::BuildGpxDocument(second, survey, root);
    root->Commit(nullptr, nullptr);
  } catch (const PX_PluginException &) {
  }
  root->Release();
  owner->Dispose();
  std::error_code ignored;
  std::filesystem::remove(output, ignored);
  return 0;
}
