#include "match_names.hpp"

namespace palvex_plugins {
namespace {

bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }
char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

bool HasLowerCase(std::string_view word) {
  for (const char c : word) {
    if (c >= 'a' && c <= 'z') return true;
  }
  return false;
}

// The words of text (runs of ASCII letters and digits) in lowerCamelCase; a first word in
// capitals (an acronym such as "GPS5") is lowered whole.
std::string CamelCase(std::string_view text) {
  std::string name;
  std::size_t at = 0;
  while (at < text.size()) {
    while (at < text.size() && !IsLetter(text[at]) && !IsDigit(text[at])) ++at;
    const std::size_t start = at;
    while (at < text.size() && (IsLetter(text[at]) || IsDigit(text[at]))) ++at;
    std::string word(text.substr(start, at - start));
    if (word.empty()) break;
    if (name.empty()) {
      if (HasLowerCase(word)) {
        word[0] = Lower(word[0]);
      } else {
        for (char &c : word) c = Lower(c);
      }
    } else {
      word[0] = Upper(word[0]);
    }
    name += word;
  }
  return name;
}

}  // namespace

std::string MatchNames::Make(std::string_view text, std::string_view fallback) {
  std::string base = CamelCase(text);
  if (base.empty()) base = CamelCase(fallback);
  if (base.empty()) base = "value";
  if (IsDigit(base.front())) base.insert(0, "n");
  std::string name = base;
  for (unsigned counter = 2; taken_.count(name) != 0; ++counter) name = base + std::to_string(counter);
  taken_.insert(name);
  return name;
}

}  // namespace palvex_plugins
