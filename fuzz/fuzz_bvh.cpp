// The whole conversion of a motion capture file from its bytes: skeleton, timing, match
// names, frames and rotations, written to a scratch output that is removed after each run.
#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>

#include "fuzz_paths.hpp"
#include "api/px_exception.hpp"
#include "converters/bvh_converter.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  static const std::string output = FuzzScratchPath("bvh.mgjson");
  try {
    ns_sensor::ConvertBvhText(std::string_view(reinterpret_cast<const char *>(data), size), output, nullptr);
  } catch (const ns_sensor::PX_Exception &) {
  }
  std::error_code ignored;
  std::filesystem::remove(output, ignored);
  return 0;
}
