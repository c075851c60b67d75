#include "srt_lines.hpp"

#include "palvex/plugin_kit.hpp"
#include "srt_errors.hpp"

namespace srt {
namespace {

constexpr int kEnd = palvex_plugins::ByteReader::kEnd;
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

}  // namespace

void LineReader::Fail(std::uint32_t code) const {
  throw PX_PLUGIN::PX_PluginException(code, static_cast<std::int64_t>(line_), static_cast<std::int64_t>(bytes_.taken()));
}

int LineReader::Get() {
  const int c = bytes_.Get();
  if (c == palvex_plugins::ByteReader::kReadFailed) Fail(kCannotRead);
  if (c == 0) Fail(kBinaryData);
  return c;
}

bool LineReader::Next(std::string &line) {
  line.clear();
  int c = Get();
  if (c == kEnd) return false;
  ++line_;
  for (; c != kEnd && c != '\n'; c = Get()) {
    if (line.size() >= kMaxLineBytes) Fail(kLineTooLong);
    line.push_back(static_cast<char>(c));
  }
  if (!line.empty() && line.back() == '\r') line.pop_back();
  if (line_ == 1 && line.compare(0, kUtf8Mark.size(), kUtf8Mark) == 0) line.erase(0, kUtf8Mark.size());
  return true;
}

}  // namespace srt
