#include "fit_base_types.hpp"

#include <array>
#include <cmath>
#include <cstring>

namespace palvex_fit {
namespace {

constexpr std::uint8_t kBaseTypeNumberMask = 0x1F;

// Indexed by base type number (the byte's low five bits).
constexpr std::array<BaseType, 17> kBaseTypes = {{
    {1, ValueKind::Unsigned, 0xFF},                   // 0 enum
    {1, ValueKind::Signed, 0x7F},                     // 1 sint8
    {1, ValueKind::Unsigned, 0xFF},                   // 2 uint8
    {2, ValueKind::Signed, 0x7FFF},                   // 3 sint16
    {2, ValueKind::Unsigned, 0xFFFF},                 // 4 uint16
    {4, ValueKind::Signed, 0x7FFFFFFF},               // 5 sint32
    {4, ValueKind::Unsigned, 0xFFFFFFFF},             // 6 uint32
    {1, ValueKind::Text, 0x00},                       // 7 string
    {4, ValueKind::Float, 0xFFFFFFFF},                // 8 float32
    {8, ValueKind::Float, 0xFFFFFFFFFFFFFFFF},        // 9 float64
    {1, ValueKind::Unsigned, 0x00},                   // 10 uint8z
    {2, ValueKind::Unsigned, 0x0000},                 // 11 uint16z
    {4, ValueKind::Unsigned, 0x00000000},             // 12 uint32z
    {1, ValueKind::Bytes, 0xFF},                      // 13 byte
    {8, ValueKind::Signed, 0x7FFFFFFFFFFFFFFF},       // 14 sint64
    {8, ValueKind::Unsigned, 0xFFFFFFFFFFFFFFFF},     // 15 uint64
    {8, ValueKind::Unsigned, 0x0000000000000000},     // 16 uint64z
}};

double SignedValue(std::uint64_t raw, std::size_t size) {
  const unsigned unusedBits = static_cast<unsigned>(64 - 8 * size);
  return static_cast<double>(static_cast<std::int64_t>(raw << unusedBits) >> unusedBits);
}

double FloatValue(std::uint64_t raw, std::size_t size) {
  if (size == 4) {
    const auto bits = static_cast<std::uint32_t>(raw);
    float value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
  }
  double value;
  std::memcpy(&value, &raw, sizeof value);
  return value;
}

}  // namespace

const BaseType *FindBaseType(std::uint8_t baseTypeByte) {
  const std::size_t number = baseTypeByte & kBaseTypeNumberMask;
  return number < kBaseTypes.size() ? &kBaseTypes[number] : nullptr;
}

std::uint64_t ReadUnsigned(const std::uint8_t *bytes, std::size_t size, bool bigEndian) {
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < size; ++i) {
    const std::uint8_t byte = bytes[bigEndian ? i : size - 1 - i];
    value = (value << 8) | byte;
  }
  return value;
}

std::size_t FieldView::ElementCount() const {
  const BaseType *type = FindBaseType(baseTypeByte);
  if (type == nullptr || size % type->size != 0) return 0;
  return size / type->size;
}

std::optional<std::uint64_t> FieldView::Raw(std::size_t index) const {
  const BaseType *type = FindBaseType(baseTypeByte);
  if (type == nullptr || type->kind == ValueKind::Text || index >= ElementCount()) return std::nullopt;
  if (type->kind == ValueKind::Bytes) {
    // A byte array is absent only as a whole: every byte invalid.
    bool allInvalid = true;
    for (std::size_t i = 0; i < size && allInvalid; ++i) allInvalid = bytes[i] == type->invalid;
    if (allInvalid) return std::nullopt;
    return bytes[index];
  }
  const std::uint64_t raw = ReadUnsigned(bytes + index * type->size, type->size, bigEndian);
  if (raw == type->invalid) return std::nullopt;
  return raw;
}

std::optional<double> FieldView::Number(std::size_t index) const {
  const std::optional<std::uint64_t> raw = Raw(index);
  if (!raw) return std::nullopt;
  const BaseType *type = FindBaseType(baseTypeByte);
  switch (type->kind) {
    case ValueKind::Signed:
      return SignedValue(*raw, type->size);
    case ValueKind::Float: {
      const double value = FloatValue(*raw, type->size);
      if (!std::isfinite(value)) return std::nullopt;
      return value;
    }
    default:
      return static_cast<double>(*raw);
  }
}

std::string_view FieldView::Text() const {
  const BaseType *type = FindBaseType(baseTypeByte);
  if (type == nullptr || type->kind != ValueKind::Text) return {};
  const auto *text = reinterpret_cast<const char *>(bytes);
  const void *end = std::memchr(bytes, 0, size);
  return std::string_view(text, end ? static_cast<const std::uint8_t *>(end) - bytes : size);
}

}  // namespace palvex_fit
