// One KLV of a telemetry payload: a four-character key, a type character, the bytes of
// one sample and the sample count, then the value padded to a multiple of four bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace gpmf {

constexpr char kNestType = 0;      // the value is more KLVs
constexpr char kComplexType = '?';  // the layout comes from the stream's TYPE

struct Klv {
  std::uint32_t key = 0;
  char type = 0;
  std::uint32_t sampleBytes = 0;  // structure size
  std::uint32_t repeat = 0;       // samples
  std::size_t value = 0;          // where the value starts, in the payload
  std::size_t next = 0;           // where the next KLV starts
  std::size_t valueBytes() const { return std::size_t{sampleBytes} * repeat; }
};

// The KLV at `at`, which must end (value included) by `end`; kCorruptPayload otherwise,
// with fileOffset + at as the detail.
Klv ReadKlv(const unsigned char *payload, std::size_t at, std::size_t end, std::uint64_t fileOffset);

// Bytes of one element of a type; 0 for types without fixed elements (nest, complex,
// compressed) and for unknown types.
std::size_t ElementBytes(char type);
bool IsTextType(char type);  // 'c', 'u': a sample is one text

// A number element as a double (fixed point converted); NaN for non-numeric types.
double ReadNumber(char type, const unsigned char *at);

// Text bytes up to the first NUL, as UTF-8 ('c' text is Latin-1, 'u' already UTF-8).
std::string ReadText(char type, const unsigned char *at, std::size_t bytes);

// The strings of a text KLV: one string of `repeat` characters when the structure size is 1,
// else `repeat` strings of structure-size characters.
std::vector<std::string> ReadStrings(const unsigned char *payload, const Klv &klv);

// The fields of a TYPE text ("lllllllSS", "f[8]L"); empty when it cannot be read.
std::vector<char> ExpandTypeText(const std::string &text);

std::string KeyText(std::uint32_t key);

}  // namespace gpmf
