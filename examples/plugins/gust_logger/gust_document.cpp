#include "gust_document.hpp"

#include <algorithm>

namespace gust {
namespace {

using namespace PX_PLUGIN;

constexpr uint32_t kMillisecondsPerSecond = 1000;
constexpr uint32_t kLeastPrecision = 3;  // fraction digits of a millisecond
constexpr uint32_t kMostPrecision = 9;

// Fraction digits the start time is written with: the file's precision must hold them.
uint32_t FractionDigits(std::string_view utc) {
  const std::size_t point = utc.find('.');
  if (point == std::string_view::npos) return 0;
  uint32_t digits = 0;
  for (std::size_t at = point + 1; at < utc.size() && utc[at] >= '0' && utc[at] <= '9'; ++at) ++digits;
  return digits;
}

void AddStation(const Header &header, IMgjsonRoot_v1 *root) {
  Ref<IMgjsonGroup_v1> station = CreateGroup(root, "Station", "station");
  StaticNode name = CreateStaticString(root, "Name", "name", header.station);
  Call(station.get(), &IMgjsonGroup_v1::AddStaticChild, name.views().node);
  if (header.mastHeight) {
    StaticNode mast = CreateStaticNumber(root, "Mast height", "mastHeight", *header.mastHeight);
    Call(station.get(), &IMgjsonGroup_v1::AddStaticChild, mast.views().node);
  }
  Call(root, &IMgjsonGroup_v1::AddGroupChild, station.get());
}

void AddSpeed(const GustLog &log, IMgjsonRoot_v1 *root) {
  DynamicNode speed = CreateDynamicData(root, PX_DYNAMIC_NUMBER, "Wind speed", "windSpeed");
  IMgjsonDynamicDataNum_v1 *samples = speed.views().number;
  // At least "00.0": the values then line up in the file whatever the first sample is.
  Call(samples, &IMgjsonDynamicDataNum_v1::SetPattern, 0u, 2, 1);
  for (const Reading &reading : log.readings) {
    const std::string &start = log.header.start;
    Call(samples, &IMgjsonDynamicDataNum_v1::AddSampleAtUtc, start.data(), TextLength(start),
         reading.milliseconds, kMillisecondsPerSecond, reading.speed);
  }
  Call(root, &IMgjsonGroup_v1::AddDynamicChild, speed.views().node);
}

void AddDirection(const GustLog &log, IMgjsonRoot_v1 *root) {
  DynamicNode direction = CreateDynamicData(root, PX_DYNAMIC_NUMBER, "Wind direction", "windDirection");
  IMgjsonDynamicDataNum_v1 *samples = direction.views().number;
  // Between 350 and 10 degrees a linear blend would swing through south: hold instead.
  Call(direction.views().node, &IMgjsonDynamicData_v1::SetInterpolation, uint32_t{PX_INTERPOLATION_HOLD});
  const auto [lowest, highest] = std::minmax_element(
      log.readings.begin(), log.readings.end(),
      [](const Reading &a, const Reading &b) { return a.direction < b.direction; });
  Call(samples, &IMgjsonDynamicDataNum_v1::SetRanges, lowest->direction, highest->direction, 0.0, 360.0);
  for (const Reading &reading : log.readings) {
    const std::string &start = log.header.start;
    Call(samples, &IMgjsonDynamicDataNum_v1::AddSampleAtUtc, start.data(), TextLength(start),
         reading.milliseconds, kMillisecondsPerSecond, reading.direction);
  }
  Call(root, &IMgjsonGroup_v1::AddDynamicChild, direction.views().node);
}

void AddNotes(const GustLog &log, IMgjsonRoot_v1 *root) {
  const bool anyNote = std::any_of(log.readings.begin(), log.readings.end(),
                                   [](const Reading &reading) { return !reading.note.empty(); });
  if (!anyNote) return;  // a node without samples would only clutter the outline
  DynamicNode notes = CreateDynamicData(root, PX_DYNAMIC_STRING, "Notes", "notes");
  Call(notes.views().node, &IMgjsonDynamicData_v1::SetInterpolation, uint32_t{PX_INTERPOLATION_HOLD});
  // A note marks a moment: the lengths widen to the longest note.
  Call(notes.views().string, &IMgjsonDynamicDataString_v1::SetPaddedStringProperties, 0u, 0u, 1u);
  for (const Reading &reading : log.readings) {
    if (reading.note.empty()) continue;
    const std::string &start = log.header.start;
    Call(notes.views().string, &IMgjsonDynamicDataString_v1::AddSampleAtUtc, start.data(),
         TextLength(start), reading.milliseconds, kMillisecondsPerSecond, reading.note.data(),
         TextLength(reading.note));
  }
  Call(root, &IMgjsonGroup_v1::AddDynamicChild, notes.views().node);
}

}  // namespace

void BuildGustDocument(const GustLog &log, IMgjsonRoot_v1 *root) {
  const std::string &start = log.header.start;
  const uint32_t precision = std::min(std::max(kLeastPrecision, FractionDigits(start)), kMostPrecision);
  const bool gmt = !start.empty() && start.back() == 'Z';
  Call(root, &IMgjsonRoot_v1::SetUtcInfo, precision, gmt ? 1u : 0u);
  AddStation(log.header, root);
  AddSpeed(log, root);
  AddDirection(log, root);
  AddNotes(log, root);
}

}  // namespace gust
