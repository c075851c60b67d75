// Comma-separated values.
#include <memory>

#include "converters/converter_registry.hpp"
#include "converters/delimited_converter.hpp"

namespace ns_sensor {

extern const ConverterKind kCsvConverter;

namespace {

constexpr DelimitedFormat kCsvFormat = {',', "com.corvane.sensor.csv"};

// Any file can be read as comma-separated values; the file is not opened.
bool AcceptsAnyFile(const ConversionRequest &) { return true; }

std::shared_ptr<PX_ConverterHandlerBase> MakeCsvConverter(const ConversionRequest &request) {
  return std::make_shared<DelimitedConverter>(request, kCsvFormat);
}

}  // namespace

const ConverterKind kCsvConverter = {AcceptsAnyFile, MakeCsvConverter};

}  // namespace ns_sensor
