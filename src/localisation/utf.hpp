// Conversions between UTF-8 and UTF-16 for messages, keys and parameters.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace ns_sensor {

// Size of the output chunk of the UTF-16 to UTF-8 conversion.
inline constexpr std::size_t kUtf8ChunkBytes = 16384;

// Writes the UTF-8 form of one code point (0x80 and above) into out. Returns the byte
// count, or 0 without writing when room is too small. Raises BadUTF above 0x10FFFF and
// BadCodePoint for surrogates.
std::size_t EncodeCodePoint(std::uint32_t codePoint, char *out, std::size_t room);

struct ChunkResult {
  std::size_t bytesProduced;
  std::size_t unitsConsumed;
};

// Converts as many units as fit into one output chunk of kUtf8ChunkBytes. A high
// surrogate whose partner has not arrived yet stays unconsumed.
ChunkResult Utf16ChunkToUtf8(const char16_t *units, std::size_t count, char *out);

// Whole-text conversion; raises BadUnicode for a lone high surrogate at the end.
std::string Utf16ToUtf8(std::u16string_view text);

// Widens each byte; any byte above 127 gives an empty result (deliberately no error).
std::u16string AsciiToUtf16(std::string_view text);

// Decodes UTF-8 leniently: a byte sequence that is not UTF-8 becomes U+FFFD, so a
// message parameter (a path, say) can always be shown.
std::u16string Utf8ToUtf16(std::string_view text);

}  // namespace ns_sensor
