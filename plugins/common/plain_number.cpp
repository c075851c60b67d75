#include "plain_number.hpp"

#include <charconv>
#include <cmath>

namespace palvex_plugins {

std::optional<double> ReadFiniteNumber(std::string_view text) {
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);  // from_chars takes no sign but '-'
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || error != std::errc() || end != text.data() + text.size() || !std::isfinite(value)) {
    return std::nullopt;
  }
  return value;
}

}  // namespace palvex_plugins
