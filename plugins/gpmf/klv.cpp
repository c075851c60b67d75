#include "klv.hpp"

#include <cmath>
#include <cstring>
#include <limits>

#include "big_endian.hpp"
#include "gpmf_errors.hpp"

namespace gpmf {
namespace {

constexpr std::size_t kKlvHeaderBytes = 8;
constexpr std::size_t kMaxTypeFields = 255;  // a sample has at most 255 bytes, one per field at least

template <typename T>
T Bits(std::uint64_t raw) {
  T value;
  std::memcpy(&value, &raw, sizeof value);
  return value;
}

void AppendLatin1(std::string &out, unsigned char c) {
  if (c < 0x80) {
    out.push_back(static_cast<char>(c));
  } else {
    out.push_back(static_cast<char>(0xC0 | (c >> 6)));
    out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
  }
}

}  // namespace

Klv ReadKlv(const unsigned char *payload, std::size_t at, std::size_t end, std::uint64_t fileOffset) {
  if (at > end || end - at < kKlvHeaderBytes) Fail(kCorruptPayload, static_cast<std::int64_t>(fileOffset + at));
  const unsigned char *header = payload + at;
  Klv klv;
  klv.key = ReadU32(header);
  klv.type = static_cast<char>(header[4]);
  klv.sampleBytes = header[5];
  klv.repeat = ReadU16(header + 6);
  klv.value = at + kKlvHeaderBytes;
  if (klv.valueBytes() > end - klv.value) Fail(kCorruptPayload, static_cast<std::int64_t>(fileOffset + at));
  const std::size_t padded = (klv.valueBytes() + 3) / 4 * 4;
  // Padding that a cut payload lost costs nothing: the value is whole.
  klv.next = padded > end - klv.value ? end : klv.value + padded;
  return klv;
}

std::size_t ElementBytes(char type) {
  switch (type) {
    case 'b': case 'B': case 'c': case 'u': return 1;
    case 's': case 'S': return 2;
    case 'l': case 'L': case 'f': case 'q': case 'F': return 4;
    case 'j': case 'J': case 'd': case 'Q': return 8;
    case 'G': case 'U': return 16;
    default: return 0;
  }
}

bool IsTextType(char type) { return type == 'c' || type == 'u'; }

double ReadNumber(char type, const unsigned char *at) {
  switch (type) {
    case 'b': return static_cast<std::int8_t>(at[0]);
    case 'B': return at[0];
    case 's': return static_cast<std::int16_t>(ReadU16(at));
    case 'S': return ReadU16(at);
    case 'l': return static_cast<std::int32_t>(ReadU32(at));
    case 'L': return ReadU32(at);
    case 'j': return static_cast<double>(static_cast<std::int64_t>(ReadU64(at)));
    case 'J': return static_cast<double>(ReadU64(at));
    case 'f': return Bits<float>(ReadU32(at));
    case 'd': return Bits<double>(ReadU64(at));
    case 'q': return static_cast<std::int32_t>(ReadU32(at)) / 65536.0;
    case 'Q': return static_cast<double>(static_cast<std::int64_t>(ReadU64(at))) / 4294967296.0;
    default: return std::numeric_limits<double>::quiet_NaN();
  }
}

std::string ReadText(char type, const unsigned char *at, std::size_t bytes) {
  std::string text;
  for (std::size_t i = 0; i < bytes && at[i] != 0; ++i) {
    if (type == 'u') {
      text.push_back(static_cast<char>(at[i]));
    } else {
      AppendLatin1(text, at[i]);
    }
  }
  return text;
}

std::vector<std::string> ReadStrings(const unsigned char *payload, const Klv &klv) {
  std::vector<std::string> strings;
  const unsigned char *value = payload + klv.value;
  if (klv.sampleBytes == 1) {
    strings.push_back(ReadText(klv.type, value, klv.repeat));
    return strings;
  }
  for (std::uint32_t i = 0; i < klv.repeat; ++i) {
    strings.push_back(ReadText(klv.type, value + std::size_t{i} * klv.sampleBytes, klv.sampleBytes));
  }
  return strings;
}

std::vector<char> ExpandTypeText(const std::string &text) {
  std::vector<char> fields;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char type = text[i];
    if (ElementBytes(type) == 0) return {};
    std::size_t count = 1;
    if (i + 1 < text.size() && text[i + 1] == '[') {
      const std::size_t close = text.find(']', i + 2);
      if (close == std::string::npos || close == i + 2 || close > i + 5) return {};
      count = 0;
      for (std::size_t d = i + 2; d < close; ++d) {
        if (text[d] < '0' || text[d] > '9') return {};
        count = count * 10 + static_cast<std::size_t>(text[d] - '0');
      }
      i = close;
    }
    if (fields.size() + count > kMaxTypeFields) return {};
    fields.insert(fields.end(), count, type);
  }
  return fields;
}

std::string KeyText(std::uint32_t key) {
  std::string text;
  for (int shift = 24; shift >= 0; shift -= 8) {
    const char c = static_cast<char>((key >> shift) & 0xFF);
    text.push_back(c >= 0x20 && c < 0x7F ? c : '?');
  }
  return text;
}

}  // namespace gpmf
