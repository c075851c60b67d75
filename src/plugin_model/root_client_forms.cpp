// The root's `_v1` operations that check more than one argument.
#include "plugin_model/group_interfaces.hpp"
#include "plugin_model/sample_time_text.hpp"

namespace PX_PLUGIN {
namespace {

using ns_sensor::Msg;

// The reader keeps a sync frame number as a signed 32-bit value.
constexpr std::uint32_t kLargestSyncFrame = 0x7FFFFFFF;

NodeNames NamesArgument(const char *displayName, std::uint32_t displayNameLength,
                        const char *matchName, std::uint32_t matchNameLength) {
  return {FreeTextArgument(displayName, displayNameLength), MatchNameArgument(matchName, matchNameLength)};
}

template <class Out>
Out &OutArgument(Out *out) {
  if (out == nullptr) RaisePluginError(Msg::InvalidObjectModelArgument);
  return *out;
}

}  // namespace

std::uint32_t IMgjsonRoot_I::SetTimecodeInfo(std::uint32_t dropFrame, std::uint32_t frameRateValue,
                                             std::uint32_t frameRateScale, PX_PluginError *error) {
  return RunWithStatus(error, [&] {
    SetTimeInformationOrThrow(CheckedTimecodeInfo(FlagArgument(dropFrame), frameRateValue, frameRateScale));
  });
}

std::uint32_t IMgjsonRoot_I::SetUtcInfo(std::uint32_t precisionLength, std::uint32_t isGmt,
                                        PX_PluginError *error) {
  return RunWithStatus(error, [&] {
    SetTimeInformationOrThrow(CheckedUtcInfo(precisionLength, FlagArgument(isGmt)));
  });
}

std::uint32_t IMgjsonRoot_I::AddVideoSyncFrame(const char *fileName, std::uint32_t fileNameLength,
                                               std::uint32_t frameNumber, PX_PluginError *error) {
  return RunWithStatus(error, [&] {
    if (frameNumber > kLargestSyncFrame) RaisePluginError(Msg::InvalidObjectModelArgument);
    AddVideoSyncEntryOrThrow({FreeTextArgument(fileName, fileNameLength), frameNumber, {}});
  });
}

std::uint32_t IMgjsonRoot_I::AddVideoSyncTime(const char *fileName, std::uint32_t fileNameLength,
                                              const char *timeString, std::uint32_t timeStringLength,
                                              PX_PluginError *error) {
  return RunWithStatus(error, [&] {
    AddVideoSyncEntryOrThrow({FreeTextArgument(fileName, fileNameLength), std::nullopt,
                              FreeTextArgument(timeString, timeStringLength)});
  });
}

std::uint32_t IMgjsonRoot_I::CreateGroup(const char *displayName, std::uint32_t displayNameLength,
                                         const char *matchName, std::uint32_t matchNameLength,
                                         IMgjsonGroup_v1 **group, PX_PluginError *error) {
  if (group != nullptr) *group = nullptr;
  return RunWithStatus(error, [&] {
    IMgjsonGroup_v1 *&out = OutArgument(group);
    out = CreateGroupOrThrow(NamesArgument(displayName, displayNameLength, matchName, matchNameLength));
  });
}

std::uint32_t IMgjsonRoot_I::CreateStaticData(std::uint32_t kind, const char *displayName,
                                              std::uint32_t displayNameLength, const char *matchName,
                                              std::uint32_t matchNameLength, const PX_StaticValue *value,
                                              PX_StaticDataNode *node, PX_PluginError *error) {
  if (node != nullptr) *node = PX_StaticDataNode{};
  return RunWithStatus(error, [&] {
    PX_StaticDataNode &out = OutArgument(node);
    out = CreateStaticDataOrThrow(kind, NamesArgument(displayName, displayNameLength, matchName, matchNameLength),
                                  value);
  });
}

std::uint32_t IMgjsonRoot_I::CreateDynamicData(std::uint32_t kind, const char *displayName,
                                               std::uint32_t displayNameLength, const char *matchName,
                                               std::uint32_t matchNameLength, PX_DynamicDataNode *node,
                                               PX_PluginError *error) {
  if (node != nullptr) *node = PX_DynamicDataNode{};
  return RunWithStatus(error, [&] {
    PX_DynamicDataNode &out = OutArgument(node);
    out = CreateDynamicDataOrThrow(kind, NamesArgument(displayName, displayNameLength, matchName, matchNameLength));
  });
}

}  // namespace PX_PLUGIN
