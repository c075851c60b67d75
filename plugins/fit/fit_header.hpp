// The file header that starts every FIT file (and every file chained after it).
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

namespace palvex_fit {

constexpr std::size_t kShortHeaderSize = 12;  // old files: no header CRC
constexpr std::size_t kHeaderSize = 14;
constexpr std::size_t kCrcSize = 2;

struct FitHeader {
  std::uint8_t size = 0;          // 12, or 14 and more (extra bytes are skipped)
  std::uint32_t dataSize = 0;     // bytes of records after the header
  bool headerCrcMatches = true;   // true when absent or stored as 0 ("not computed")
};

// Reads a header from its first `available` bytes (at least kHeaderSize, or the whole
// file when shorter). Nullopt when they are not a FIT header: a size byte of 12 or at
// least 14 and ".FIT" at offset 8.
std::optional<FitHeader> ReadFitHeader(const std::uint8_t *bytes, std::size_t available);

}  // namespace palvex_fit
