// Module texts on Windows: resources of type "txt" in the DLL, read from the module loaded
// as an image resource only, so that none of its code runs (no entry point, no imports).
#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include <string>

#include "platform/module_texts.hpp"
#include "platform/system_path_win32.hpp"

namespace palvex::platform {
namespace {

constexpr const char *kTextType = "txt";
constexpr const char *kManifestName = "PXPLUGINUIDS";
constexpr const char *kIdentifierName = "MODULE_IDENTIFIER";
constexpr DWORD kAsImageResource = 0x20;  // LOAD_LIBRARY_AS_IMAGE_RESOURCE

// The module, loaded for its resources and freed with the object.
class ResourceModule {
 public:
  explicit ResourceModule(const std::wstring &path)
      : module_(::LoadLibraryExW(path.c_str(), nullptr, kAsImageResource)) {}
  ~ResourceModule() {
    if (module_ != nullptr) ::FreeLibrary(module_);
  }
  ResourceModule(const ResourceModule &) = delete;
  ResourceModule &operator=(const ResourceModule &) = delete;

  bool loaded() const { return module_ != nullptr; }

  // A copy of the resource's bytes; the terminator and padding a resource compiler may
  // leave after a text are no part of it.
  std::optional<std::string> Text(const char *name) const {
    const HRSRC found = ::FindResourceA(module_, name, kTextType);
    if (found == nullptr) return std::nullopt;
    const HGLOBAL loaded = ::LoadResource(module_, found);
    if (loaded == nullptr) return std::nullopt;
    const auto *bytes = static_cast<const char *>(::LockResource(loaded));
    std::size_t length = ::SizeofResource(module_, found);
    if (bytes == nullptr) length = 0;
    while (length > 0 && bytes[length - 1] == '\0') --length;
    return std::string(bytes == nullptr ? "" : bytes, length);
  }

 private:
  HMODULE module_;
};

}  // namespace

ModuleTexts ReadModuleTexts(std::string_view path) {
  const auto systemPath = SystemPath(path);
  if (!systemPath) return {};
  const ResourceModule module(*systemPath);
  if (!module.loaded()) return {};
  return ModuleTexts{module.Text(kManifestName), module.Text(kIdentifierName)};
}

}  // namespace palvex::platform
