// Decimal fields as files and hosts write them: up to nine digits and nothing else. Read
// here as the standard conversion (std::stoi) reads them, without its copy and its
// locale; anything else is left to that conversion and its exceptions.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ns_sensor {

inline constexpr std::size_t kMostPlainDigits = 9;  // below 2^31 whatever they are

inline std::optional<std::int32_t> PlainDigits(std::string_view text) {
  if (text.empty() || text.size() > kMostPlainDigits) return std::nullopt;
  std::int32_t value = 0;
  for (const char digit : text) {
    if (digit < '0' || digit > '9') return std::nullopt;
    value = value * 10 + (digit - '0');
  }
  return value;
}

// std::stoi of the text, on plain digits without a copy.
inline int StandardInteger(std::string_view text) {
  if (const std::optional<std::int32_t> plain = PlainDigits(text)) return *plain;
  return std::stoi(std::string(text));
}

}  // namespace ns_sensor
