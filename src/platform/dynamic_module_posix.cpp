// Modules on POSIX systems: dlopen and its companions.
#include <dlfcn.h>

#include <utility>

#include "platform/dynamic_module.hpp"

namespace palvex::platform {
namespace {

std::string LastDlError() {
  const char *text = ::dlerror();
  return text ? text : "unknown dynamic loader failure";
}

}  // namespace

bool DynamicModule::Load(std::string_view path) {
  Free();
  diagnostic_.clear();
  std::string file(path);
  if (file.find('\0') != std::string::npos) {
    diagnostic_ = "the path holds a NUL byte";
    return false;
  }
  // Without a slash dlopen would search the library path instead of opening this file.
  if (file.find('/') == std::string::npos) file.insert(0, "./");
  // Local symbols: two plug-ins defining the same names must not see each other's.
  handle_ = ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle_ == nullptr) diagnostic_ = LastDlError();
  return handle_ != nullptr;
}

void *DynamicModule::Symbol(const char *name) const {
  if (handle_ == nullptr || name == nullptr) return nullptr;
  return ::dlsym(handle_, name);
}

void DynamicModule::Free() noexcept {
  if (handle_ != nullptr) ::dlclose(std::exchange(handle_, nullptr));
}

}  // namespace palvex::platform
