// An action-camera file from its bytes: the check, the box walk, the sample tables, the
// KLV payloads and the document built from them (not written: nothing to commit to).
#include <cstdint>
#include <memory>
#include <string_view>

#include "byte_source.hpp"
#include "gpmf_conversion.hpp"
#include "plugin_model/root_impl.hpp"
#include "track_index.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char *>(data), size);
  gpmf::MemorySource check(bytes);
  gpmf::LooksLikeIsoMedia(check);
  PX_PLUGIN::RootSettings settings;
  settings.outputPath = "unused.mgjson";
  const std::shared_ptr<PX_PLUGIN::MgjsonRootImpl> owner = PX_PLUGIN::MgjsonRootImpl::Create(std::move(settings));
  PX_PLUGIN::IMgjsonRoot_v1 *root = owner->HandOut();
  try {
    gpmf::ConvertRecording(1, [&](std::size_t) { return std::make_unique<gpmf::MemorySource>(bytes); }, root);
  } catch (const PX_PLUGIN::PX_PluginException &) {
  }
  root->Release();
  owner->Dispose();
  return 0;
}
