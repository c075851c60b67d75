// The telemetry in the text of a subtitle block, in the two layouts drone recorders write:
//   [iso : 100] [shutter : 1/640.0] [latitude: 47.1234] [rel_alt: 1.300 abs_alt: 412.817]
//   GPS(8.5432,47.1234,16) BAROMETER:12.3  /  HOME(8.5400,47.1200)
// plus "Key: value" pairs ("FrameCnt: 1, DiffTime: 33ms") and a date line
// ("2024-05-01 12:34:56.789", also with "." or "/" between the date's parts). Markup
// such as <font ...> is ignored.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "utc_time.hpp"

namespace srt {

struct TelemetryValue {
  std::string key;               // as written, or FunctionComponentKey for "NAME(...)"
  std::optional<double> number;  // when the value is a number ("12.5", "33ms", "1/640")
  std::string text;              // the value as written
  std::string unit;              // letters written right after the number ("ms", "m")
};

struct BlockTelemetry {
  std::optional<palvex_plugins::ParsedTime> date;
  std::vector<TelemetryValue> values;
};

// Adds what one text line of a block says to into (a later date replaces an earlier one).
// False when the line has a date whose day or time does not exist.
bool ReadTelemetryLine(std::string_view line, BlockTelemetry &into);

// A value as written: a number, a number with a unit, a fraction "1/640.0", or a text.
TelemetryValue ReadValue(std::string_view key, std::string_view written);

}  // namespace srt
