// The handler of a converted input whose MGJSON file nobody asked to keep: the file lives
// exactly as long as the handler and is deleted after it (and at once when the handler
// cannot be made).
#pragma once

#include <string>
#include <utility>

#include "api/temporary_file.hpp"
#include "file_access/sensor_file_handler.hpp"

namespace ns_sensor {

// A base made before the handler and destroyed after it, so the file outlives every use.
struct ConvertedFileOwner {
  TemporaryFile convertedFile;
};

class ConvertedFileHandler : private ConvertedFileOwner, public SensorFileHandlerImpl {
 public:
  ConvertedFileHandler(std::string inputPath, TemporaryFile convertedFile)
      : ConvertedFileOwner{std::move(convertedFile)},
        SensorFileHandlerImpl(std::move(inputPath), ConvertedFileOwner::convertedFile.path(), InputKind::Converted) {}
};

}  // namespace ns_sensor
