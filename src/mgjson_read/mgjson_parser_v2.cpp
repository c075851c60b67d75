// Schema version 2: dynamicSamplesPresentB must come before dynamicDataInfo, which holds
// the time information, and both before dataDynamicSamples.
#include "mgjson_read/mgjson_parser.hpp"

namespace ns_sensor {

const char *PX_MgjsonParser_v2::ParseDataDynamicSamples(const char *at, const char *end) {
  if (!Seen(kSeenDynamicSamplesPresent)) {
    RaiseAtOffset(Msg::DependentPropertyNotFound, OffsetOf(at), Quoted("dynamicSamplesPresentB"),
                  Quoted("dataDynamicSamples"));
  }
  if (!dynamicSamplesPresent_) {
    RaiseAtOffset(Msg::InvalidInfoV2, OffsetOf(at), Quoted("dataDynamicSamples"),
                  Quoted("dynamicSamplesPresentB"), "true");
  }
  if (!Seen(kSeenDynamicDataInfo)) {
    RaiseAtOffset(Msg::DependentPropertyNotFound, OffsetOf(at), Quoted("dynamicDataInfo"),
                  Quoted("dataDynamicSamples"));
  }
  return PX_MgjsonParser::ParseDataDynamicSamples(at, end);
}

const char *PX_MgjsonParser_v2::ParseDynamicSamplesPresent(const char *at, const char *) {
  return scanner_.ReadBoolean(at, PropertyPath("dynamicSamplesPresentB"), dynamicSamplesPresent_);
}

const char *PX_MgjsonParser_v2::ParseDynamicDataInfo(const char *at, const char *) {
  if (!Seen(kSeenDynamicSamplesPresent)) {
    RaiseAtOffset(Msg::DependentPropertyNotFound, OffsetOf(at), Quoted("dynamicSamplesPresentB"),
                  Quoted("dynamicDataInfo"));
  }
  if (!dynamicSamplesPresent_) {
    RaiseAtOffset(Msg::InvalidInfoV2, OffsetOf(at), Quoted("dynamicDataInfo"),
                  Quoted("dynamicSamplesPresentB"), "true");
  }
  JsonDocument info;
  at = ReadObject(at, "dynamicDataInfo", info);
  validator_.ValidateDynamicDataInfo(info);
  useTimecode_ = info.MemberBegin()->value.GetBool();  // the validator made it the first member
  if (useTimecode_) {
    KeepTimecode(info.FindMember("timecodeInfo")->value);
  } else {
    KeepUtc(info.FindMember("utcInfo")->value);
  }
  videoSyncList_.clear();
  const auto syncList = info.FindMember("videoSyncTimeList");
  if (syncList != info.MemberEnd()) KeepVideoSyncList(syncList->value);
  return at;
}

const char *PX_MgjsonParser_v2::ParseUseTimecode(const char *at, const char *) {
  RefuseProperty(at, "useTimecodeB");
}

const char *PX_MgjsonParser_v2::ParseTimecodeInfo(const char *at, const char *) {
  RefuseProperty(at, "timecodeInfo");
}

const char *PX_MgjsonParser_v2::ParseUtcInfo(const char *at, const char *) {
  RefuseProperty(at, "utcInfo");
}

const char *PX_MgjsonParser_v2::ParseVideoSyncTimeList(const char *at, const char *) {
  RefuseProperty(at, "videoSyncTimeList");
}

std::string PX_MgjsonParser_v2::GetMissingRequiredProperties() const {
  std::string missing;
  auto add = [&missing](std::string_view name) {
    if (!missing.empty()) missing += ',';
    missing += name;
  };
  if (!Seen(kSeenVersion)) add("version");
  if (!Seen(kSeenDataOutline)) add("dataOutline");
  if (!Seen(kSeenDynamicSamplesPresent)) add("dynamicSamplesPresentB");
  if (dynamicSamplesPresent_ && !Seen(kSeenDynamicDataInfo)) add("dynamicDataInfo");
  return missing;
}

}  // namespace ns_sensor
