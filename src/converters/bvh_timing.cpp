#include "converters/bvh_timing.hpp"

#include <charconv>
#include <cmath>
#include <string_view>

#include "api/px_exception.hpp"

namespace ns_sensor {
namespace {

constexpr std::string_view kFramesKey = "Frames:";
constexpr std::string_view kFrameTimeKey = "Frame Time:";

// Frame times are read in hundredths of a frame per second.
constexpr std::uint32_t kStepsPerFrame = 100;
// The shortest frame time accepted, in seconds, and the whole frame rates a document takes.
constexpr double kShortestFrameSeconds = 0.001;
constexpr std::uint32_t kMinRate = 1;
constexpr std::uint32_t kMaxRate = 999;

struct RateRow {
  std::uint32_t hundredths;
  BvhFrameRate rate;
};

// The rates that are not simply hundredths / 100.
constexpr RateRow kDropFrameRates[] = {
    {2997, {30000, 1001, true}},
    {5994, {60000, 1001, true}},
};

// The text after key on the first line from lines that holds it; raises BvhMalformed when
// no line does.
std::string_view TextAfter(BvhLines &lines, std::string_view key) {
  std::string_view line;
  while (lines.Next(line)) {
    const std::size_t at = line.find(key);
    if (at != std::string_view::npos) return line.substr(at + key.size());
  }
  Raise(Msg::BvhMalformed);
}

}  // namespace

BvhFrameRate FrameRateOf(double frameSeconds) {
  // Written so that NaN fails too.
  if (!(frameSeconds > kShortestFrameSeconds)) Raise(Msg::BvhBadFrameTime);
  const double steps = std::trunc(kStepsPerFrame / frameSeconds);
  if (!(steps >= kMinRate * kStepsPerFrame && steps < (kMaxRate + 1) * kStepsPerFrame)) Raise(Msg::BvhBadFrameTime);
  const auto hundredths = static_cast<std::uint32_t>(steps);
  for (const RateRow &row : kDropFrameRates) {
    if (row.hundredths == hundredths) return row.rate;
  }
  return {hundredths / kStepsPerFrame, 1, false};
}

BvhFrameRate ReadFrameRate(BvhLines &lines) {
  const std::string_view count = BvhWords(TextAfter(lines, kFramesKey)).Next();
  // The count is not needed (the frames are the lines that follow) but must be one.
  std::int64_t frames = 0;
  const auto [stop, error] = std::from_chars(count.data(), count.data() + count.size(), frames);
  if (count.empty() || error != std::errc() || stop != count.data() + count.size()) Raise(Msg::BvhMalformed);
  double frameSeconds = 0.0;
  if (!ReadNumber(BvhWords(TextAfter(lines, kFrameTimeKey)).Next(), frameSeconds)) Raise(Msg::BvhBadFrameTime);
  return FrameRateOf(frameSeconds);
}

}  // namespace ns_sensor
