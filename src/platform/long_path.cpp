#include "platform/long_path.hpp"

#include <algorithm>

namespace palvex::platform {
namespace {

bool IsAsciiLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

bool IsDrivePath(std::string_view path) {
  return path.size() >= 3 && IsAsciiLetter(path[0]) && path[1] == ':' && path[2] == '\\';
}

}  // namespace

std::string ToLongPath(std::string_view path) {
  std::string converted(path);
  std::replace(converted.begin(), converted.end(), '/', '\\');

  if (converted.starts_with(kLongPathPrefix)) return converted;
  if (converted.starts_with("\\\\")) {
    return std::string(kNetworkLongPathPrefix) + converted.substr(2);
  }
  if (IsDrivePath(converted) && converted.find(".\\") == std::string::npos) {
    return std::string(kLongPathPrefix) + converted;
  }
  return converted;
}

}  // namespace palvex::platform
