// What a converter is asked to do, copied by value into every converter.
#pragma once

#include <string>

namespace ns_sensor {

struct ConversionRequest {
  std::string inputPath;   // the sensor file, as the host named it
  std::string extension;   // its extension, ASCII lower-cased, without the dot
  std::string outputPath;  // the MGJSON file to write: exactly this path
};

}  // namespace ns_sensor
