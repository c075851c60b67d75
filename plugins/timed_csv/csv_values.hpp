// What a cell of a timed CSV says: a time in one of the forms a time column may hold, or a
// number. Locale-independent.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "utc_time.hpp"

namespace timed_csv {

// How a time column writes its times; its first value decides, the rest must follow.
enum class TimeForm {
  kIso,           // ISO 8601 date and time, with or without a zone
  kClock,         // "H:MM:SS[.fraction]": elapsed time from the start of the recording
  kSeconds,       // a decimal number of seconds: since 1970 (epoch) or since the start alike
  kMilliseconds,  // a whole number of at least kEpochMillisecondsFrom: milliseconds since 1970
};

// Whole numbers this large are milliseconds since 1970 (1973-03-03 on): as seconds they
// would be past the year 5000.
constexpr double kEpochMillisecondsFrom = 1e11;

struct CellTime {
  palvex_plugins::Instant instant;
  std::uint32_t fractionDigits = 0;  // of the instant as written (3 more for milliseconds)
  // On the UTC line: a time with a zone, an epoch count or an offset from 1970-01-01T00:00:00Z;
  // false for a date and time without a zone (local time of an unknown zone).
  bool utc = false;
};

// Whether a column name names a time column: exact, any case, quotes and spaces around it
// ignored ("time", "Timestamp", "UTC", "t", ...).
bool IsTimeColumnName(std::string_view name);

// The form of a time column whose first value is `cell`, if it is a time at all.
std::optional<TimeForm> RecogniseTimeForm(std::string_view cell);

// The instant a cell of a column of `form` says; nullopt when it says none or one outside
// the years 0001 to 9999.
std::optional<CellTime> ReadTime(TimeForm form, std::string_view cell);

// A finite decimal number ("12", "-0.5", "+3", "1.5e3"); nullopt for anything else,
// "inf" and "nan" included.
std::optional<double> ReadNumber(std::string_view cell);

}  // namespace timed_csv
