#include "chapters.hpp"

#include <cstdio>
#include <filesystem>
#include <system_error>

namespace gpmf {
namespace {

namespace fs = std::filesystem;
constexpr int kLastChapter = 99;
constexpr std::size_t kStemLength = 8;  // two letters, two chapter digits, four recording digits

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

std::string Utf8(const fs::path &path) {
  const std::u8string text = path.u8string();
  return std::string(text.begin(), text.end());
}

// Paths arrive as UTF-8; on Windows a narrow path would be read in the ANSI code page.
fs::path PathOf(const std::string &utf8) { return fs::path(std::u8string(utf8.begin(), utf8.end())); }

}  // namespace

std::vector<std::string> FindChapters(const std::string &firstPath) {
  std::vector<std::string> chapters{firstPath};
  const fs::path first = PathOf(firstPath);
  const std::string stem = Utf8(first.stem());
  if (stem.size() != kStemLength || (stem[0] != 'G' && stem[0] != 'g') || !IsLetter(stem[1]) ||
      stem.substr(2, 2) != "01") {
    return chapters;
  }
  for (std::size_t i = 2; i < kStemLength; ++i) {
    if (!IsDigit(stem[i])) return chapters;
  }
  for (int chapter = 2; chapter <= kLastChapter; ++chapter) {
    char number[3];
    std::snprintf(number, sizeof number, "%02d", chapter);
    const std::string name = stem.substr(0, 2) + number + stem.substr(4) + Utf8(first.extension());
    const fs::path next = first.parent_path() / PathOf(name);
    std::error_code error;
    if (!fs::is_regular_file(next, error)) break;  // a missing chapter ends the recording
    chapters.push_back(Utf8(next));
  }
  return chapters;
}

}  // namespace gpmf
