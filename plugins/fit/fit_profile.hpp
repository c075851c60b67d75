// What the plug-in knows of the FIT profile: the messages and fields it maps, with their
// scales, offsets and units (the file never states them for native fields), and FIT time.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "fit_base_types.hpp"
#include "utc_time.hpp"

namespace palvex_fit {

enum FitMessageNumber : std::uint16_t {
  kFileIdMessage = 0,
  kSessionMessage = 18,
  kRecordMessage = 20,
  kDeviceInfoMessage = 23,
};

constexpr std::uint8_t kNoField = 0xFF;

// A number a field holds: raw / scale * factor - offset (factor turns semicircles into degrees).
struct Scaling {
  double scale = 1;
  double offset = 0;
  double factor = 1;
};

// One stream of a record quantity. `field` wins over `fallbackField` (the legacy 16-bit
// field the enhanced one replaces); `addedField` adds a fraction (fractional cadence).
struct RecordQuantity {
  const char *displayName;
  const char *matchName;
  std::uint8_t field;
  std::uint8_t fallbackField;
  std::uint8_t addedField;
  Scaling scaling;
  Scaling addedScaling;
  std::optional<std::array<double, 2>> legalRange;
};

constexpr std::size_t kRecordQuantityCount = 16;
extern const std::array<RecordQuantity, kRecordQuantityCount> kRecordQuantities;

// A session total, as a static number; `field` wins over `fallbackField` as above.
struct SummaryQuantity {
  const char *displayName;
  const char *matchName;
  std::uint8_t field;
  std::uint8_t fallbackField;
  Scaling scaling;
};

constexpr std::size_t kSessionQuantityCount = 12;
extern const std::array<SummaryQuantity, kSessionQuantityCount> kSessionQuantities;

// Session fields that are not totals.
constexpr std::uint8_t kSessionStartTime = 2;
constexpr std::uint8_t kSessionElapsedTime = 7;
constexpr std::uint8_t kSessionSport = 5;
constexpr std::uint8_t kSessionSubSport = 6;
constexpr double kSessionElapsedTimeScale = 1000;

// A record's fields by field number.
using FieldIndex = std::array<const FieldView *, 256>;

// A quantity's value in a record; nullopt when absent.
std::optional<double> RecordValue(const RecordQuantity &quantity, const FieldIndex &fields);

// The field's element 0 through a scaling; nullopt when absent.
std::optional<double> ScaledValue(const FieldView &field, const Scaling &scaling);

// The sport's name ("cycling"), or "sport N" for numbers not in the table.
std::string SportName(std::uint64_t sport);

// A FIT date_time as an instant: seconds since 1989-12-31T00:00:00Z, or, below
// 0x10000000, seconds since the device started, counted from 1970-01-01T00:00:00Z.
palvex_plugins::Instant FitTimeToInstant(std::uint32_t fitSeconds);

}  // namespace palvex_fit
