#include "fit_header.hpp"

#include <cstring>

#include "fit_base_types.hpp"
#include "fit_crc.hpp"

namespace palvex_fit {
namespace {

constexpr std::size_t kSignatureOffset = 8;
constexpr char kSignature[] = ".FIT";
constexpr std::size_t kDataSizeOffset = 4;
constexpr std::size_t kHeaderCrcOffset = 12;

}  // namespace

std::optional<FitHeader> ReadFitHeader(const std::uint8_t *bytes, std::size_t available) {
  if (available < kShortHeaderSize) return std::nullopt;
  FitHeader header;
  header.size = bytes[0];
  const bool sizeKnown = header.size == kShortHeaderSize || header.size >= kHeaderSize;
  if (!sizeKnown || std::memcmp(bytes + kSignatureOffset, kSignature, 4) != 0) return std::nullopt;
  header.dataSize = static_cast<std::uint32_t>(ReadUnsigned(bytes + kDataSizeOffset, 4, false));
  if (header.size >= kHeaderSize) {
    if (available < kHeaderSize) return std::nullopt;
    const auto stored = static_cast<std::uint16_t>(ReadUnsigned(bytes + kHeaderCrcOffset, 2, false));
    header.headerCrcMatches = stored == 0 || stored == UpdateCrc(0, bytes, kHeaderCrcOffset);
  }
  return header;
}

}  // namespace palvex_fit
