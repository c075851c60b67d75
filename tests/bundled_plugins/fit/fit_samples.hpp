// The FIT files the tests, the example, the fuzz seeds and the benchmark use, each made
// with FitBuilder from a recipe: the format notes' minimal activity (file A) and its
// compressed-timestamp variant (file B), and a generated ride of any length.
#pragma once

#include <cstdint>
#include <string>

#include "fit_builder.hpp"

namespace palvex_fit::testing {

// 2024-01-15T10:30:00Z in FIT seconds (since 1989-12-31T00:00:00Z).
constexpr std::uint32_t kT0 = 1074249000;

// File A (388 bytes); with compressedRecords, file B (412 bytes): two records with
// compressed-timestamp headers before the stop event, the second rolling over.
std::string ActivityFile(bool compressedRecords = false);

// A ride of `records` one-second records from kT0: position, altitude, heart rate,
// cadence, distance, speed, power, and a developer field "Headwind" [m/s]; with file_id,
// device_info, timer events, one lap and one session covering it, and the activity.
std::string RideFile(std::uint32_t records);

}  // namespace palvex_fit::testing
