#include "plugin_model/sample_time_text.hpp"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "plugin_model/plugin_status.hpp"

namespace PX_PLUGIN {
namespace {

using ns_sensor::Msg;

// What the reader accepts of a frame rate (value × 100 ÷ scale for drop frame, computed
// in 32 bits as the reader does).
constexpr double kSlowestNominalRate = 1;
constexpr double kFastestNominalRate = 999;
constexpr std::uint32_t kDropFrame2997 = 2997;
constexpr std::uint32_t kDropFrame5994 = 5994;
constexpr std::uint32_t kLargestPrecision = ns_sensor::kMaxUtcPrecision;

// Where a timecode text's frame field starts, after "HH:MM:SS:".
constexpr std::size_t kFrameFieldAt = 9;
// Where a UTC text's fraction starts, after "YYYY-MM-DDTHH:MM:SS.".
constexpr std::size_t kUtcFractionAt = 20;
constexpr std::size_t kUtcPointAt = 19;
constexpr std::uint32_t kPowersOfTen[] = {1, 10, 100, 1000, 10000, 100000, 1000000,
                                          10000000, 100000000, 1000000000};

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Where a timecode text's seconds field starts, after "HH:MM:".
constexpr std::size_t kSecondsFieldAt = 6;
constexpr char kLastSecondOfMinute[] = "59";

// Moves the seconds field of a timecode text on by one, unless that starts a new minute.
bool NextSecondInMinute(std::string &text) {
  char &tens = text[kSecondsFieldAt];
  char &units = text[kSecondsFieldAt + 1];
  if (tens == kLastSecondOfMinute[0] && units == kLastSecondOfMinute[1]) return false;
  if (units == '9') {
    units = '0';
    ++tens;
  } else {
    ++units;
  }
  return true;
}

// Fraction digits of a UTC text: the digits after a point at position 19.
unsigned FractionDigitsOf(std::string_view text) {
  if (text.size() <= kUtcPointAt || text[kUtcPointAt] != '.') return 0;
  unsigned digits = 0;
  while (kUtcFractionAt + digits < text.size() && IsDigit(text[kUtcFractionAt + digits])) ++digits;
  return digits;
}

}  // namespace

TimecodeInfo CheckedTimecodeInfo(bool dropFrame, std::uint32_t value, std::uint32_t scale) {
  if (scale == 0) RaisePluginError(Msg::InvalidObjectModelArgument);
  const double nominal = std::trunc(static_cast<double>(value) / scale + 0.5);
  const bool rateAccepted = nominal >= kSlowestNominalRate && nominal <= kFastestNominalRate;
  const std::uint32_t hundredths = value * 100u / scale;  // 32-bit on purpose, as the reader
  const bool dropAccepted = !dropFrame || hundredths == kDropFrame2997 || hundredths == kDropFrame5994;
  if (!rateAccepted || !dropAccepted) RaisePluginError(Msg::InvalidObjectModelArgument);
  return {value, scale, dropFrame};
}

UtcInfo CheckedUtcInfo(std::uint32_t precisionLength, bool isGmt) {
  if (precisionLength > kLargestPrecision) RaisePluginError(Msg::InvalidObjectModelArgument);
  return {precisionLength, isGmt};
}

SampleTimeText::SampleTimeText(const TimeInformation &time) : time_(time) {
  if (const auto *timecode = std::get_if<TimecodeInfo>(&time_)) {
    rate_ = {timecode->frameRateValue, timecode->frameRateScale, timecode->dropFrame};
    // The reader reads hours past 23, so the frame of 24:00:00:00 is the day's length.
    const std::string midnight = ns_sensor::UsesThreeDigitFrames(rate_) ? "24:00:00:000" : "24:00:00:00";
    framesPerDay_ = static_cast<std::uint64_t>(ns_sensor::SmpteToFrameNumber(midnight, rate_));
    nominalFps_ = ns_sensor::NominalFramesPerSecond(rate_);
  }
}

std::string SampleTimeText::AtFrame(std::uint64_t frame, FrameTextCache &cache) const {
  if (!std::holds_alternative<TimecodeInfo>(time_)) RaisePluginError(Msg::SampleTimeMismatch);
  if (frame >= framesPerDay_) RaisePluginError(Msg::InvalidObjectModelArgument);
  // Within one minute labels follow frames one to one (drop frame skips labels only where
  // a minute starts), so the next frame's text differs in its frame field, or, after the
  // second's last frame, in its seconds and frame fields.
  if (cache.valid && frame == cache.frame + 1 && cache.frameField + 1 < nominalFps_) {
    ++cache.frameField;
    std::uint32_t field = cache.frameField;
    for (std::size_t at = cache.text.size(); at > kFrameFieldAt; --at, field /= 10) {
      cache.text[at - 1] = static_cast<char>('0' + field % 10);
    }
  } else if (cache.valid && frame == cache.frame + 1 && NextSecondInMinute(cache.text)) {
    cache.frameField = 0;
    std::fill(cache.text.begin() + kFrameFieldAt, cache.text.end(), '0');
  } else {
    cache.text = ns_sensor::FrameNumberToSmpte(frame, rate_);
    cache.frameField = static_cast<std::uint32_t>(std::stoul(cache.text.substr(kFrameFieldAt)));
    cache.valid = true;
  }
  cache.frame = frame;
  return cache.text;
}

void SampleTimeText::ReadBase(std::string_view base, UtcBaseCache &cache) const {
  const UtcInfo &utc = std::get<UtcInfo>(time_);
  const unsigned digits = FractionDigitsOf(base);
  ns_sensor::UtcRecord record;
  try {
    if (ns_sensor::ParseUtcTime(base, digits, record) != ns_sensor::TimeStatus::Ok) {
      RaisePluginError(Msg::InvalidObjectModelArgument);
    }
  } catch (const std::logic_error &) {  // unreadable or out-of-calendar fields
    RaisePluginError(Msg::InvalidObjectModelArgument);
  }
  if (base.size() != ns_sensor::UtcTextLength(digits, record.hasOffset)) {
    RaisePluginError(Msg::InvalidObjectModelArgument);
  }
  const bool zoneFits = utc.isGmt ? record.zone == 'Z' : record.hasOffset;
  if (!zoneFits || digits > utc.precisionLength) RaisePluginError(Msg::SampleTimeMismatch);
  record.fraction *= kPowersOfTen[utc.precisionLength - digits];
  cache.text.assign(base);
  cache.record = record;
  cache.valid = true;
}

std::string SampleTimeText::AtUtc(std::string_view base, std::uint32_t numerator,
                                  std::uint32_t denominator, UtcBaseCache &cache) const {
  const UtcInfo *utc = std::get_if<UtcInfo>(&time_);
  if (utc == nullptr) RaisePluginError(Msg::SampleTimeMismatch);
  if (denominator == 0) RaisePluginError(Msg::InvalidObjectModelArgument);
  if (!cache.valid || cache.text != base) {
    cache.valid = false;
    ReadBase(base, cache);
  }
  std::string text;
  try {
    text = ns_sensor::AddToUtcTime(cache.record, {numerator, denominator}, utc->precisionLength);
  } catch (const std::logic_error &) {
    RaisePluginError(Msg::InvalidObjectModelArgument);
  }
  // A sum past year 9999 gets a fifth year digit, which the reader cannot place.
  if (text.size() != ns_sensor::UtcTextLength(utc->precisionLength, cache.record.hasOffset)) {
    RaisePluginError(Msg::InvalidObjectModelArgument);
  }
  return text;
}

}  // namespace PX_PLUGIN
