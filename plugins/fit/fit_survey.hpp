// The first of the conversion's two passes: reads the whole file (so every CRC is checked
// before anything is written) and keeps only what is small: the device, the sessions and
// their totals. Records are counted here and converted in the second pass; sessions
// usually come after their records, so their time spans must be known first.
#pragma once

#include <cstdint>
#include <istream>
#include <optional>
#include <string>
#include <vector>

#include "fit_decoder.hpp"
#include "utc_time.hpp"

namespace palvex_fit {

// Sessions beyond this many are refused: each one becomes a group with its own streams.
constexpr std::size_t kMaxSessions = 100;

// A static value for the outline: a number, or else a text.
struct StaticEntry {
  std::string displayName;
  std::string matchName;  // a base for MatchNames
  std::optional<double> number;
  std::string text;
};

struct SessionSummary {
  std::optional<palvex_plugins::Instant> start;  // records from here on belong to it
  std::vector<StaticEntry> entries;              // sport, start time, totals: those present
};

struct FitSurvey {
  std::vector<StaticEntry> device;  // the first file_id and the recording device's device_info
  std::vector<SessionSummary> sessions;
  std::uint64_t timedRecords = 0;   // record messages with a time
  DecodeSummary decoding;
};

FitSurvey SurveyFit(std::istream &in);

}  // namespace palvex_fit
