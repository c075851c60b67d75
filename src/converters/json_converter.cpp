#include "converters/json_converter.hpp"

#include <memory>
#include <string_view>

#include "converters/converter_registry.hpp"
#include "converters/json_document.hpp"
#include "converters/json_start_check.hpp"
#include "converters/json_text.hpp"
#include "converters/native_converter_session.hpp"
#include "file_access/file_mapper.hpp"

namespace ns_sensor {

extern const ConverterKind kJsonConverter;

namespace {

constexpr std::string_view kJsonConverterIdentifier = "com.corvane.sensor.json";

std::shared_ptr<PX_ConverterHandlerBase> MakeJsonConverter(const ConversionRequest &request) {
  return std::make_shared<JsonConverter>(request);
}

}  // namespace

const ConverterKind kJsonConverter = {CheckJsonStart, MakeJsonConverter};

JsonConverter::JsonConverter(ConversionRequest request)
    : PX_ConverterHandlerBase(request), work_(std::move(request)) {}

bool JsonConverter::Convert() {
  const JsonTopValue top = LastCheckedJsonTopValue();
  auto document = std::make_unique<JsonDocument>();
  {
    const FileMapper input(work_.inputPath);
    ParseJsonText(input.view(), *document);
  }
  NativeConverterSession session(this, work_.outputPath);
  session.SetConverterIdentifier(kJsonConverterIdentifier);
  bool added = false;
  session.Fill([&](PX_PLUGIN::IMgjsonRoot_v1 *root) { added = BuildJsonOutline(*document, top, root, matchNames_); });
  // The object model holds copies of every text: the parsed document can go before the
  // writer needs memory of its own.
  document.reset();
  return added && session.Finish();
}

}  // namespace ns_sensor
