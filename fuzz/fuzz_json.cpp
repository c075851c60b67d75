// The JSON converter from any bytes, through the manager: bytes the JSON check accepts are
// written to a .json file and opened. The open must either succeed (the converted file is
// read back) or fail with 1506; any other outcome aborts.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "fuzz_paths.hpp"
#include "converters/json_start_check.hpp"
#include "fuzz_manager.hpp"
#include "palvex/host.hpp"

namespace {

constexpr std::uint32_t kCannotBeConverted = 1506;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char *>(data), size);
  ns_sensor::JsonTopValue top;
  if (!ns_sensor::StartsAsJsonContainer(bytes, top)) return 0;
  const std::filesystem::path path = FuzzScratchPath("input.json");
  std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  ISensorFileHandler *handler = nullptr;
  palvex::host::ErrorLog errors;
  FuzzManager().OpenFile(&handler, path.string().c_str(), nullptr, &errors);
  if (handler != nullptr) FuzzManager().CloseFile(&handler, &errors);
  std::filesystem::remove(path);
  for (const auto &error : errors.errors) {
    if (error.code == kCannotBeConverted) continue;
    std::fprintf(stderr, "unexpected error %u: %s\n", error.code, error.message.c_str());
    std::abort();
  }
  return 0;
}
