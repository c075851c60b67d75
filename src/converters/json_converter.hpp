// The converter of plain JSON: the document's structure becomes the outline of an MGJSON
// file with static data only (json_document.hpp). There is no time axis.
#pragma once

#include <cstdint>

#include "converters/converter_base.hpp"

namespace ns_sensor {

class JsonConverter : public PX_ConverterHandlerBase {
 public:
  explicit JsonConverter(ConversionRequest request);

  // Parses the input (1506 when it is no valid JSON) and writes the outline of its top
  // value, which the last JSON start check saw as an array or an object. False, and no
  // file is finished, when the document holds nothing convertible.
  bool Convert() override;

  // Match names used so far.
  std::uint32_t MatchNamesUsed() const { return matchNames_; }

 private:
  ConversionRequest work_;  // Convert's own copy, as every built-in converter keeps one
  std::uint32_t matchNames_ = 0;
};

}  // namespace ns_sensor
