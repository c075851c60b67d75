// The header of a written file and its dynamic data information.
#include <variant>

#include "plugin_model/writer_parts.hpp"
#include "plugin_model/writer_text.hpp"

namespace PX_PLUGIN {
namespace {

using namespace writer_text;

constexpr std::string_view kSchemaVersion = "mgjson2.0.0";
constexpr std::string_view kSamplesPresentKey = "dynamicSamplesPresentB";

void AppendTimecodeInfo(std::string &out, const TimecodeInfo &timecode) {
  BooleanPair(out, "useTimecodeB", true);
  out += ',';
  Key(out, "timecodeInfo");
  out += '{';
  Key(out, "frameRate");
  out += '{';
  NumberPair(out, "value", timecode.frameRateValue);
  out += ',';
  NumberPair(out, "scale", timecode.frameRateScale);
  out += "},";
  BooleanPair(out, "dropFrame", timecode.dropFrame);
  out += '}';
}

void AppendUtcInfo(std::string &out, const UtcInfo &utc) {
  BooleanPair(out, "useTimecodeB", false);
  out += ',';
  Key(out, "utcInfo");
  out += '{';
  NumberPair(out, "precisionLength", utc.precisionLength);
  out += ',';
  BooleanPair(out, "isGMT", utc.isGmt);
  out += '}';
}

void AppendVideoSyncList(std::string &out, const std::vector<VideoSyncEntry> &entries) {
  out += ',';
  Key(out, "videoSyncTimeList");
  out += '[';
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const VideoSyncEntry &entry = entries[i];
    if (i != 0) out += ',';
    out += '{';
    StringPair(out, "fileName", entry.fileName);
    out += ',';
    if (entry.frameNumber) {
      NumberPair(out, "frameNumber", *entry.frameNumber);
    } else {
      StringPair(out, "timeString", entry.timeString);
    }
    out += '}';
  }
  out += ']';
}

void AppendDynamicDataInfo(std::string &out, const IMgjsonRoot_I &root) {
  Key(out, "dynamicDataInfo");
  out += '{';
  const TimeInformation &time = root.TimeInfo();
  if (const auto *timecode = std::get_if<TimecodeInfo>(&time)) {
    AppendTimecodeInfo(out, *timecode);
  } else if (const auto *utc = std::get_if<UtcInfo>(&time)) {
    AppendUtcInfo(out, *utc);
  } else {
    RaisePluginError(ns_sensor::Msg::TimeInfoMissing);
  }
  if (!root.VideoSyncList().empty()) AppendVideoSyncList(out, root.VideoSyncList());
  out += '}';
}

}  // namespace

std::string HeaderText(const IMgjsonRoot_I &root, bool promiseSamples, std::size_t &promiseOffset) {
  std::string text = "{";
  StringPair(text, "version", kSchemaVersion);
  promiseOffset = text.size();
  if (!promiseSamples) {
    AppendNoSamplesPair(text);
    return text;
  }
  text += ',';
  BooleanPair(text, kSamplesPresentKey, true);
  text += ',';
  AppendDynamicDataInfo(text, root);
  return text;
}

void AppendNoSamplesPair(std::string &out) {
  out += ',';
  BooleanPair(out, kSamplesPresentKey, false);
}

}  // namespace PX_PLUGIN
