// Compiled with only include/ on its include path (see tests.cmake).
#include "standalone_converter.hpp"

#include "palvex/plugin_helpers.hpp"

namespace standalone {

using namespace PX_PLUGIN;

uint32_t BuildStationDocument(IMgjsonRoot_v1 *root) noexcept {
  try {
    Call(root, &IMgjsonRoot_v1::SetTimecodeInfo, 0u, 25u, 1u);
    Call(root, &IMgjsonRoot_v1::SetCreator, "station", 7u);
    Ref<IMgjsonGroup_v1> station = CreateGroup(root, "Station", "station");
    StaticNode name = CreateStaticString(root, "Name", "name", "North \"Pier\"");
    StaticNode height = CreateStaticNumber(root, "Height", "height", 12.5);
    Call(height.views().number, &IMgjsonStaticDataNum_v1::SetRanges, 0.0, 100.0, 0.0, 1000.0);
    StaticNode open = CreateStaticBoolean(root, "Open", "open", true);
    DynamicNode wind = CreateDynamicData(root, PX_DYNAMIC_NUMBER, "Wind", "wind");
    for (uint64_t frame = 0; frame < 3; ++frame) {
      Call(wind.views().number, &IMgjsonDynamicDataNum_v1::AddSampleAtFrame, frame, 3.5 * static_cast<double>(frame));
    }
    for (const StaticNode *node : {&name, &height, &open}) {
      Call(station.get(), &IMgjsonGroup_v1::AddStaticChild, node->views().node);
    }
    Call(root, &IMgjsonGroup_v1::AddGroupChild, station.get());
    Call(root, &IMgjsonGroup_v1::AddDynamicChild, wind.views().node);
    uint32_t committed = 0;
    Call(root, &IMgjsonRoot_v1::Commit, &committed);
    return committed == 1 ? PX_PLUGIN_OK : PX_PLUGIN_WRONG_STATE;
  } catch (const PX_PluginException &e) {
    return e.code();
  }
}

uint32_t RenameWithRawOperations(IMgjsonRoot_v1 *root) noexcept {
  IMgjsonGroup_v1 *group = nullptr;
  PX_PluginError error = {0, -1, -1};
  if (root->CreateGroup("G", 1, "g", 1, &group, &error) != PX_PLUGIN_OK) return 0xFFFFFFFF;
  group->Acquire();  // absorbed: the reference was counted when the group was handed out
  const uint32_t refused = group->SetNames("Bad", 3, "bad name", 8, &error);
  const uint32_t accepted = group->SetNames("Good", 4, "good", 4, nullptr);
  group->Release();
  return accepted == PX_PLUGIN_OK && error.code == refused ? refused : 0xFFFFFFFF;
}

}  // namespace standalone
