// Modules on Windows: LoadLibraryExW and its companions.
#include <windows.h>

#include <optional>
#include <string>
#include <utility>

#include "platform/dynamic_module.hpp"
#include "platform/system_path_win32.hpp"

namespace palvex::platform {
namespace {

std::string SystemErrorText(DWORD code) {
  return "LoadLibraryExW failed with system error " + std::to_string(code);
}

}  // namespace

bool DynamicModule::Load(std::string_view path) {
  Free();
  diagnostic_.clear();
  const auto wide = SystemPath(path);
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
