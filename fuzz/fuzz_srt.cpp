// The drone telemetry subtitle reader from any bytes: the check on them, then the document,
// written to a scratch output that is removed after each run.
#include <cstdint>
#include <filesystem>
#include <sstream>
#include <string>
#include <system_error>

#include "fuzz_paths.hpp"
#include "plugin_model/mgjson_writer.hpp"
#include "plugin_model/root_impl.hpp"
#include "srt_document.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  static const std::string output = FuzzScratchPath("srt.mgjson");
  const std::string text(reinterpret_cast<const char *>(data), size);
  srt::LooksLikeDroneSrt(text, true);
  PX_PLUGIN::RootSettings settings;
  settings.outputPath = output;
  settings.makeWriter = PX_PLUGIN::MakeMgjsonWriter;
  const auto owner = PX_PLUGIN::MgjsonRootImpl::Create(std::move(settings));
  PX_PLUGIN::IMgjsonRoot_v1 *root = owner->HandOut();
  try {
    std::istringstream in(text);
    if (srt::BuildSrtDocument(in, root)) PX_PLUGIN::Call(root, &PX_PLUGIN::IMgjsonRoot_v1::Commit, nullptr);
  } catch (const PX_PLUGIN::PX_PluginException &) {
  }
  root->Release();
  owner->Dispose();
  std::error_code ignored;
  std::filesystem::remove(output, ignored);
  return 0;
}
