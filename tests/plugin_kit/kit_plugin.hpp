// A plug-in written with palvex/plugin_kit.hpp alone, linked into the test program: its
// entry point is called directly with tables the test makes.
#pragma once

#include "palvex/plugin_abi.hpp"

// How a session's conversion behaves, chosen by the extension handed to initializeSession.
namespace kit_plugin {
inline constexpr const char kCommits[] = "commits";          // one node, committed
inline constexpr const char kThrowsOwnCode[] = "throws";     // fails with 4242, details 7 and 8, after making the root
inline constexpr const char kRunsOutOfMemory[] = "alloc";    // std::bad_alloc after making the root
inline constexpr const char kFindsNothing[] = "nothing";     // no root, no success, no error
inline constexpr uint32_t kOwnCode = 4242;
}  // namespace kit_plugin

extern "C" void InitializePlugin(const char *moduleIdentifier, const PX_PLUGIN::PX_HostInterface_v1 *host,
                                 PX_PLUGIN::PX_PluginFunctions_v1 *functions, PX_PLUGIN::PX_PluginError *error);
