#include "mgjson_read/time_info_extraction.hpp"

#include <cmath>
#include <limits>

namespace ns_sensor {
namespace {

// The ^3 text of a refused precisionLength.
constexpr std::string_view kPrecisionLengthText = "a number from 0 to 9";
constexpr double kLargestPrecisionLength = 9;
// Timecode frames are written with at most three digits.
constexpr double kSlowestNominalRate = 1;
constexpr double kFastestNominalRate = 999;
// value × 100 ÷ scale of the two drop-frame rates.
constexpr std::uint32_t kDropFrame2997 = 2997;
constexpr std::uint32_t kDropFrame5994 = 5994;

// JSON numbers are doubles; an integer field takes the value truncated towards zero.
// Values beyond the field's range saturate, so no conversion is undefined.
template <typename Integer>
Integer Truncate(double value) {
  const double whole = std::trunc(value);
  if (!(whole > static_cast<double>(std::numeric_limits<Integer>::min()))) {
    return std::numeric_limits<Integer>::min();
  }
  if (!(whole < static_cast<double>(std::numeric_limits<Integer>::max()))) {
    return std::numeric_limits<Integer>::max();
  }
  return static_cast<Integer>(whole);
}

double NumberMember(const JsonValue &object, const char *name) {
  return object.FindMember(name)->value.GetDouble();
}

bool BoolMember(const JsonValue &object, const char *name) {
  return object.FindMember(name)->value.GetBool();
}

}  // namespace

TimecodeSettings ExtractTimecode(const JsonValue &timecodeInfo) {
  const JsonValue &frameRate = timecodeInfo.FindMember("frameRate")->value;
  TimecodeSettings settings;
  settings.frameRateValue = Truncate<std::uint32_t>(NumberMember(frameRate, "value"));
  settings.frameRateScale = Truncate<std::uint32_t>(NumberMember(frameRate, "scale"));
  settings.dropFrame = BoolMember(timecodeInfo, "dropFrame");
  const std::uint32_t value = settings.frameRateValue;
  const std::uint32_t scale = settings.frameRateScale;
  if (scale == 0) Raise(Msg::NonSupportedFrameRate);
  if (settings.dropFrame) {
    const std::uint32_t hundredths = value * 100u / scale;  // 32-bit arithmetic on purpose
    if (hundredths != kDropFrame2997 && hundredths != kDropFrame5994) {
      Raise(Msg::NonSupportedFrameRate);
    }
  }
  const double nominalRate =
      std::trunc(static_cast<double>(value) / static_cast<double>(scale) + 0.5);
  if (nominalRate < kSlowestNominalRate || nominalRate > kFastestNominalRate) {
    Raise(Msg::NonSupportedFrameRate);
  }
  settings.timeStringLength = value / scale > 99 ? 12 : 11;
  return settings;
}

UtcSettings ExtractUtc(const JsonValue &utcInfo) {
  const double precision = std::trunc(NumberMember(utcInfo, "precisionLength"));
  if (!(precision >= 0 && precision <= kLargestPrecisionLength)) {
    Raise(Msg::InvalidPropertyValueAtPath, Quoted("precisionLength"), Quoted("utcInfo"),
          kPrecisionLengthText);
  }
  UtcSettings settings;
  settings.precisionLength = static_cast<std::uint16_t>(precision);
  settings.isGmt = BoolMember(utcInfo, "isGMT");
  // YYYY-MM-DDTHH:MM:SS, then "." and the fraction digits, then Z or +HH:MM.
  settings.timeStringLength = static_cast<std::uint16_t>(
      (settings.precisionLength == 0 ? 20 : settings.precisionLength + 21) +
      (settings.isGmt ? 0 : 5));
  return settings;
}

std::vector<VideoSyncEntry> ExtractVideoSyncList(const JsonValue &list) {
  std::vector<VideoSyncEntry> entries;
  entries.reserve(list.Size());
  for (const JsonValue &item : list.GetArray()) {
    VideoSyncEntry entry;
    const auto timeString = item.FindMember("timeString");
    if (timeString != item.MemberEnd()) {
      entry.kind = PX_SYNC_TIME_STRING;
      entry.timeString.assign(timeString->value.GetString(), timeString->value.GetStringLength());
    }
    const auto frameNumber = item.FindMember("frameNumber");
    if (frameNumber != item.MemberEnd()) {
      entry.kind = PX_SYNC_FRAME_NUMBER;
      entry.frameNumber = Truncate<std::int32_t>(frameNumber->value.GetDouble());
    }
    const JsonValue &fileName = item.FindMember("fileName")->value;
    entry.fileName.assign(fileName.GetString(), fileName.GetStringLength());
    entries.push_back(std::move(entry));
  }
  return entries;
}

}  // namespace ns_sensor
