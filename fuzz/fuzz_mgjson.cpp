// The whole read of an MGJSON file from its bytes: version choice, scan, validation and
// (where the file has them) the dynamic samples.
#include <cstdint>
#include <stdexcept>

#include "api/px_exception.hpp"
#include "mgjson_read/mgjson_parser.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const auto *bytes = reinterpret_cast<const char *>(data);
  try {
    auto parser = ns_sensor::CreateMgjsonParser(bytes, size);
    parser->ParseBytes(bytes, size);
  } catch (const ns_sensor::PX_Exception &) {
  } catch (const std::invalid_argument &) {  // standard conversions reported as code 23
  } catch (const std::out_of_range &) {
  }
  return 0;
}
