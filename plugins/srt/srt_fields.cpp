#include "srt_fields.hpp"

#include <array>
#include <charconv>
#include <cmath>

namespace srt {
namespace {

constexpr double kHundredthsFrom = 100;

constexpr std::array<KnownField, 18> kKnownFields = {{
    {"latitude", "Latitude [deg]", "latitude", true, -90, 90},
    {"lat", "Latitude [deg]", "latitude", true, -90, 90},
    {"longitude", "Longitude [deg]", "longitude", true, -180, 180},
    {"lon", "Longitude [deg]", "longitude", true, -180, 180},
    {"rel_alt", "Relative altitude [m]", "relativeAltitude"},
    {"abs_alt", "Absolute altitude [m]", "absoluteAltitude"},
    {"barometer", "Barometric altitude [m]", "barometricAltitude"},
    {"home_longitude", "Home longitude [deg]", "homeLongitude", true, -180, 180},
    {"home_latitude", "Home latitude [deg]", "homeLatitude", true, -90, 90},
    {"gps_value_3", "GPS value 3", "gpsValue3"},
    {"iso", "ISO", "iso"},
    {"shutter", "Exposure time [s]", "exposureTime"},
    {"fnum", "F-number", "fNumber", false, 0, 0, ValueRule::kFNumber},
    {"ev", "Exposure compensation [EV]", "exposureCompensation"},
    {"ct", "Colour temperature [K]", "colourTemperature"},
    {"framecnt", "Frame counter", "frameCounter"},
    {"difftime", "Frame interval [ms]", "frameInterval"},
    {"dzoom_ratio", "Digital zoom ratio", "digitalZoomRatio"},
}};

struct FunctionKeys {
  std::string_view name;  // lower case
  std::array<std::string_view, 3> components;
};

constexpr std::array<FunctionKeys, 2> kFunctions = {{
    {"gps", {"longitude", "latitude", "gps_value_3"}},
    {"home", {"home_longitude", "home_latitude", ""}},
}};

bool SameIgnoringCase(std::string_view a, std::string_view lower) {
  if (a.size() != lower.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    const char c = a[i] >= 'A' && a[i] <= 'Z' ? static_cast<char>(a[i] - 'A' + 'a') : a[i];
    if (c != lower[i]) return false;
  }
  return true;
}

}  // namespace

const KnownField *FindKnownField(std::string_view key) {
  for (const KnownField &field : kKnownFields) {
    if (SameIgnoringCase(key, field.key)) return &field;
  }
  return nullptr;
}

std::string FunctionComponentKey(std::string_view name, std::size_t index) {
  for (const FunctionKeys &function : kFunctions) {
    if (SameIgnoringCase(name, function.name) && index < function.components.size() &&
        !function.components[index].empty()) {
      return std::string(function.components[index]);
    }
  }
  return std::string(name) + " " + std::to_string(index + 1);
}

std::optional<double> ApplyRule(ValueRule rule, std::optional<double> number, std::string_view text) {
  if (rule != ValueRule::kFNumber) return std::nullopt;
  if (number) return *number >= kHundredthsFrom && std::floor(*number) == *number ? *number / 100 : *number;
  if (text.size() < 2 || (text[0] != 'F' && text[0] != 'f')) return std::nullopt;
  double value = 0;
  const auto [end, error] = std::from_chars(text.data() + 1, text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value)) return std::nullopt;
  return value;
}

}  // namespace srt
