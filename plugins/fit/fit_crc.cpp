#include "fit_crc.hpp"

#include <array>

namespace palvex_fit {
namespace {

constexpr std::uint16_t kReflectedPolynomial = 0xA001;

// One table lookup per byte instead of eight shifts: the conversion hashes every byte twice.
constexpr std::array<std::uint16_t, 256> MakeTable() {
  std::array<std::uint16_t, 256> table{};
  for (unsigned byte = 0; byte < 256; ++byte) {
    std::uint16_t crc = static_cast<std::uint16_t>(byte);
    for (int bit = 0; bit < 8; ++bit) {
      crc = static_cast<std::uint16_t>((crc & 1u) ? (crc >> 1) ^ kReflectedPolynomial : crc >> 1);
    }
    table[byte] = crc;
  }
  return table;
}

constexpr std::array<std::uint16_t, 256> kTable = MakeTable();

}  // namespace

std::uint16_t UpdateCrc(std::uint16_t crc, const std::uint8_t *bytes, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    crc = static_cast<std::uint16_t>((crc >> 8) ^ kTable[(crc ^ bytes[i]) & 0xFFu]);
  }
  return crc;
}

}  // namespace palvex_fit
