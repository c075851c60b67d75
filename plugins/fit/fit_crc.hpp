// The 16-bit check value that guards a FIT header and each file's bytes (reflected
// polynomial 0xA001, start 0, no final XOR).
#pragma once

#include <cstddef>
#include <cstdint>

namespace palvex_fit {

// The check value after `count` more bytes, starting from `crc` (0 for a fresh one).
std::uint16_t UpdateCrc(std::uint16_t crc, const std::uint8_t *bytes, std::size_t count);

}  // namespace palvex_fit
