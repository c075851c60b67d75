// Match names for nodes made from names found in a file: the library takes only ASCII
// letters and digits starting with a letter, unique within the document.
#ifndef PALVEX_PLUGINS_MATCH_NAMES_HPP
#define PALVEX_PLUGINS_MATCH_NAMES_HPP

#include <string>
#include <string_view>
#include <unordered_set>

namespace palvex_plugins {

class MatchNames {
 public:
  // A match name from a free text: its ASCII letters and digits in lowerCamelCase
  // ("heart rate [bpm]" -> "heartRateBpm"), "n" in front when it would start with a digit,
  // `fallback` when nothing is left; a counter is appended (2, 3, ...) when the name was
  // handed out before.
  std::string Make(std::string_view text, std::string_view fallback = "value");

 private:
  std::unordered_set<std::string> taken_;
};

}  // namespace palvex_plugins

#endif  // PALVEX_PLUGINS_MATCH_NAMES_HPP
