#include "srt_blocks.hpp"

#include "palvex/plugin_kit.hpp"
#include "srt_errors.hpp"

namespace srt {
namespace {

// More digits than this in a counter or an hour field are no SRT.
constexpr std::size_t kMaxNumberDigits = 9;
constexpr std::int64_t kMillisecondsPerSecond = 1000;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

bool IsCounter(std::string_view line) {
  line = Trim(line);
  if (line.empty() || line.size() > kMaxNumberDigits) return false;
  for (const char c : line) {
    if (!IsDigit(c)) return false;
  }
  return true;
}

// Reads digits at line[at...] (between least and most of them) into value.
bool Number(std::string_view line, std::size_t &at, std::size_t least, std::size_t most, std::int64_t &value) {
  const std::size_t from = at;
  value = 0;
  while (at < line.size() && IsDigit(line[at]) && at - from < most) value = value * 10 + (line[at++] - '0');
  return at - from >= least;
}

}  // namespace

std::optional<std::int64_t> ReadStartTime(std::string_view line) {
  line = Trim(line);
  std::size_t at = 0;
  std::int64_t hours = 0, minutes = 0, seconds = 0, fraction = 0;
  if (!Number(line, at, 1, kMaxNumberDigits, hours) || at >= line.size() || line[at++] != ':') return std::nullopt;
  if (!Number(line, at, 2, 2, minutes) || minutes > 59 || at >= line.size() || line[at++] != ':') return std::nullopt;
  if (!Number(line, at, 2, 2, seconds) || seconds > 59 || at >= line.size()) return std::nullopt;
  if (line[at] != ',' && line[at] != '.') return std::nullopt;
  const std::size_t fractionFrom = ++at;
  if (!Number(line, at, 1, 3, fraction)) return std::nullopt;
  for (std::size_t digits = at - fractionFrom; digits < 3; ++digits) fraction *= 10;
  if (Trim(line.substr(at)).substr(0, 3) != "-->") return std::nullopt;
  return ((hours * 60 + minutes) * 60 + seconds) * kMillisecondsPerSecond + fraction;
}

void SrtBlocks::FailUnlessLast(std::uint32_t code) {
  const auto line = static_cast<std::int64_t>(lines_.line());
  if (lines_.Next(line_)) throw PX_PLUGIN::PX_PluginException(code, line, -1);
}

bool SrtBlocks::Next(SrtBlock &block) {
  do {
    if (!lines_.Next(line_)) return false;
  } while (Trim(line_).empty());
  std::optional<std::int64_t> start = ReadStartTime(line_);
  if (!start) {
    if (!IsCounter(line_)) {
      FailUnlessLast(kBadBlock);
      return false;
    }
    if (!lines_.Next(line_)) return false;
    start = ReadStartTime(line_);
    if (!start) {
      FailUnlessLast(kBadTimeLine);
      return false;
    }
  }
  block.line = lines_.line();
  block.startMilliseconds = *start;
  block.firstTextLine = block.line + 1;
  block.text.clear();
  while (lines_.Next(line_) && !Trim(line_).empty()) {
    if (block.text.size() < kMaxBlockLines) block.text.push_back(line_);
  }
  return true;
}

}  // namespace srt
