#include "converters/bvh_reader.hpp"

#include <charconv>
#include <cmath>

#include "api/px_exception.hpp"
#include "file_access/file_mapper.hpp"

namespace ns_sensor {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

bool IsSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f' || c == '\n'; }

}  // namespace

BvhInput::BvhInput(std::string_view path) {
  try {
    mapping_ = std::make_unique<FileMapper>(path);
  } catch (const PX_Exception &failure) {
    // An empty file is readable: it simply does not begin like a motion capture file.
    if (failure.code() != Message(Msg::MapperEmptyFile).code) Raise(Msg::BvhCannotOpen);
    return;
  }
  text_ = mapping_->view();
  if (text_.starts_with(kUtf8Mark)) text_.remove_prefix(kUtf8Mark.size());
}

BvhInput::~BvhInput() = default;

bool BvhLines::Next(std::string_view &line) {
  if (ended_) return false;
  const std::size_t end = rest_.find_first_of("\r\n");
  if (end == std::string_view::npos) {
    // The last line; a text that ends with its line end has no empty line after it.
    ended_ = true;
    line = rest_;
    rest_ = {};
    return !line.empty();
  }
  line = rest_.substr(0, end);
  std::size_t next = end + 1;
  if (rest_[end] == '\r' && next < rest_.size() && rest_[next] == '\n') ++next;
  rest_.remove_prefix(next);
  if (rest_.empty()) ended_ = true;
  return true;
}

std::string_view BvhWords::Next() {
  std::size_t start = 0;
  while (start < rest_.size() && IsSpace(rest_[start])) ++start;
  std::size_t end = start;
  while (end < rest_.size() && !IsSpace(rest_[end])) ++end;
  const std::string_view word = rest_.substr(start, end - start);
  rest_.remove_prefix(end);
  return word;
}

bool ReadNumber(std::string_view word, double &value) {
  // from_chars takes no plus sign; a second sign after it is still refused below.
  if (word.size() > 1 && word[0] == '+' && word[1] != '-' && word[1] != '+') word.remove_prefix(1);
  const char *end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, value, std::chars_format::general);
  return error == std::errc() && stop == end && std::isfinite(value);
}

}  // namespace ns_sensor
