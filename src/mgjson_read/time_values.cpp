// Rational arithmetic and SMPTE timecode. The UTC half is in time_values_utc.cpp, the
// file's time axis in time_axis.cpp.
#include "mgjson_read/time_values.hpp"

#include <cmath>
#include <cstdio>
#include <limits>
#include <numeric>
#include <stdexcept>

#include "api/px_exception.hpp"
#include "mgjson_read/plain_digits.hpp"
#include "mgjson_read/time_values_internal.hpp"

namespace ns_sensor {
namespace {

constexpr std::uint64_t kMax32 = std::numeric_limits<std::uint32_t>::max();

// Field positions of HH:MM:SS:FF and HH:MM:SS:FFF.
constexpr std::size_t kHoursAt = 0;
constexpr std::size_t kMinutesAt = 3;
constexpr std::size_t kSecondsAt = 6;
constexpr std::size_t kFramesAt = 9;
constexpr std::size_t kFieldDigits = 2;
constexpr std::size_t kThreeFrameDigits = 3;
constexpr std::uint32_t kHighestTwoDigitRate = 99;  // above it frames take three digits
constexpr std::uint32_t kHoursPerDay = 24;

// Drop frame at 29.97 (doubled at 59.94): two labels are skipped at the start of every
// minute except each tenth, so ten minutes hold 18000 labels but 17982 frames.
constexpr std::uint32_t kDropFrameFps60 = 60;
constexpr std::uint64_t kLabelsPerTenMinutes = 18000;
constexpr std::uint64_t kFramesPerTenMinutes = 17982;
constexpr std::uint64_t kLabelsPerMinute = 1800;
constexpr std::uint64_t kFramesPerDroppingMinute = 1798;
constexpr std::uint64_t kLabelsSkippedPerMinute = 2;
constexpr std::uint64_t kDroppingMinutesPerTen = 9;

bool ProductFits(RationalTime a, RationalTime b) {
  return std::uint64_t{a.numerator} * b.numerator <= kMax32 &&
         std::uint64_t{a.denominator} * b.denominator <= kMax32;
}

RationalTime Product(RationalTime a, RationalTime b) {
  return {a.numerator * b.numerator, a.denominator * b.denominator};
}

// Divides n and d by their common divisor; d is never 0 here, so neither is the divisor.
void Reduce(std::uint32_t &n, std::uint32_t &d) {
  const std::uint32_t divisor = std::gcd(n, d);
  n /= divisor;
  d /= divisor;
}

// 2 at 59.94, else 1: the drop-frame constants scale with the rate.
std::uint64_t DropFactor(std::uint32_t fps) { return fps == kDropFrameFps60 ? 2 : 1; }

// Labels skipped before a nominal label count.
std::uint64_t SkippedLabels(std::uint64_t labels, std::uint32_t fps) {
  const std::uint64_t factor = DropFactor(fps);
  const std::uint64_t block = kLabelsPerTenMinutes * factor;
  const std::uint64_t minute = kLabelsPerMinute * factor;
  return ((labels % block) / minute + (labels / block) * kDroppingMinutesPerTen) * factor *
         kLabelsSkippedPerMinute;
}

// The label count of a frame: the frame plus the labels skipped before it.
std::uint64_t LabelOfFrame(std::uint64_t frame, std::uint32_t fps) {
  const std::uint64_t factor = DropFactor(fps);
  const std::uint64_t tens = frame / (kFramesPerTenMinutes * factor);
  const std::uint64_t within = frame % (kFramesPerTenMinutes * factor);
  std::uint64_t label = frame + kDroppingMinutesPerTen * kLabelsSkippedPerMinute * factor * tens;
  const std::uint64_t firstMinute = kLabelsPerMinute * factor;
  if (within >= firstMinute) {
    label += kLabelsSkippedPerMinute * factor +
             ((within - firstMinute) / (kFramesPerDroppingMinute * factor)) *
                 kLabelsSkippedPerMinute * factor;
  }
  return label;
}

}  // namespace

int ReadTimeField(std::string_view text, std::size_t at, std::size_t width) {
  return StandardInteger(text.substr(at, width));
}

TimeStatus MultiplyRational(RationalTime a, RationalTime b, RationalTime &product) {
  if (a.denominator == 0 || b.denominator == 0) {
    product = {0, 0};
    return TimeStatus::DoesNotFit;
  }
  if (!ProductFits(a, b)) {
    // Crosswise first: this is what cancels a rate against its inverse (frames × 1001 /
    // 30000 times 30000 / 1001), which reducing each factor alone cannot.
    Reduce(a.numerator, b.denominator);
    Reduce(b.numerator, a.denominator);
    Reduce(a.numerator, a.denominator);
    Reduce(b.numerator, b.denominator);
    if (!ProductFits(a, b)) {
      product = {0, 0};
      return TimeStatus::DoesNotFit;
    }
  }
  product = Product(a, b);
  return TimeStatus::Ok;
}

std::uint32_t NominalFramesPerSecond(const FrameRate &rate) {
  if (rate.scale == 0) Raise(Msg::ZeroScaleValue, Quoted("frameRate"));
  const double fps = std::trunc(static_cast<double>(rate.value) / rate.scale + 0.5);
  if (fps < 1.0) Raise(Msg::ZeroScaleValue, Quoted("frameRate"));
  return static_cast<std::uint32_t>(fps);  // at most 2^32 - 1 + 0.5, truncated
}

bool UsesThreeDigitFrames(const FrameRate &rate) {
  return rate.scale != 0 && rate.value / rate.scale > kHighestTwoDigitRate;
}

std::size_t SmpteTextLength(const FrameRate &rate) {
  return kFramesAt + (UsesThreeDigitFrames(rate) ? kThreeFrameDigits : kFieldDigits);
}

std::int64_t SmpteToFrameNumber(std::string_view text, const FrameRate &rate) {
  const std::uint32_t fps = NominalFramesPerSecond(rate);
  if (text.size() < SmpteTextLength(rate)) throw std::invalid_argument("timecode text too short");
  const int hours = ReadTimeField(text, kHoursAt, kFieldDigits);
  const int minutes = ReadTimeField(text, kMinutesAt, kFieldDigits);
  const int seconds = ReadTimeField(text, kSecondsAt, kFieldDigits);
  const int frames = ReadTimeField(text, kFramesAt, SmpteTextLength(rate) - kFramesAt);
  if (hours < 0 || minutes < 0 || minutes >= kMinutesPerHour || seconds < 0 ||
      seconds >= kSecondsPerMinute || frames < 0 || static_cast<std::uint32_t>(frames) >= fps) {
    throw std::out_of_range("timecode field out of range");
  }
  const std::uint64_t labels =
      ((std::uint64_t(hours) * kMinutesPerHour + minutes) * kSecondsPerMinute + seconds) * fps +
      frames;
  const std::uint64_t frame = rate.dropFrame ? labels - SkippedLabels(labels, fps) : labels;
  return static_cast<std::int64_t>(frame);  // below 100 hours of 2^32 fps: fits
}

SmpteFields FieldsOfFrame(std::uint64_t frame, const FrameRate &rate) {
  const std::uint32_t fps = NominalFramesPerSecond(rate);
  const std::uint64_t label = rate.dropFrame ? LabelOfFrame(frame, fps) : frame;
  const std::uint64_t seconds = label / fps;
  return {seconds / kSecondsPerHour,
          static_cast<std::uint32_t>(seconds / kSecondsPerMinute % kMinutesPerHour),
          static_cast<std::uint32_t>(seconds % kSecondsPerMinute),
          static_cast<std::uint32_t>(label % fps)};
}

std::string FormatSmpte(const SmpteFields &fields, const FrameRate &rate) {
  // Frames above 999 (rates of 1000 fps and more) print in full and make a longer text.
  char text[48];
  std::snprintf(text, sizeof text,
                UsesThreeDigitFrames(rate) ? "%02llu:%02u:%02u:%03u" : "%02llu:%02u:%02u:%02u",
                static_cast<unsigned long long>(fields.hours), fields.minutes, fields.seconds,
                fields.frames);
  return text;
}

std::string FrameNumberToSmpte(std::uint64_t frame, const FrameRate &rate) {
  SmpteFields fields = FieldsOfFrame(frame, rate);
  fields.hours %= kHoursPerDay;
  return FormatSmpte(fields, rate);
}

RationalTime SmpteToTime(std::string_view text, const FrameRate &rate) {
  const std::int64_t frame = SmpteToFrameNumber(text, rate);
  if (frame < 0 || static_cast<std::uint64_t>(frame) > kMax32) return {0, 0};
  RationalTime time;
  (void)MultiplyRational({static_cast<std::uint32_t>(frame), 1}, {rate.scale, rate.value}, time);
  return time;  // 0/0 when it does not fit
}

std::uint64_t FrameOfTime(RationalTime time, const FrameRate &rate, bool roundUp) {
  if (time.denominator == 0) Raise(Msg::ZeroScaleValue, Quoted("time"));
  (void)NominalFramesPerSecond(rate);  // refuses a scale of 0
  // Both products are below 2^64, so the frame is exact whatever the fractions are.
  const std::uint64_t frames = std::uint64_t{time.numerator} * rate.value;
  const std::uint64_t perFrame = std::uint64_t{time.denominator} * rate.scale;
  return frames / perFrame + (roundUp && frames % perFrame != 0 ? 1 : 0);
}

std::string TimeToSmpte(RationalTime time, const FrameRate &rate) {
  return FrameNumberToSmpte(FrameOfTime(time, rate, false), rate);
}

int CompareSMPTETime(std::string_view left, std::string_view right) {
  const std::size_t shortest = kFramesAt + kFieldDigits;
  if (left.data() == nullptr || right.data() == nullptr || left.size() < shortest ||
      right.size() < shortest) {
    Raise(Msg::InvalidInputTime, "CompareSMPTETime");
  }
  for (const std::size_t at : {kHoursAt, kMinutesAt, kSecondsAt}) {
    const int order = left.substr(at, kFieldDigits).compare(right.substr(at, kFieldDigits));
    if (order != 0) return order;
  }
  const auto frameDigits = [](std::string_view text) {
    return text.size() - kFramesAt == kThreeFrameDigits ? kThreeFrameDigits : kFieldDigits;
  };
  return ReadTimeField(left, kFramesAt, frameDigits(left)) -
         ReadTimeField(right, kFramesAt, frameDigits(right));
}

}  // namespace ns_sensor
