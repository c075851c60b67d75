#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include "platform/system_path_win32.hpp"

#include "platform/long_path.hpp"

namespace palvex::platform {
namespace {

constexpr UINT kUtf8 = 65001;
constexpr std::size_t kLongestPathUnits = 32767;

}  // namespace

std::optional<std::wstring> Widen(std::string_view text) {
  if (text.find('\0') != std::string_view::npos) return std::nullopt;
  if (text.empty()) return std::wstring();
  const int length = static_cast<int>(text.size());
  const int units = ::MultiByteToWideChar(kUtf8, MB_ERR_INVALID_CHARS, text.data(), length, nullptr, 0);
  if (units <= 0) return std::nullopt;
  std::wstring wide(static_cast<std::size_t>(units), L'\0');
  if (::MultiByteToWideChar(kUtf8, MB_ERR_INVALID_CHARS, text.data(), length, wide.data(), units) != units) {
    return std::nullopt;
  }
  return wide;
}

std::optional<std::wstring> SystemPath(std::string_view path) {
  auto wide = Widen(ToLongPath(path));
  if (wide && wide->size() >= kLongestPathUnits) return std::nullopt;
  return wide;
}

}  // namespace palvex::platform
