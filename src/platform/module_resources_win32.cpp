// Module resources on Windows: the resource section of the module that holds this code,
// which is palvex.dll, or a test program linked with the library's objects.
#include <windows.h>

#include <string>

#include "platform/module_resources.hpp"

namespace palvex::platform {
namespace {

// Any address inside this module identifies it.
const char kAnchor = 0;

HMODULE OwnModule() {
  HMODULE module = nullptr;
  const DWORD flags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  if (!GetModuleHandleExW(flags, reinterpret_cast<LPCWSTR>(&kAnchor), &module)) return nullptr;
  return module;
}

}  // namespace

std::span<const std::byte> FindModuleResource(std::string_view type, std::string_view name) {
  // Resource names are plain identifiers; anything else (a "#123" number, an embedded
  // terminator) would make the lookup find a different resource.
  const auto plain = [](std::string_view text) {
    return !text.empty() && text.front() != '#' && text.find('\0') == std::string_view::npos;
  };
  if (!plain(type) || !plain(name)) return {};
  const HMODULE module = OwnModule();
  if (module == nullptr) return {};
  // The system matches resource names and types without regard to letter case.
  const std::string typeText(type);
  const std::string nameText(name);
  const HRSRC found = FindResourceA(module, nameText.c_str(), typeText.c_str());
  if (found == nullptr) return {};
  const HGLOBAL loaded = LoadResource(module, found);
  if (loaded == nullptr) return {};
  const void *bytes = LockResource(loaded);
  const DWORD size = SizeofResource(module, found);
  if (bytes == nullptr || size == 0) return {};
  // Resources of a loaded module stay mapped as long as the module; nothing to release.
  return {static_cast<const std::byte *>(bytes), size};
}

}  // namespace palvex::platform
