#include "srt_telemetry.hpp"

#include <cmath>

#include "plain_number.hpp"
#include "srt_fields.hpp"

namespace srt {
namespace {

// Longer keys and units are prose, not telemetry.
constexpr std::size_t kMaxKeyLength = 32;
constexpr std::size_t kMaxUnitLength = 6;
// A block with more values than this is not telemetry; the rest of it is ignored.
constexpr std::size_t kMaxValuesPerBlock = 256;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool IsSpace(char c) { return c == ' ' || c == '\t' || c == ','; }
bool IsKeyChar(char c) { return IsLetter(c) || IsDigit(c) || c == '_' || c == '.' || c == '-'; }

std::optional<double> Number(std::string_view text) { return palvex_plugins::ReadFiniteNumber(text); }

bool IsKey(std::string_view key) {
  if (key.empty() || key.size() > kMaxKeyLength || !IsLetter(key[0])) return false;
  for (const char c : key) {
    if (!IsKeyChar(c)) return false;
  }
  return true;
}

std::vector<std::string_view> Words(std::string_view text) {
  std::vector<std::string_view> words;
  std::size_t at = 0;
  while (at < text.size()) {
    while (at < text.size() && IsSpace(text[at])) ++at;
    const std::size_t from = at;
    while (at < text.size() && !IsSpace(text[at])) ++at;
    if (at > from) words.push_back(text.substr(from, at - from));
  }
  return words;
}

void Add(BlockTelemetry &into, std::string_view key, std::string_view written) {
  if (into.values.size() < kMaxValuesPerBlock) into.values.push_back(ReadValue(key, written));
}

// "key: value key: value ...": the word before each colon is a key, the first word after it
// its value (words between a value and the next key are left out).
void ReadPairs(std::string_view text, BlockTelemetry &into) {
  std::vector<std::string_view> segments;
  for (std::size_t from = 0;;) {
    const std::size_t colon = text.find(':', from);
    segments.push_back(text.substr(from, colon == std::string_view::npos ? std::string_view::npos : colon - from));
    if (colon == std::string_view::npos) break;
    from = colon + 1;
  }
  if (segments.size() < 2) return;
  std::vector<std::string_view> words = Words(segments[0]);
  if (words.empty()) return;
  std::string_view key = words.back();
  for (std::size_t i = 1; i < segments.size(); ++i) {
    words = Words(segments[i]);
    if (words.empty()) return;
    if (IsKey(key)) Add(into, key, words.front());
    if (words.size() < 2) return;
    key = words.back();
  }
}

// Blanks out text[from, to) so that later passes do not read it again.
void Blank(std::string &text, std::size_t from, std::size_t to) {
  for (std::size_t i = from; i < to && i < text.size(); ++i) text[i] = ' ';
}

std::string WithoutMarkup(std::string_view line) {
  std::string text;
  text.reserve(line.size());
  for (std::size_t at = 0; at < line.size(); ++at) {
    if (line[at] != '<') {
      text.push_back(line[at]);
      continue;
    }
    const std::size_t close = line.find('>', at);
    if (close == std::string_view::npos) break;
    text.push_back(' ');
    at = close;
  }
  return text;
}

// "YYYY?MM?DD[ T]HH:MM:SS[.fraction]" at text[at...], with -, . or / between the parts of the
// date; its length, or 0.
std::size_t DateLength(std::string_view text, std::size_t at, std::string &iso) {
  static constexpr std::string_view kShape = "dddd-dd-dd dd:dd:dd";
  if (text.size() - at < kShape.size()) return 0;
  for (std::size_t i = 0; i < kShape.size(); ++i) {
    const char c = text[at + i];
    const char shape = kShape[i];
    const bool fits = shape == 'd'   ? IsDigit(c)
                      : shape == '-' ? (c == '-' || c == '.' || c == '/')
                      : shape == ' ' ? (c == ' ' || c == 'T')
                                     : c == shape;
    if (!fits) return 0;
  }
  if (text[at + 4] != text[at + 7]) return 0;
  std::size_t end = at + kShape.size();
  if (end + 1 < text.size() && (text[end] == '.' || text[end] == ',') && IsDigit(text[end + 1])) {
    for (++end; end < text.size() && IsDigit(text[end]); ++end) {
    }
  }
  iso.assign(text.substr(at, end - at));
  iso[4] = iso[7] = '-';
  iso[10] = 'T';
  return end - at;
}

// "NAME(a,b,c)": each number becomes a value of FunctionComponentKey(NAME, index).
void ReadFunctions(std::string &text, BlockTelemetry &into) {
  for (std::size_t open = text.find('('); open != std::string::npos; open = text.find('(', open + 1)) {
    std::size_t nameFrom = open;
    while (nameFrom > 0 && IsKeyChar(text[nameFrom - 1])) --nameFrom;
    const std::size_t close = text.find(')', open);
    if (close == std::string::npos || !IsKey(std::string_view(text).substr(nameFrom, open - nameFrom))) continue;
    const std::string name = text.substr(nameFrom, open - nameFrom);
    const std::string arguments = text.substr(open + 1, close - open - 1);
    std::size_t index = 0;
    for (std::size_t from = 0; from <= arguments.size(); ++index) {
      std::size_t comma = arguments.find(',', from);
      if (comma == std::string::npos) comma = arguments.size();
      const std::vector<std::string_view> words = Words(std::string_view(arguments).substr(from, comma - from));
      if (words.size() == 1) Add(into, FunctionComponentKey(name, index), words.front());
      from = comma + 1;
    }
    Blank(text, nameFrom, close + 1);
  }
}

}  // namespace

TelemetryValue ReadValue(std::string_view key, std::string_view written) {
  TelemetryValue value{std::string(key), std::nullopt, std::string(written), {}};
  const std::size_t slash = written.find('/');
  if (slash != std::string_view::npos) {
    const auto numerator = Number(written.substr(0, slash));
    const auto denominator = Number(written.substr(slash + 1));
    if (numerator && denominator && *denominator != 0) value.number = *numerator / *denominator;
    return value;
  }
  std::size_t unitFrom = written.size();
  while (unitFrom > 0 && (IsLetter(written[unitFrom - 1]) || written[unitFrom - 1] == '%')) --unitFrom;
  if (written.size() - unitFrom > kMaxUnitLength) return value;
  if (const auto number = Number(written.substr(0, unitFrom))) {
    value.number = number;
    value.unit = written.substr(unitFrom);
  }
  return value;
}

bool ReadTelemetryLine(std::string_view line, BlockTelemetry &into) {
  std::string text = WithoutMarkup(line);
  std::string iso;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (const std::size_t length = DateLength(text, at, iso)) {
      const auto date = palvex_plugins::ParseIsoTime(iso);
      if (!date) return false;
      into.date = date;
      Blank(text, at, at + length);
      break;
    }
  }
  for (std::size_t open = text.find('['); open != std::string::npos; open = text.find('[', open)) {
    const std::size_t close = text.find(']', open);
    if (close == std::string::npos) {  // cut off: what is left is not a whole pair
      text.resize(open);
      break;
    }
    ReadPairs(std::string_view(text).substr(open + 1, close - open - 1), into);
    Blank(text, open, close + 1);
  }
  ReadFunctions(text, into);
  ReadPairs(text, into);
  return true;
}

}  // namespace srt
