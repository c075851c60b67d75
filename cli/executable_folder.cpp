#include "executable_folder.hpp"

#ifdef _WIN32
#include <windows.h>

#include <string>
#else
#include <system_error>
#endif

namespace palvex::cli {

#ifdef _WIN32
std::filesystem::path ExecutableFolder() {
  // Long paths need more than MAX_PATH; the size grows until the name fits.
  std::wstring name(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = ::GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()));
    if (length == 0) return {};
    if (length < name.size()) {
      name.resize(length);
      return std::filesystem::path(name).parent_path();
    }
    name.resize(name.size() * 2);
  }
}
#else
std::filesystem::path ExecutableFolder() {
  std::error_code failed;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", failed);
  return failed ? std::filesystem::path() : program.parent_path();
}
#endif

}  // namespace palvex::cli
