// Time information: utcInfo, timecodeInfo and the video sync list.
#include "mgjson_read/validator.hpp"

namespace ns_sensor {

void PX_MgjsonValidator::ValidateUtcInfo(const JsonValue &utcInfo) const {
  const CheckPath path("utcInfo");
  ExpectNumber(GetRequiredMember(utcInfo, "precisionLength", path), "precisionLength", path);
  ExpectBoolean(GetRequiredMember(utcInfo, "isGMT", path), "isGMT", path);
}

void PX_MgjsonValidator::ValidateTimecodeInfo(const JsonValue &timecodeInfo) const {
  const CheckPath path("timecodeInfo");
  const CheckPath frameRatePath("timecodeInfo::frameRate");
  const JsonValue &frameRate = GetRequiredMember(timecodeInfo, "frameRate", path);
  ExpectObject(frameRate, "frameRate", path);
  ExpectNumber(GetRequiredMember(frameRate, "value", frameRatePath), "value", frameRatePath);
  ExpectNumber(GetRequiredMember(frameRate, "scale", frameRatePath), "scale", frameRatePath);
  ExpectBoolean(GetRequiredMember(timecodeInfo, "dropFrame", path), "dropFrame", path);
}

void PX_MgjsonValidator::ValidateVideoSyncTimeList(const JsonValue &list) const {
  for (rapidjson::SizeType i = 0; i < list.Size(); ++i) {
    const JsonValue &item = list[i];
    const CheckPath path = CheckPath::Indexed("videoSyncTimeList", i);
    ExpectObject(item, "videoSyncTimeList", path);
    ExpectString(GetRequiredMember(item, "fileName", path), "fileName", path);
    const auto timeString = item.FindMember("timeString");
    const bool hasTimeString = timeString != item.MemberEnd();
    if (hasTimeString) ExpectString(timeString->value, "timeString", path);
    const auto frameNumber = item.FindMember("frameNumber");
    const bool hasFrameNumber = frameNumber != item.MemberEnd();
    if (hasFrameNumber) ExpectNumber(frameNumber->value, "frameNumber", path);
    if (hasTimeString == hasFrameNumber) {
      Raise(hasTimeString ? Msg::BothTimeStringAndFrameNumberPresent
                          : Msg::BothTimeStringAndFrameNumberMissing,
            Quoted("videoSyncTimeList"), Quoted("timeString"), Quoted("frameNumber"),
            Quoted(path.Text()));
    }
  }
}

}  // namespace ns_sensor
