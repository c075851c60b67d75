// Schema version 1: useTimecodeB, timecodeInfo, utcInfo and videoSyncTimeList stand at the
// top level. useTimecodeB decides which of the two time objects the file may hold, in
// whichever order they come.
#include "mgjson_read/mgjson_parser.hpp"

namespace ns_sensor {

const char *PX_MgjsonParser_v1::ParseDynamicSamplesPresent(const char *at, const char *) {
  RefuseProperty(at, "dynamicSamplesPresentB");
}

const char *PX_MgjsonParser_v1::ParseDynamicDataInfo(const char *at, const char *) {
  RefuseProperty(at, "dynamicDataInfo");
}

const char *PX_MgjsonParser_v1::ParseUseTimecode(const char *at, const char *) {
  const char *const value = at;
  bool useTimecode = false;
  at = scanner_.ReadBoolean(at, PropertyPath("useTimecodeB"), useTimecode);
  if (useTimecode && timeKind_ == PX_TIME_UTC) {
    RaiseAtOffset(Msg::InvalidInfoV1, OffsetOf(value), Quoted("utcInfo"), Quoted("useTimecodeB"),
                  "false");
  }
  if (!useTimecode && timeKind_ == PX_TIME_TIMECODE) {
    RaiseAtOffset(Msg::InvalidInfoV1, OffsetOf(value), Quoted("timecodeInfo"),
                  Quoted("useTimecodeB"), "true");
  }
  useTimecode_ = useTimecode;
  return at;
}

const char *PX_MgjsonParser_v1::ParseTimecodeInfo(const char *at, const char *) {
  if (Seen(kSeenUseTimecode) && !useTimecode_) {
    RaiseAtOffset(Msg::InvalidInfoV1, OffsetOf(at), Quoted("timecodeInfo"), Quoted("useTimecodeB"),
                  "true");
  }
  JsonDocument timecodeInfo;
  at = ReadObject(at, "timecodeInfo", timecodeInfo);
  validator_.ValidateTimecodeInfo(timecodeInfo);
  KeepTimecode(timecodeInfo);
  return at;
}

const char *PX_MgjsonParser_v1::ParseUtcInfo(const char *at, const char *) {
  if (Seen(kSeenUseTimecode) && useTimecode_) {
    RaiseAtOffset(Msg::InvalidInfoV1, OffsetOf(at), Quoted("utcInfo"), Quoted("useTimecodeB"),
                  "false");
  }
  JsonDocument utcInfo;
  at = ReadObject(at, "utcInfo", utcInfo);
  validator_.ValidateUtcInfo(utcInfo);
  KeepUtc(utcInfo);
  return at;
}

const char *PX_MgjsonParser_v1::ParseVideoSyncTimeList(const char *at, const char *) {
  JsonDocument list;
  at = ReadArray(at, "videoSyncTimeList", list);
  validator_.ValidateVideoSyncTimeList(list);
  KeepVideoSyncList(list);
  return at;
}

std::string PX_MgjsonParser_v1::GetMissingRequiredProperties() const {
  std::string missing;
  auto add = [&missing](std::string_view name) {
    if (!missing.empty()) missing += ',';
    missing += name;
  };
  if (!Seen(kSeenUseTimecode)) add("useTimecodeB");
  if (Seen(kSeenUseTimecode) && !useTimecode_ && !Seen(kSeenUtcInfo)) add("utcInfo");
  if (Seen(kSeenUseTimecode) && useTimecode_ && !Seen(kSeenTimecodeInfo)) add("timecodeInfo");
  if (!Seen(kSeenDataOutline)) add("dataOutline");
  return missing;
}

}  // namespace ns_sensor
