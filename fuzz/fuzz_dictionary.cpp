// Dictionary resources and the Unicode conversions behind every message.
#include <cstdint>
#include <span>

#include "api/px_exception.hpp"
#include "localisation/dictionary.hpp"
#include "localisation/utf.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const auto bytes = std::as_bytes(std::span(data, size));
  const auto dictionary = ns_sensor::ParsedDictionary::Parse(bytes);
  const std::u16string wide = ns_sensor::Utf8ToUtf16({reinterpret_cast<const char *>(data), size});
  try {
    ns_sensor::Utf16ToUtf8(std::u16string_view(reinterpret_cast<const char16_t *>(wide.data()), wide.size()));
    const std::u16string raw(reinterpret_cast<const char16_t *>(data), size / 2);
    ns_sensor::Utf16ToUtf8(raw);
  } catch (const ns_sensor::PX_Exception &) {
  }
  return dictionary->size() > size ? 1 : 0;
}
