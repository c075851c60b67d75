#include "converters/json_start_check.hpp"

#include <atomic>

#include "api/px_exception.hpp"
#include "file_access/file_mapper.hpp"

namespace ns_sensor {
namespace {

// Set by the check, read by the conversion it precedes. Conversions run one at a time;
// the atomic only keeps a misuse from being undefined behaviour.
std::atomic<JsonTopValue> lastTopValue{JsonTopValue::Object};

bool IsJsonWhitespace(char byte) { return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r'; }

}  // namespace

bool StartsAsJsonContainer(std::string_view bytes, JsonTopValue &top) {
  if (bytes.size() < 2) return false;
  std::size_t at = 0;
  const std::size_t lastByte = bytes.size() - 1;
  while (at < lastByte && IsJsonWhitespace(bytes[at])) ++at;
  if (at == lastByte) return false;
  if (bytes[at] == '[') {
    top = JsonTopValue::Array;
    return true;
  }
  if (bytes[at] == '{') {
    top = JsonTopValue::Object;
    return true;
  }
  return false;
}

bool CheckJsonStart(const ConversionRequest &request) {
  JsonTopValue top = JsonTopValue::Object;
  try {
    const FileMapper input(request.inputPath);
    if (!StartsAsJsonContainer(input.view(), top)) return false;
  } catch (const PX_Exception &) {
    return false;  // what cannot be mapped is no JSON document for this converter
  }
  lastTopValue.store(top, std::memory_order_relaxed);
  return true;
}

JsonTopValue LastCheckedJsonTopValue() { return lastTopValue.load(std::memory_order_relaxed); }

}  // namespace ns_sensor
