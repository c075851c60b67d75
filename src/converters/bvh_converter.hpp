// The converter of motion capture files (Biovision Hierarchy): the skeleton becomes a tree
// of groups, the frames the samples of its channels, the frame time the timecode rate.
#pragma once

#include <string>
#include <string_view>

#include "converters/converter_base.hpp"

namespace ns_sensor {

inline constexpr const char *kBvhConverterIdentifier = "com.corvane.sensor.bvh";

class BvhConverter : public PX_ConverterHandlerBase {
 public:
  explicit BvhConverter(ConversionRequest request);

  // Reads the skeleton and the timing, then writes the document while the frames are read,
  // so that no frame is held in memory. Raises BvhCannotOpen (1006), BvhNotHierarchy
  // (1001), BvhBadFrameTime (1508), BvhMalformed or BvhTooDeep (1509), and the session's
  // ConverterFailure or WriterFailure.
  bool Convert() override;

 private:
  // Convert's own copy of the request, as every built-in converter keeps one.
  ConversionRequest work_;
};

// The conversion of a whole motion capture text into a document written at outputPath
// (context is the converter, for the session); the file's part of BvhConverter::Convert.
bool ConvertBvhText(std::string_view text, const std::string &outputPath, void *context);

// The registry's check: whether the file begins with HIERARCHY and ROOT. Raises
// BvhCannotOpen (1006) when the file cannot be opened.
bool IsBvhFile(const ConversionRequest &request);

}  // namespace ns_sensor
