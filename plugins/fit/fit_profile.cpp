#include "fit_profile.hpp"

namespace palvex_fit {
namespace {

constexpr double kDegreesPerSemicircle = 180.0;
constexpr double kSemicircles = 2147483648.0;  // 2^31; raw / 2^31 is exact, so one rounding
constexpr Scaling kPlain{};
constexpr Scaling kSemicircleDegrees{kSemicircles, 0, kDegreesPerSemicircle};
constexpr Scaling kAltitude{5, 500, 1};
constexpr std::int64_t kFitEpochUnixSeconds = 631065600;  // 1989-12-31T00:00:00Z
constexpr std::uint32_t kFirstDateTime = 0x10000000;

constexpr std::array<const char *, 20> kSportNames = {
    "generic", "running", "cycling", "transition", "fitness equipment", "swimming", "basketball",
    "soccer", "tennis", "american football", "training", "walking", "cross country skiing",
    "alpine skiing", "snowboarding", "rowing", "mountaineering", "hiking", "multisport", "paddling"};

}  // namespace

const std::array<RecordQuantity, kRecordQuantityCount> kRecordQuantities = {{
    {"Latitude [deg]", "latitude", 0, kNoField, kNoField, kSemicircleDegrees, kPlain, {{-90, 90}}},
    {"Longitude [deg]", "longitude", 1, kNoField, kNoField, kSemicircleDegrees, kPlain, {{-180, 180}}},
    {"Altitude [m]", "altitude", 78, 2, kNoField, kAltitude, kPlain, {}},
    {"Heart rate [bpm]", "heartRate", 3, kNoField, kNoField, kPlain, kPlain, {}},
    {"Cadence [rpm]", "cadence", 4, kNoField, 53, kPlain, {128, 0, 1}, {}},
    {"Distance [m]", "distance", 5, kNoField, kNoField, {100, 0, 1}, kPlain, {}},
    {"Speed [m/s]", "speed", 73, 6, kNoField, {1000, 0, 1}, kPlain, {}},
    {"Power [W]", "power", 7, kNoField, kNoField, kPlain, kPlain, {}},
    {"Grade [%]", "grade", 9, kNoField, kNoField, {100, 0, 1}, kPlain, {}},
    {"Temperature [°C]", "temperature", 13, kNoField, kNoField, kPlain, kPlain, {}},
    {"GPS accuracy [m]", "gpsAccuracy", 31, kNoField, kNoField, kPlain, kPlain, {}},
    {"Vertical speed [m/s]", "verticalSpeed", 32, kNoField, kNoField, {1000, 0, 1}, kPlain, {}},
    {"Calories [kcal]", "calories", 33, kNoField, kNoField, kPlain, kPlain, {}},
    {"Vertical oscillation [mm]", "verticalOscillation", 39, kNoField, kNoField, {10, 0, 1}, kPlain, {}},
    {"Stance time [%]", "stanceTimePercent", 40, kNoField, kNoField, {100, 0, 1}, kPlain, {}},
    {"Stance time [ms]", "stanceTime", 41, kNoField, kNoField, {10, 0, 1}, kPlain, {}},
}};

const std::array<SummaryQuantity, kSessionQuantityCount> kSessionQuantities = {{
    {"Total elapsed time [s]", "totalElapsedTime", 7, kNoField, {1000, 0, 1}},
    {"Total timer time [s]", "totalTimerTime", 8, kNoField, {1000, 0, 1}},
    {"Total distance [m]", "totalDistance", 9, kNoField, {100, 0, 1}},
    {"Average speed [m/s]", "averageSpeed", 124, 14, {1000, 0, 1}},
    {"Maximum speed [m/s]", "maximumSpeed", 125, 15, {1000, 0, 1}},
    {"Average heart rate [bpm]", "averageHeartRate", 16, kNoField, kPlain},
    {"Maximum heart rate [bpm]", "maximumHeartRate", 17, kNoField, kPlain},
    {"Average power [W]", "averagePower", 20, kNoField, kPlain},
    {"Maximum power [W]", "maximumPower", 21, kNoField, kPlain},
    {"Total ascent [m]", "totalAscent", 22, kNoField, kPlain},
    {"Total descent [m]", "totalDescent", 23, kNoField, kPlain},
    {"Laps", "laps", 26, kNoField, kPlain},
}};

std::optional<double> ScaledValue(const FieldView &field, const Scaling &scaling) {
  const std::optional<double> raw = field.Number();
  if (!raw) return std::nullopt;  // the invalid value never goes through the scale
  return *raw / scaling.scale * scaling.factor - scaling.offset;
}

std::optional<double> RecordValue(const RecordQuantity &quantity, const FieldIndex &fields) {
  std::optional<double> value;
  if (const FieldView *field = fields[quantity.field]) value = ScaledValue(*field, quantity.scaling);
  if (!value && quantity.fallbackField != kNoField) {
    if (const FieldView *field = fields[quantity.fallbackField]) value = ScaledValue(*field, quantity.scaling);
  }
  if (value && quantity.addedField != kNoField) {
    if (const FieldView *field = fields[quantity.addedField]) {
      if (const std::optional<double> added = ScaledValue(*field, quantity.addedScaling)) *value += *added;
    }
  }
  return value;
}

std::string SportName(std::uint64_t sport) {
  if (sport < kSportNames.size()) return kSportNames[sport];
  return "sport " + std::to_string(sport);
}

palvex_plugins::Instant FitTimeToInstant(std::uint32_t fitSeconds) {
  if (fitSeconds < kFirstDateTime) return {static_cast<std::int64_t>(fitSeconds), 0};
  return {kFitEpochUnixSeconds + fitSeconds, 0};
}

}  // namespace palvex_fit
