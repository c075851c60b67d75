#include "srt_lines.hpp"

#include "palvex/plugin_kit.hpp"
#include "srt_errors.hpp"

namespace srt {
namespace {

constexpr int kEnd = -1;
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

}  // namespace

void LineReader::Fail(std::uint32_t code) const {
  throw PX_PLUGIN::PX_PluginException(code, static_cast<std::int64_t>(line_), static_cast<std::int64_t>(offset_));
}

int LineReader::Get() {
  if (at_ == end_) {
    in_.read(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
    if (in_.bad()) Fail(kCannotRead);
    at_ = 0;
    end_ = static_cast<std::size_t>(in_.gcount());
    if (end_ == 0) return kEnd;
  }
  ++offset_;
  const int c = static_cast<unsigned char>(buffer_[at_++]);
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
