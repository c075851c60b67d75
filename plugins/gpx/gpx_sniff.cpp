#include "gpx_sniff.hpp"

namespace gpx {
namespace {

bool IsXmlSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

// Passes over a construct from its opening to its closing text; false when it does not close.
bool SkipPast(std::string_view &text, std::string_view opening, std::string_view closing, bool &skipped) {
  if (text.substr(0, opening.size()) != opening) return true;
  const std::size_t end = text.find(closing, opening.size());
  if (end == std::string_view::npos) return false;
  text.remove_prefix(end + closing.size());
  skipped = true;
  return true;
}

}  // namespace

bool LooksLikeGpx(std::string_view head) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (head.substr(0, kByteOrderMark.size()) == kByteOrderMark) head.remove_prefix(kByteOrderMark.size());
  for (bool skipped = true; skipped;) {
    skipped = false;
    while (!head.empty() && IsXmlSpace(head.front())) head.remove_prefix(1);
    if (!SkipPast(head, "<?", "?>", skipped) || !SkipPast(head, "<!--", "-->", skipped) ||
        !SkipPast(head, "<!DOCTYPE", ">", skipped)) {
      return false;
    }
  }
  constexpr std::string_view kRoot = "<gpx";
  if (head.substr(0, kRoot.size()) != kRoot || head.size() == kRoot.size()) return false;
  const char next = head[kRoot.size()];
  return IsXmlSpace(next) || next == '>' || next == '/';
}

}  // namespace gpx
