// The FIT plug-in's whole conversion from bytes: both passes, the document built into a
// real root and committed to a scratch output that is removed after each run.
#include <cstdint>
#include <filesystem>
#include <sstream>
#include <string>
#include <system_error>

#include "fuzz_paths.hpp"
#include "fit_document.hpp"
#include "fit_survey.hpp"
#include "plugin_model/mgjson_writer.hpp"
#include "plugin_model/root_impl.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace PX_PLUGIN;
  static const std::string output = FuzzScratchPath("fit.mgjson");
  const std::string bytes(reinterpret_cast<const char *>(data), size);
  RootSettings settings;
  settings.outputPath = output;
  settings.makeWriter = MakeMgjsonWriter;
  const auto owner = MgjsonRootImpl::Create(std::move(settings));
  IMgjsonRoot_v1 *root = owner->HandOut();
  try {
    std::istringstream first(bytes), second(bytes);
    const palvex_fit::FitSurvey survey = palvex_fit::SurveyFit(first);
    if (palvex_fit::BuildFitDocument(survey, second, root).groups > 0) root->Commit(nullptr, nullptr);
  } catch (const PX_PluginException &) {
  }
  root->Release();
  owner->Dispose();
  std::error_code ignored;
  std::filesystem::remove(output, ignored);
  return 0;
}
