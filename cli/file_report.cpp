#include "file_report.hpp"

namespace palvex::cli {
namespace {

constexpr uint32_t kThreeDigitFramesAbove = 99;  // frames per second

bool IsZero(const palvex::host::Time &time) { return time.denominator != 0 && time.numerator == 0; }

}  // namespace

bool ReadFileReport(ISensorFileHandler *file, palvex::host::ErrorLog &errors, FileReport &report) {
  const std::size_t reports = errors.errors.size();
  file->GetFileInfo(&report.info, &errors);
  file->GetVideoSyncTimeList(&report.sync, &errors);
  return errors.errors.size() == reports;
}

const char *NodeTypeWord(uint32_t nodeType) {
  switch (nodeType) {
    case PX_NODE_GROUP: return "group";
    case PX_NODE_DYNAMIC: return "dynamic";
    case PX_NODE_STATIC: return "static";
    default: return "other";
  }
}

const char *DataTypeWord(uint32_t kind) {
  switch (kind) {
    case PX_TYPE_NUMBER: return "number";
    case PX_TYPE_STRING: return "string";
    case PX_TYPE_BOOLEAN: return "boolean";
    case PX_TYPE_NUMBER_ARRAY: return "numberArray";
    case PX_TYPE_NUMBER_STRING: return "numberString";
    case PX_TYPE_PADDED_STRING: return "paddedString";
    case PX_TYPE_NUMBER_STRING_ARRAY: return "numberStringArray";
    default: return "unknown";
  }
}

const char *InterpolationWord(uint32_t interpolation) {
  switch (interpolation) {
    case PX_INTERPOLATION_LINEAR: return "linear";
    case PX_INTERPOLATION_HOLD: return "hold";
    default: return "";
  }
}

const char *TimeKindWord(uint32_t timeKind) {
  switch (timeKind) {
    case PX_TIME_TIMECODE: return "timecode";
    case PX_TIME_UTC: return "utc";
    default: return "none";
  }
}

std::optional<double> SecondsOf(const palvex::host::Time &time) {
  if (time.denominator == 0) return std::nullopt;
  return static_cast<double>(time.numerator) / time.denominator;
}

void TimeOriginFinder::See(const PX_DynamicDataInfo &node) {
  if (atZero_) return;
  if (IsZero(node.firstSampleTime)) {
    atZero_ = node.firstSampleTime.text;
  } else if (IsZero(node.lastSampleTime)) {
    atZero_ = node.lastSampleTime.text;
  } else if (node.firstSampleTime.denominator != 0) {
    sampleSetIds_.push_back(node.sampleSetId);
  }
}

std::optional<std::string> TimeOriginFinder::Origin(ISensorFileHandler *file, const PX_FileInfo &info) const {
  if (info.timeKind == PX_TIME_TIMECODE) {
    const bool threeDigits = info.frameRateScale != 0 && info.frameRateValue / info.frameRateScale > kThreeDigitFramesAbove;
    return std::string(threeDigits ? "00:00:00:000" : "00:00:00:00");
  }
  if (info.timeKind != PX_TIME_UTC) return std::nullopt;
  if (atZero_) return atZero_;
  for (const std::string &id : sampleSetIds_) {
    DynamicDataSampleSet samples;
    samples.limit = 1;
    palvex::host::ErrorLog none;  // a set without a sample at 0 s is no error here
    file->GetSampleSet(id.c_str(), 0, 1, 0, 1, &samples, &none);
    if (!samples.samples.empty()) return samples.samples.front().time.text;
  }
  return std::nullopt;
}

}  // namespace palvex::cli
