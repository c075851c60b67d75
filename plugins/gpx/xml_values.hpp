// Values as GPX writes them in element texts and attributes.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace gpx {

// Values beyond this magnitude are refused: no sensor reports them, and the library would
// write them digit by digit.
constexpr double kLargestValue = 1e9;
// Bytes kept of a name (track, route, waypoint, extension); the rest is dropped.
constexpr std::size_t kMaxNameLength = 256;

// Without the XML white space around it.
std::string_view TrimXmlSpace(std::string_view text);

// A decimal as XML writes it ("+" allowed, no hex, no inf or nan), white space around it
// allowed; nothing when it is not one or is beyond kLargestValue.
std::optional<double> ParseNumber(std::string_view text);

// The trimmed text cut to at most kMaxNameLength bytes, not inside a UTF-8 sequence.
std::string ShortName(std::string_view text);

// Degrees turned into [0, 360).
double TurnedIntoCircle(double degrees);

}  // namespace gpx
