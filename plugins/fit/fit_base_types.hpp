// FIT base types: sizes, the "invalid" value that means a field is absent, and reading
// values out of a field's bytes in either byte order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace palvex_fit {

enum class ValueKind : std::uint8_t { Unsigned, Signed, Float, Text, Bytes };

struct BaseType {
  std::uint8_t size;      // bytes per element
  ValueKind kind;
  std::uint64_t invalid;  // raw element value meaning "no value"
};

// The base type of a base type byte (its low five bits), or null for numbers the format
// does not define.
const BaseType *FindBaseType(std::uint8_t baseTypeByte);

// One field of a data message, pointing into the message's bytes.
struct FieldView {
  std::uint8_t number = 0;
  std::uint8_t size = 0;
  std::uint8_t baseTypeByte = 0;
  bool bigEndian = false;
  const std::uint8_t *bytes = nullptr;

  // Elements in the field; 0 when the base type is unknown or the size is not a
  // multiple of its element size (such a field is absent).
  std::size_t ElementCount() const;
  // Element `index` as a number before any scaling; nullopt when it holds the invalid
  // value, is out of range, is not finite, or the field is text or malformed.
  std::optional<double> Number(std::size_t index = 0) const;
  // The same element as its raw unsigned bits (for fields read bit by bit).
  std::optional<std::uint64_t> Raw(std::size_t index = 0) const;
  // A text field up to its first NUL; empty when absent.
  std::string_view Text() const;
};

// An unsigned number of `size` bytes (at most 8) in the given byte order.
std::uint64_t ReadUnsigned(const std::uint8_t *bytes, std::size_t size, bool bigEndian);

}  // namespace palvex_fit
