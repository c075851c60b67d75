#include "point_fields.hpp"

#include <array>

namespace gpx {
namespace {

// Names seen in track point extensions of sports watches, bike computers and phone apps.
constexpr std::array kFields = {
    PointField{"speed", FieldRole::kSpeed, "", ""},
    PointField{"course", FieldRole::kCourse, "", ""},
    PointField{"bearing", FieldRole::kCourse, "", ""},
    PointField{"hr", FieldRole::kMeasure, "Heart rate [bpm]", "heartRate"},
    PointField{"heartrate", FieldRole::kMeasure, "Heart rate [bpm]", "heartRate"},
    PointField{"cad", FieldRole::kMeasure, "Cadence [rpm]", "cadence"},
    PointField{"cadence", FieldRole::kMeasure, "Cadence [rpm]", "cadence"},
    PointField{"atemp", FieldRole::kMeasure, "Temperature [°C]", "temperature"},
    PointField{"temp", FieldRole::kMeasure, "Temperature [°C]", "temperature"},
    PointField{"temperature", FieldRole::kMeasure, "Temperature [°C]", "temperature"},
    PointField{"wtemp", FieldRole::kMeasure, "Water temperature [°C]", "waterTemperature"},
    PointField{"power", FieldRole::kMeasure, "Power [W]", "power"},
    PointField{"watts", FieldRole::kMeasure, "Power [W]", "power"},
    PointField{"depth", FieldRole::kMeasure, "Depth [m]", "depth"},
};

bool SameIgnoringCase(std::string_view a, std::string_view lower) {
  if (a.size() != lower.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    const char c = (a[i] >= 'A' && a[i] <= 'Z') ? static_cast<char>(a[i] - 'A' + 'a') : a[i];
    if (c != lower[i]) return false;
  }
  return true;
}

}  // namespace

const PointField *FindPointField(std::string_view localName) {
  for (const PointField &field : kFields) {
    if (SameIgnoringCase(localName, field.localName)) return &field;
  }
  return nullptr;
}

std::string_view LocalName(std::string_view qualifiedName) {
  const std::size_t colon = qualifiedName.rfind(':');
  return colon == std::string_view::npos ? qualifiedName : qualifiedName.substr(colon + 1);
}

}  // namespace gpx
