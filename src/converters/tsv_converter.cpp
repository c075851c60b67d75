// Tab-separated values: the comma converter with the tab as delimiter.
#include <memory>

#include "converters/converter_registry.hpp"
#include "converters/delimited_converter.hpp"

namespace ns_sensor {

extern const ConverterKind kTsvConverter;

namespace {

constexpr DelimitedFormat kTsvFormat = {'\t', "com.corvane.sensor.tsv"};

// Any file can be read as tab-separated values; the file is not opened.
bool AcceptsAnyFile(const ConversionRequest &) { return true; }

std::shared_ptr<PX_ConverterHandlerBase> MakeTsvConverter(const ConversionRequest &request) {
  return std::make_shared<DelimitedConverter>(request, kTsvFormat);
}

}  // namespace

const ConverterKind kTsvConverter = {AcceptsAnyFile, MakeTsvConverter};

}  // namespace ns_sensor
