// The one manager a fuzz target uses for all its inputs: created at the first input and
// kept for the life of the process, as a long-running host keeps it.
#pragma once

#include "palvex/host.hpp"

inline IPalvex &FuzzManager() {
  static IPalvex *manager = [] {
    IPalvex *created = nullptr;
    CreatePalvex_1(&created, nullptr, nullptr, nullptr, nullptr, palvex::host::Callbacks(), nullptr);
    return created;
  }();
  return *manager;
}
