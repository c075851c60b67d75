// The callback table of the tests: the host helper's, with a hook in the format delivery
// so a test can make a host function fail. Every test stores this one table, because the
// first table stored stays for the whole process.
#pragma once

#include <functional>

#include "palvex/host.hpp"

namespace palvex::testing {

// Runs before each format is delivered; a test may make it throw.
inline std::function<void()> &FormatDeliveryHook() {
  thread_local std::function<void()> hook;
  return hook;
}

inline const PX_ClientCallbacks *TestCallbacks() {
  static const PX_ClientCallbacks table = [] {
    PX_ClientCallbacks copy = *palvex::host::Callbacks();
    copy.addSupportedFormat = [](PX_SupportedFormatList *list, const char *extension, const char *name) {
      if (FormatDeliveryHook()) FormatDeliveryHook()();
      palvex::host::detail::AddSupportedFormat(list, extension, name);
    };
    return copy;
  }();
  return &table;
}

}  // namespace palvex::testing
