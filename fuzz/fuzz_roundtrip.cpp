// The round trip from arbitrary bytes: the bytes choose the build operations of a
// document, which is committed and read back through the manager. The commit must end as
// the document says, and a committed file must open and give back what was put in; any
// difference aborts.
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "fuzz_paths.hpp"
#include "../tests/plugin_model/roundtrip_check.hpp"
#include "fuzz_manager.hpp"
#include "plugin_model/mgjson_writer.hpp"
#include "plugin_model/root_impl.hpp"

namespace {

using namespace PX_PLUGIN;

[[noreturn]] void Fail(const std::string &why) {
  std::fprintf(stderr, "round trip failed: %s\n", why.c_str());
  std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const std::filesystem::path path = FuzzScratchPath("roundtrip.mgjson");
  RootSettings settings;
  settings.outputPath = path.string();
  settings.makeWriter = MakeMgjsonWriter;
  const auto owner = MgjsonRootImpl::Create(std::move(settings));
  IMgjsonRoot_v1 *root = owner->HandOut();
  roundtrip::ByteChoices choices(data, size);
  roundtrip::DocumentBuilder builder(choices, root);
  const roundtrip::ExpectedDocument expected = builder.Build();
  const std::uint32_t status = root->Commit(nullptr, nullptr);
  root->Release();
  owner->Dispose();
  if (!builder.problems().empty()) Fail(builder.problems().front());
  if (status != expected.CommitStatus()) Fail("commit status " + std::to_string(status));
  if (status == PX_PLUGIN_OK) {
    const auto differences = roundtrip::FileComparison(FuzzManager(), expected).Compare(path.string());
    if (!differences.empty()) Fail(differences.front());
  }
  std::filesystem::remove(path);
  return 0;
}
