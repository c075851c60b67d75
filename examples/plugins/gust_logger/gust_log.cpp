#include "gust_log.hpp"

#include <charconv>
#include <cmath>
#include <limits>

#include "palvex/plugin_kit.hpp"

namespace gust {
namespace {

constexpr std::string_view kMagic = "GUSTLOG";
constexpr std::string_view kVersion = "1";
constexpr int kMaxDecimals = 3;  // the offsets the library gets are in milliseconds
constexpr double kFullCircle = 360.0;

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

std::string_view TrimmedLeft(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  return text;
}

std::string_view Trimmed(std::string_view text) {
  text = TrimmedLeft(text);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

// The next blank-separated word of rest, which then starts after it.
std::string_view NextWord(std::string_view &rest) {
  rest = TrimmedLeft(rest);
  std::size_t end = 0;
  while (end < rest.size() && !IsBlank(rest[end])) ++end;
  const std::string_view word = rest.substr(0, end);
  rest.remove_prefix(end);
  return word;
}

// A finite number written in plain C notation, whatever the process's locale says.
std::optional<double> ReadNumber(std::string_view word) {
  double value = 0;
  const char *end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, value);
  if (word.empty() || error != std::errc() || stop != end || !std::isfinite(value)) return std::nullopt;
  return value;
}

// Seconds with at most three decimals, as whole milliseconds.
std::optional<std::uint32_t> ReadMilliseconds(std::string_view word) {
  std::uint64_t milliseconds = 0;
  int decimals = -1;  // -1: before the point
  for (const char c : word) {
    if (c == '.' && decimals < 0) {
      decimals = 0;
      continue;
    }
    if (c < '0' || c > '9' || decimals == kMaxDecimals) return std::nullopt;
    milliseconds = milliseconds * 10 + static_cast<std::uint64_t>(c - '0');
    if (decimals >= 0) ++decimals;
    if (milliseconds > std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
  }
  if (word.empty() || word == "." || decimals == 0) return std::nullopt;
  for (int d = decimals < 0 ? 0 : decimals; d < kMaxDecimals; ++d) milliseconds *= 10;
  if (milliseconds > std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
  return static_cast<std::uint32_t>(milliseconds);
}

[[noreturn]] void Fail(ErrorCode code, std::int64_t line, std::int64_t field = -1) {
  throw PX_PLUGIN::PX_PluginException(code, line, field);
}

Reading ReadReading(std::string_view line, std::int64_t lineNumber) {
  std::string_view rest = line;
  Reading reading;
  const std::optional<std::uint32_t> time = ReadMilliseconds(NextWord(rest));
  if (!time) Fail(kBadReading, lineNumber, 1);
  const std::optional<double> speed = ReadNumber(NextWord(rest));
  if (!speed || *speed < 0) Fail(kBadReading, lineNumber, 2);
  const std::optional<double> direction = ReadNumber(NextWord(rest));
  if (!direction || *direction < 0 || *direction > kFullCircle) Fail(kBadReading, lineNumber, 3);
  reading.milliseconds = *time;
  reading.speed = *speed;
  reading.direction = *direction;
  reading.note = std::string(Trimmed(rest));
  return reading;
}

}  // namespace

std::optional<Header> ReadHeader(std::string_view line) {
  std::string_view rest = line;
  if (NextWord(rest) != kMagic || NextWord(rest) != kVersion) return std::nullopt;
  Header header;
  bool haveStation = false;
  for (rest = TrimmedLeft(rest); !rest.empty(); rest = TrimmedLeft(rest)) {
    const std::size_t equals = rest.find('=');
    if (equals == std::string_view::npos || equals == 0) return std::nullopt;
    const std::string_view key = rest.substr(0, equals);
    if (key.find_first_of(" \t") != std::string_view::npos) return std::nullopt;
    rest.remove_prefix(equals + 1);
    std::string_view value;
    if (!rest.empty() && rest.front() == '"') {
      const std::size_t close = rest.find('"', 1);
      if (close == std::string_view::npos) return std::nullopt;
      value = rest.substr(1, close - 1);
      rest.remove_prefix(close + 1);
      if (!rest.empty() && !IsBlank(rest.front())) return std::nullopt;
    } else {
      value = NextWord(rest);
    }
    if (key == "station") {
      header.station = std::string(value);
      haveStation = true;
    } else if (key == "start") {
      header.start = std::string(value);
    } else if (key == "mast") {
      header.mastHeight = ReadNumber(value);
      if (!header.mastHeight) return std::nullopt;
    }
  }
  if (!haveStation || header.start.empty()) return std::nullopt;
  return header;
}

GustLog ReadGustLog(std::istream &in) {
  GustLog log;
  std::string line;
  std::int64_t lineNumber = 0;
  bool haveHeader = false;
  while (std::getline(in, line)) {
    ++lineNumber;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (!haveHeader) {
      std::optional<Header> header = ReadHeader(line);
      if (!header) Fail(kBadHeader, lineNumber);
      log.header = std::move(*header);
      haveHeader = true;
      continue;
    }
    const std::string_view content = TrimmedLeft(line);
    if (content.empty() || content.front() == '#') continue;
    Reading reading = ReadReading(content, lineNumber);
    if (!log.readings.empty() && reading.milliseconds < log.readings.back().milliseconds) {
      Fail(kTimeBackwards, lineNumber);
    }
    log.readings.push_back(std::move(reading));
  }
  if (in.bad()) Fail(kCannotRead, lineNumber);
  if (!haveHeader) Fail(kBadHeader, 1);
  return log;
}

}  // namespace gust
