#include "fit_samples.hpp"

#include <cmath>
#include <cstring>

namespace palvex_fit::testing {
namespace {

enum : std::uint16_t {
  kFileId = 0, kSession = 18, kLap = 19, kRecord = 20, kEvent = 21, kDeviceInfo = 23, kActivity = 34,
  kFieldDescription = 206, kDeveloperDataId = 207
};
constexpr std::uint8_t kTimestamp = 253;
constexpr std::uint32_t kInvalid32 = 0xFFFFFFFF;

std::uint32_t FloatBits(float value) {
  std::uint32_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

void AddSummaries(FitBuilder &fit, std::uint32_t end, std::uint32_t seconds, std::uint32_t centimetres) {
  fit.Data(3, {end, 0, 4});  // local 3 is the event message in both files: timer, stop_all
  fit.Define(4, kLap, {{kTimestamp, 4, kUint32}, {2, 4, kUint32}, {7, 4, kUint32}, {8, 4, kUint32},
                       {9, 4, kUint32}, {254, 2, kUint16}})
      .Data(4, {end, kT0, seconds * 1000, seconds * 1000, centimetres, 0});
  fit.Define(5, kSession, {{kTimestamp, 4, kUint32}, {2, 4, kUint32}, {7, 4, kUint32}, {8, 4, kUint32},
                           {9, 4, kUint32}, {5, 1, kEnum}, {6, 1, kEnum}, {25, 2, kUint16}, {26, 2, kUint16}})
      .Data(5, {end, kT0, seconds * 1000, seconds * 1000, centimetres, 2, 0, 0, 1});
  fit.Define(6, kActivity, {{kTimestamp, 4, kUint32}, {0, 4, kUint32}, {1, 2, kUint16}, {2, 1, kEnum},
                            {3, 1, kEnum}, {4, 1, kEnum}, {5, 4, kUint32}})
      .Data(6, {end, seconds * 1000, 1, 0, 26, 1, end + 3600});
}

}  // namespace

std::string ActivityFile(bool compressedRecords) {
  FitBuilder fit;
  fit.Define(0, kFileId, {{0, 1, kEnum}, {1, 2, kUint16}, {2, 2, kUint16}, {3, 4, kUint32z}, {4, 4, kUint32}})
      .Data(0, {4, 255, 1, 12345678, kT0});
  fit.Define(3, kEvent, {{kTimestamp, 4, kUint32}, {0, 1, kEnum}, {1, 1, kEnum}}).Data(3, {kT0, 0, 0});
  fit.Define(1, kRecord, {{kTimestamp, 4, kUint32}, {0, 4, kSint32}, {1, 4, kSint32}, {78, 4, kUint32},
                          {3, 1, kUint8}, {4, 1, kUint8}, {5, 4, kUint32}, {73, 4, kUint32}, {7, 2, kUint16},
                          {13, 1, kSint8}})
      .Data(1, {kT0, 0x21B0B392, 0x0612F812, 0x11BC, 120, 80, 0, 5000, 200, 21})
      .Data(1, {kT0 + 1, 0x21B0B83B, 0x0612FCBB, 0x11C1, 121, 81, 500, 5000, 210, 21})
      .Data(1, {kT0 + 2, 0x7FFFFFFF, 0x7FFFFFFF, kInvalid32, 0xFF, 82, 1000, 5000, 0xFFFF, 0x7F})
      .Data(1, {kT0 + 3, 0x21B0C18D, 0x0613060E, 0x11C6, 123, 83, 1500, 5000, 230, 22});
  if (compressedRecords) {
    fit.Define(2, kRecord, {{3, 1, kUint8}, {5, 4, kUint32}}).Compressed(2, 12, {124, 2000}).Compressed(2, 6, {125, 3000});
  }
  AddSummaries(fit, kT0 + 30, 30, 3000);
  return fit.Finish();
}

std::string RideFile(std::uint32_t records) {
  FitBuilder fit;
  fit.Define(0, kFileId, {{0, 1, kEnum}, {1, 2, kUint16}, {2, 2, kUint16}, {3, 4, kUint32z}, {4, 4, kUint32},
                          {8, 16, kString}})
      .Data(0, {4, 255, 7, 24681357, kT0, "Palvex test unit"});
  fit.Define(2, kDeviceInfo, {{kTimestamp, 4, kUint32}, {0, 1, kUint8}, {5, 2, kUint16}, {6, 1, kUint8}})
      .Data(2, {kT0, 0, 1234, 3});
  fit.Define(7, kDeveloperDataId, {{1, 16, kByte}, {3, 1, kUint8}}).Data(7, {std::string(16, '\x11'), 0});
  fit.Define(8, kFieldDescription, {{0, 1, kUint8}, {1, 1, kUint8}, {2, 1, kUint8}, {3, 16, kString}, {8, 8, kString}})
      .Data(8, {0, 0, kFloat32, "Headwind", "m/s"});
  fit.Define(3, kEvent, {{kTimestamp, 4, kUint32}, {0, 1, kEnum}, {1, 1, kEnum}}).Data(3, {kT0, 0, 0});
  fit.Define(1, kRecord,
             {{kTimestamp, 4, kUint32}, {0, 4, kSint32}, {1, 4, kSint32}, {78, 4, kUint32}, {3, 1, kUint8},
              {4, 1, kUint8}, {5, 4, kUint32}, {73, 4, kUint32}, {7, 2, kUint16}},
             false, {{0, 4, 0}});
  double centimetres = 0;
  for (std::uint32_t i = 0; i < records; ++i) {
    // Smooth values, so the example plots as a ride would; no randomness, so it never drifts.
    const double t = i;
    const double speed = 8.0 + 2.0 * std::sin(t / 40.0);
    const auto lat = static_cast<std::int64_t>(std::lround((47.3769 + 0.00005 * t) * 2147483648.0 / 180.0));
    const auto lon = static_cast<std::int64_t>(std::lround((8.5417 + 0.00008 * std::sin(t / 60.0)) * 2147483648.0 / 180.0));
    const auto altitude = static_cast<std::uint32_t>(std::lround((408.0 + 12.0 * std::sin(t / 90.0) + 500.0) * 5.0));
    const auto heartRate = static_cast<std::uint32_t>(std::lround(130.0 + 20.0 * std::sin(t / 70.0)));
    const auto cadence = static_cast<std::uint32_t>(std::lround(85.0 + 6.0 * std::sin(t / 25.0)));
    const auto power = static_cast<std::uint32_t>(std::lround(210.0 + 60.0 * std::sin(t / 30.0)));
    const std::uint32_t headwind = FloatBits(static_cast<float>(std::round(12.0 * std::sin(t / 100.0)) / 4.0));
    fit.Data(1, {kT0 + i, lat, lon, altitude, heartRate, cadence, static_cast<std::uint32_t>(std::lround(centimetres)),
                 static_cast<std::uint32_t>(std::lround(speed * 1000.0)), power, headwind});
    centimetres += speed * 100.0;
  }
  AddSummaries(fit, kT0 + records, records, static_cast<std::uint32_t>(std::lround(centimetres)));
  return fit.Finish();
}

}  // namespace palvex_fit::testing
