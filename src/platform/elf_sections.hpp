// Finding a named section in an ELF image (32- or 64-bit, either byte order) held in
// memory. Plain code over bytes: it trusts nothing in the image, so a truncated, corrupt
// or hostile file gives "not found" and never a read outside the span.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace palvex::platform {

// The file bytes of the first section whose name is exactly `name`, as a part of image.
// Empty for a section that occupies no file space (SHT_NOBITS). No value when the image
// is not ELF, has no such section, or when the section's bytes or the names that lead
// to it lie outside the image.
std::optional<std::span<const std::byte>> FindElfSection(std::span<const std::byte> image, std::string_view name);

}  // namespace palvex::platform
