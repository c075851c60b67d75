// The ELF section finder over any bytes: whatever it finds must lie inside the input.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>

#include "platform/elf_sections.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const std::span<const std::byte> image(reinterpret_cast<const std::byte *>(data), size);
  for (const char *name : {"PXPLUGINUIDS", "MODULE_IDENTIFIER", ".shstrtab"}) {
    const auto found = palvex::platform::FindElfSection(image, name);
    if (!found || found->empty()) continue;
    const auto start = reinterpret_cast<std::uintptr_t>(found->data());
    const auto begin = reinterpret_cast<std::uintptr_t>(image.data());
    if (start < begin || start - begin > size || found->size() > size - (start - begin)) std::abort();
  }
  return 0;
}
