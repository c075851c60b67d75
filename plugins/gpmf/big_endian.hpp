// Every integer in the boxes and in the KLV payloads is stored big-endian.
#pragma once

#include <cstdint>

namespace gpmf {

inline std::uint16_t ReadU16(const unsigned char *p) {
  return static_cast<std::uint16_t>((p[0] << 8) | p[1]);
}
inline std::uint32_t ReadU32(const unsigned char *p) {
  return (std::uint32_t{p[0]} << 24) | (std::uint32_t{p[1]} << 16) | (std::uint32_t{p[2]} << 8) | p[3];
}
inline std::uint64_t ReadU64(const unsigned char *p) {
  return (std::uint64_t{ReadU32(p)} << 32) | ReadU32(p + 4);
}

// Four characters as one number, the way box types and KLV keys are compared.
constexpr std::uint32_t FourCc(const char (&text)[5]) {
  return (std::uint32_t(static_cast<unsigned char>(text[0])) << 24) |
         (std::uint32_t(static_cast<unsigned char>(text[1])) << 16) |
         (std::uint32_t(static_cast<unsigned char>(text[2])) << 8) | static_cast<unsigned char>(text[3]);
}

}  // namespace gpmf
