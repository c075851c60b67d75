// Helpers of the file handler tests: handlers over the bundled examples and over small
// files written by a test, and the samples a query selected.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "file_access/sensor_file_handler.hpp"
#include "mgjson_read/mgjson_test_support.hpp"

namespace ns_sensor::testing {

inline std::string ExamplePath(const std::string &name) {
  return std::string(PALVEX_SOURCE_DIR) + "/examples/" + name;
}

inline std::unique_ptr<SensorFileHandlerImpl> OpenHandler(const std::string &path) {
  return std::make_unique<SensorFileHandlerImpl>(path, path, InputKind::MgjsonByExtension);
}

// The samples a query left in its record, as "time=value" texts.
inline std::vector<std::string> Taken(PX_SampleSelection &selection) {
  std::vector<std::string> taken;
  SampleView sample;
  while (selection.Next(sample)) taken.push_back(std::string(sample.time) + "=" + std::string(sample.text));
  return taken;
}

}  // namespace ns_sensor::testing
