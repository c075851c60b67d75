// Compiled as C++17 with only include/ on its include path (see tests.cmake), as a plug-in
// built elsewhere is: proves that the kit's header stands alone at the standard it names.
#include "kit_plugin.hpp"

#include <new>
#include <string>

#include "palvex/plugin_kit.hpp"

namespace {

using namespace PX_PLUGIN;

const PX_HostInterface_v1 *g_host = nullptr;

struct Session {
  std::string mode;
  std::string outputPath;
};

void InitializeSession(const PX_ConverterContext *, const char *, const char *extension,
                       const char *outputPath, PX_PluginSession *session, PX_PluginError *error) {
  RunGuarded(error, [&] { *session = new Session{extension, outputPath}; });
}

void TerminateSession(PX_PluginSession session, PX_PluginError *) { delete static_cast<Session *>(session); }

void Convert(PX_PluginSession session, PX_PluginError *error, PX_PluginResult *result) {
  RunGuarded(error, [&] {
    const Session &state = *static_cast<const Session *>(session);
    if (state.mode == kit_plugin::kFindsNothing) return;
    OwnedRoot root(g_host, state.outputPath, "kit.test");
    Call(root.get(), &IMgjsonRoot_v1::SetTimecodeInfo, 0u, 25u, 1u);
    DynamicNode speed = CreateDynamicData(root.get(), PX_DYNAMIC_NUMBER, "Speed", "speed");
    Call(speed.views().number, &IMgjsonDynamicDataNum_v1::AddSampleAtFrame, uint64_t{0}, 1.5);
    Call(root.get(), &IMgjsonGroup_v1::AddDynamicChild, speed.views().node);
    if (state.mode == kit_plugin::kThrowsOwnCode) throw PX_PluginException(kit_plugin::kOwnCode, 7, 8);
    if (state.mode == kit_plugin::kRunsOutOfMemory) throw std::bad_alloc();
    result->success = root.Commit() ? 1 : 0;
  });
}

}  // namespace

PX_PLUGIN_ENTRY(moduleIdentifier, host, functions, error) {
  (void)moduleIdentifier;
  if (!HostSupportsV1(host, functions)) {
    error->code = PX_PLUGIN_INVALID_ARGUMENT;
    return;
  }
  g_host = host;
  functions->initializeSession = &InitializeSession;
  functions->terminateSession = &TerminateSession;
  functions->convertToMgjson = &Convert;
}
