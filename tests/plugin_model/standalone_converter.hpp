// A tiny converter compiled against include/palvex/ alone (no library internals on its
// include path), the way a separately built converter module is.
#pragma once

#include <stdint.h>

#include "palvex/plugin_model.hpp"

namespace standalone {

// Builds and commits a small document through the helper header: a group with three
// static nodes and a dynamic number node with three samples. Returns 0 or the status of
// the first failure.
uint32_t BuildStationDocument(PX_PLUGIN::IMgjsonRoot_v1 *root) noexcept;

// Calls the raw operations without the helper: a refused match name, then a good one.
// Returns the status of the refused call, or 0xFFFFFFFF when the good one failed.
uint32_t RenameWithRawOperations(PX_PLUGIN::IMgjsonRoot_v1 *root) noexcept;

}  // namespace standalone
