#include "localisation/utf.hpp"

#include <bit>

#include "api/px_exception.hpp"

namespace ns_sensor {

std::size_t EncodeCodePoint(std::uint32_t c, char *out, std::size_t room) {
  if (c > 0x10FFFF) Raise(Msg::BadUtf);
  if (c >= 0xD800 && c <= 0xDFFF) Raise(Msg::BadCodePoint);
  const unsigned bits = static_cast<unsigned>(std::bit_width(c));
  const unsigned groups = (bits + 5) / 6;
  std::size_t n = groups;
  if (groups > 0 && (c >> (6 * (groups - 1))) > (128u >> groups) - 1) ++n;
  if (room < n) return 0;
  for (std::size_t i = n - 1; i > 0; --i) {
    out[i] = static_cast<char>(0x80 | (c & 0x3F));
    c >>= 6;
  }
  out[0] = static_cast<char>(((0xFFu << (8 - n)) | c) & 0xFF);
  return n;
}

ChunkResult Utf16ChunkToUtf8(const char16_t *units, std::size_t count, char *out) {
  std::size_t produced = 0;
  std::size_t consumed = 0;
  while (consumed < count && produced < kUtf8ChunkBytes) {
    const char16_t unit = units[consumed];
    if (unit <= 0x7F) {
      out[produced++] = static_cast<char>(unit);
      ++consumed;
      continue;
    }
    std::uint32_t codePoint = unit;
    std::size_t width = 1;
    if (unit >= 0xD800 && unit <= 0xDFFF) {
      if (unit > 0xDBFF) Raise(Msg::BadUtf16Low);
      if (count - consumed < 2) break;  // the partner may come with the next call
      const char16_t low = units[consumed + 1];
      if (low < 0xDC00 || low > 0xDFFF) Raise(Msg::BadUtf16Missing);
      codePoint = (((unit & 0x3FFu) << 10) | (low & 0x3FFu)) + 0x10000;
      width = 2;
    }
    const std::size_t written = EncodeCodePoint(codePoint, out + produced, kUtf8ChunkBytes - produced);
    if (written == 0) break;
    produced += written;
    consumed += width;
  }
  return {produced, consumed};
}

std::string Utf16ToUtf8(std::u16string_view text) {
  std::string result;
  result.reserve(text.size() * 2);
  char chunk[kUtf8ChunkBytes];
  std::size_t at = 0;
  while (at < text.size()) {
    const ChunkResult step = Utf16ChunkToUtf8(text.data() + at, text.size() - at, chunk);
    if (step.bytesProduced == 0) Raise(Msg::BadUnicode);
    result.append(chunk, step.bytesProduced);
    at += step.unitsConsumed;
  }
  return result;
}

std::u16string AsciiToUtf16(std::string_view text) {
  std::u16string result;
  result.reserve(text.size());
  for (const char byte : text) {
    if (static_cast<unsigned char>(byte) > 127) return {};
    result.push_back(static_cast<char16_t>(byte));
  }
  return result;
}

std::u16string Utf8ToUtf16(std::string_view text) {
  std::u16string result;
  result.reserve(text.size());
  std::size_t i = 0;
  while (i < text.size()) {
    const auto lead = static_cast<unsigned char>(text[i]);
    std::size_t length = 0;
    std::uint32_t codePoint = 0;
    std::uint32_t minimum = 0;
    if (lead < 0x80) {
      length = 1, codePoint = lead;
    } else if ((lead & 0xE0) == 0xC0) {
      length = 2, codePoint = lead & 0x1F, minimum = 0x80;
    } else if ((lead & 0xF0) == 0xE0) {
      length = 3, codePoint = lead & 0x0F, minimum = 0x800;
    } else if ((lead & 0xF8) == 0xF0) {
      length = 4, codePoint = lead & 0x07, minimum = 0x10000;
    }
    bool valid = length != 0 && i + length <= text.size();
    for (std::size_t k = 1; valid && k < length; ++k) {
      const auto next = static_cast<unsigned char>(text[i + k]);
      valid = (next & 0xC0) == 0x80;
      codePoint = (codePoint << 6) | (next & 0x3F);
    }
    valid = valid && codePoint >= minimum && codePoint <= 0x10FFFF &&
            !(codePoint >= 0xD800 && codePoint <= 0xDFFF);
    if (!valid) {
      result.push_back(u'\uFFFD');
      ++i;
      continue;
    }
    if (codePoint >= 0x10000) {
      codePoint -= 0x10000;
      result.push_back(static_cast<char16_t>(0xD800 | (codePoint >> 10)));
      result.push_back(static_cast<char16_t>(0xDC00 | (codePoint & 0x3FF)));
    } else {
      result.push_back(static_cast<char16_t>(codePoint));
    }
    i += length;
  }
  return result;
}

}  // namespace ns_sensor
