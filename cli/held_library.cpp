#include "held_library.hpp"

#include <cstdio>
#include <system_error>

#include "executable_folder.hpp"
#include "output.hpp"

namespace palvex::cli {
namespace {

std::string Utf8(const std::filesystem::path &path) {
  const std::u8string text = path.u8string();
  return std::string(text.begin(), text.end());
}

bool IsFolder(const std::filesystem::path &path) {
  std::error_code ignored;
  return std::filesystem::is_directory(path, ignored);
}

void PrintWarnings(const palvex::host::ErrorLog &log) {
  for (const auto &warning : log.errors) {
    std::fprintf(stderr, "palvex: warning %u: %s\n", static_cast<unsigned>(warning.code), warning.message.c_str());
  }
}

}  // namespace

std::string DefaultPluginFolder() {
  const std::filesystem::path program = ExecutableFolder();
  if (program.empty()) return {};
  const std::filesystem::path installed = program / ".." / "lib" / "palvex" / "plugins";
  if (IsFolder(installed)) return Utf8(installed.lexically_normal());
  const std::filesystem::path built = program / "plugins";
  if (IsFolder(built)) return Utf8(built);
  return {};
}

HeldLibrary::HeldLibrary(const GlobalOptions &options) {
  palvex::host::ErrorLog reports;
  const PX_ServiceTable *service = nullptr;
  CreatePalvex_1(&manager_, options.PluginFolder(), nullptr, options.locale.c_str(), &reports,
                 palvex::host::Callbacks(), &service);
  if (service != nullptr) palvex::host::ServiceTable() = service;
  if (manager_ != nullptr) {
    PrintWarnings(reports);
  } else {
    ReportErrors(reports);
  }
}

HeldLibrary::~HeldLibrary() { Release(); }

int HeldLibrary::Release() {
  if (manager_ == nullptr) return kExitOk;
  palvex::host::ErrorLog reports;
  DestroyPalvex_1(&manager_, &reports);
  manager_ = nullptr;
  return ReportErrors(reports);
}

}  // namespace palvex::cli
