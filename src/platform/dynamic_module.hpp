// Modules loaded to run their code (converter plug-ins): load, look up an exported
// function, free. Failures are results, never exceptions; the caller decides what they mean.
#pragma once

#include <string>
#include <string_view>

namespace palvex::platform {

class DynamicModule {
 public:
  DynamicModule() = default;
  ~DynamicModule() { Free(); }
  // One owner per loaded module: the module record holds it in place.
  DynamicModule(const DynamicModule &) = delete;
  DynamicModule &operator=(const DynamicModule &) = delete;

  // Loads the module at path (UTF-8) with every dependency resolved now. False when it
  // cannot be loaded (missing, truncated, another architecture, a dependency missing);
  // Diagnostic() then says why, in the system's words.
  bool Load(std::string_view path);

  // The address of an exported function, or null.
  void *Symbol(const char *name) const;

  // Frees the module; nothing happens when none is loaded.
  void Free() noexcept;

  bool IsLoaded() const { return handle_ != nullptr; }
  const std::string &Diagnostic() const { return diagnostic_; }

 private:
  void *handle_ = nullptr;
  std::string diagnostic_;
};

}  // namespace palvex::platform
