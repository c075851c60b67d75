#include "stream_plan.hpp"

#include "big_endian.hpp"

namespace gpmf {
namespace {

constexpr std::size_t kMaxArrayComponents = 3;

struct KnownKey {
  std::uint32_t key;
  const char *name;
};
// Names for streams written without STNM.
constexpr KnownKey kKeyNames[] = {
    {FourCc("ACCL"), "Accelerometer"},      {FourCc("GYRO"), "Gyroscope"},
    {FourCc("MAGN"), "Magnetometer"},       {FourCc("GPS5"), "GPS"},
    {FourCc("GPS9"), "GPS"},                {FourCc("CORI"), "Camera orientation"},
    {FourCc("IORI"), "Image orientation"},  {FourCc("GRAV"), "Gravity vector"},
    {FourCc("SHUT"), "Exposure time"},      {FourCc("ISOE"), "Sensor ISO"},
    {FourCc("WBAL"), "White balance"},      {FourCc("WRGB"), "White balance RGB"},
};

struct KnownFields {
  std::uint32_t key;
  std::vector<const char *> names;  // null: the field is not written
  bool prefixed;                    // names follow the stream's name ("Camera orientation w")
};
// GPS samples split into the quantities people look for; the GPS9 day and second fields
// are its own clock, not data.
const KnownFields kFieldNames[] = {
    {FourCc("GPS5"), {"Latitude", "Longitude", "Altitude", "Speed 2D", "Speed 3D"}, false},
    {FourCc("GPS9"),
     {"Latitude", "Longitude", "Altitude", "Speed 2D", "Speed 3D", nullptr, nullptr, "Dilution of precision", "Fix"},
     false},
    {FourCc("CORI"), {"w", "x", "y", "z"}, true},
    {FourCc("IORI"), {"w", "x", "y", "z"}, true},
};
constexpr std::pair<double, double> kLatitudeRange{-90.0, 90.0};
constexpr std::pair<double, double> kLongitudeRange{-180.0, 180.0};
const char *const kAxes[] = {"X", "Y", "Z"};

std::string WithUnit(std::string name, const std::string &unit) {
  if (!unit.empty()) name += " [" + unit + "]";
  return name;
}

std::string UnitOf(const StreamBlock &block, std::size_t field) {
  const std::vector<std::string> &units = block.properties.units;
  if (units.empty()) return {};
  return units.size() == 1 ? units[0] : units[field];
}

// Axis names from the stored order (ORIN: a lower-case letter is a negated axis), else X, Y, Z.
std::vector<std::string> AxisNames(const StreamBlock &block, std::size_t count) {
  std::vector<std::string> names;
  const std::string &order = block.properties.axisOrder;
  for (std::size_t i = 0; i < count; ++i) {
    if (order.size() == count) {
      const char axis = order[i];
      const bool negated = axis >= 'a' && axis <= 'z';
      names.push_back(std::string(negated ? "-" : "") + static_cast<char>(negated ? axis - 'a' + 'A' : axis));
    } else {
      names.push_back(kAxes[i]);
    }
  }
  return names;
}

const KnownFields *FieldNamesOf(std::uint32_t key, std::size_t count) {
  for (const KnownFields &known : kFieldNames) {
    if (known.key == key && known.names.size() == count) return &known;
  }
  return nullptr;
}

}  // namespace

std::string StreamName(const StreamBlock &block) {
  if (!block.properties.name.empty()) return block.properties.name;
  for (const KnownKey &known : kKeyNames) {
    if (known.key == block.key) return known.name;
  }
  return KeyText(block.key);
}

StreamPlan PlanStream(const StreamBlock &block) {
  StreamPlan plan;
  const std::string name = StreamName(block);
  const std::vector<Field> &fields = block.fields;
  plan.fieldCount = fields.size();
  bool anyText = false;
  for (const Field &field : fields) anyText = anyText || field.text;
  const KnownFields *known = FieldNamesOf(block.key, fields.size());
  if (known == nullptr && fields.size() == 1) {
    plan.shape = anyText ? Shape::kText : Shape::kNumber;
    plan.displayName = WithUnit(name, UnitOf(block, 0));
    return plan;
  }
  const bool oneUnit = block.properties.units.size() <= 1;
  if (known == nullptr && !anyText && fields.size() <= kMaxArrayComponents && oneUnit) {
    plan.shape = Shape::kArray;
    plan.displayName = WithUnit(name, UnitOf(block, 0));
    plan.components = AxisNames(block, fields.size());
    return plan;
  }
  plan.shape = Shape::kSplit;
  for (std::size_t f = 0; f < fields.size(); ++f) {
    FieldNode node{f, {}, fields[f].text, std::nullopt};
    if (known != nullptr) {
      if (known->names[f] == nullptr) continue;
      node.displayName = known->prefixed ? name + " " + known->names[f] : known->names[f];
    } else {
      node.displayName = name + " " + std::to_string(f + 1);
    }
    node.displayName = WithUnit(node.displayName, UnitOf(block, f));
    if (known != nullptr && known->prefixed == false && f == 0) node.legalRange = kLatitudeRange;
    if (known != nullptr && known->prefixed == false && f == 1) node.legalRange = kLongitudeRange;
    plan.fields.push_back(std::move(node));
  }
  return plan;
}

}  // namespace gpmf
