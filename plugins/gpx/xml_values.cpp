#include "xml_values.hpp"

#include <cmath>

#include "plain_number.hpp"

namespace gpx {
namespace {

constexpr double kFullCircle = 360.0;

bool IsXmlSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

}  // namespace

std::string_view TrimXmlSpace(std::string_view text) {
  while (!text.empty() && IsXmlSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsXmlSpace(text.back())) text.remove_suffix(1);
  return text;
}

std::optional<double> ParseNumber(std::string_view text) {
  const std::optional<double> value = palvex_plugins::ReadFiniteNumber(TrimXmlSpace(text));
  if (!value || std::fabs(*value) > kLargestValue) return std::nullopt;
  return value;
}

std::string ShortName(std::string_view text) {
  text = TrimXmlSpace(text);
  if (text.size() <= kMaxNameLength) return std::string(text);
  std::size_t end = kMaxNameLength;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
  return std::string(text.substr(0, end));
}

double TurnedIntoCircle(double degrees) {
  const double turned = std::fmod(degrees, kFullCircle);
  const double positive = turned < 0 ? turned + kFullCircle : turned;
  return positive >= kFullCircle ? 0.0 : positive;  // -1e-17 + 360 rounds to 360
}

}  // namespace gpx
