// The whole read of an MGJSON file from its bytes: version choice, scan, validation, the
// dynamic samples (compaction, index, sample sets) and requests for every sample set.
#include <cstdint>
#include <stdexcept>

#include "api/px_exception.hpp"
#include "mgjson_read/mgjson_parser.hpp"

namespace {

void Drain(ns_sensor::SampleCursor cursor) {
  cursor.Skip(1);
  ns_sensor::SampleView sample;
  while (cursor.Next(sample)) {
  }
}

// Both directions, with neighbours, and by index, for every ID of the outline.
void ReadEverySampleSet(const ns_sensor::PX_MgjsonParser &parser) {
  const ns_sensor::SampleReader reader = parser.samples().Reader();
  parser.samples().index().ForEach([&](std::string_view id, const ns_sensor::SampleSetEntry &) {
    try {
      Drain(reader.SelectBetween(id, {0, 1}, {UINT32_MAX, 1}, true));
      Drain(reader.SelectBetween(id, {7, 2}, {1, 3}, false));
      Drain(reader.SelectByIndex(id, 1, 3));
    } catch (const ns_sensor::PX_Exception &) {
    }
  });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const auto *bytes = reinterpret_cast<const char *>(data);
  try {
    auto parser = ns_sensor::CreateMgjsonParser(bytes, size);
    parser->ParseBytes(bytes, size);
    ReadEverySampleSet(*parser);
  } catch (const ns_sensor::PX_Exception &) {
  } catch (const std::invalid_argument &) {  // standard conversions reported as code 23
  } catch (const std::out_of_range &) {
  }
  return 0;
}
