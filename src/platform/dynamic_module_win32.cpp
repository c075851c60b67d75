// Modules on Windows: LoadLibraryExW and its companions.
#include <windows.h>

#include <optional>
#include <string>
#include <utility>

#include "platform/dynamic_module.hpp"
#include "platform/long_path.hpp"

namespace palvex::platform {
namespace {

constexpr UINT kUtf8 = 65001;

// The path as the file backend hands paths to the system: long-path form, UTF-16.
std::optional<std::wstring> WidePath(std::string_view path) {
  const std::string text = ToLongPath(path);
  if (text.empty() || text.find('\0') != std::string::npos) return std::nullopt;
  const int length = static_cast<int>(text.size());
  const int units = ::MultiByteToWideChar(kUtf8, MB_ERR_INVALID_CHARS, text.data(), length, nullptr, 0);
  if (units <= 0) return std::nullopt;
  std::wstring wide(static_cast<std::size_t>(units), L'\0');
  if (::MultiByteToWideChar(kUtf8, MB_ERR_INVALID_CHARS, text.data(), length, wide.data(), units) != units) {
    return std::nullopt;
  }
  return wide;
}

std::string SystemErrorText(DWORD code) {
  return "LoadLibraryExW failed with system error " + std::to_string(code);
}

}  // namespace

DynamicModule::DynamicModule(DynamicModule &&other) noexcept
    : handle_(std::exchange(other.handle_, nullptr)), diagnostic_(std::move(other.diagnostic_)) {}

DynamicModule &DynamicModule::operator=(DynamicModule &&other) noexcept {
  if (this != &other) {
    Free();
    handle_ = std::exchange(other.handle_, nullptr);
    diagnostic_ = std::move(other.diagnostic_);
  }
  return *this;
}

bool DynamicModule::Load(std::string_view path) {
  Free();
  diagnostic_.clear();
  const auto wide = WidePath(path);
  if (!wide) {
    diagnostic_ = "the path is not valid UTF-8";
    return false;
  }
  // A module that cannot be loaded must not make the system show a dialog.
  DWORD previousMode = 0;
  const bool modeSet = ::SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &previousMode) != 0;
  handle_ = ::LoadLibraryExW(wide->c_str(), nullptr, 0);
  const DWORD error = ::GetLastError();
  if (modeSet) ::SetThreadErrorMode(previousMode, nullptr);
  if (handle_ == nullptr) diagnostic_ = SystemErrorText(error);
  return handle_ != nullptr;
}

void *DynamicModule::Symbol(const char *name) const {
  if (handle_ == nullptr || name == nullptr) return nullptr;
  return reinterpret_cast<void *>(::GetProcAddress(static_cast<HMODULE>(handle_), name));
}

void DynamicModule::Free() noexcept {
  if (handle_ != nullptr) ::FreeLibrary(static_cast<HMODULE>(std::exchange(handle_, nullptr)));
}

}  // namespace palvex::platform
