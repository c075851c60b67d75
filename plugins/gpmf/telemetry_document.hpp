// The document of one recording: a "Recording" group with what the camera says about it,
// then one group per device with one node per stream (or per field, see stream_plan.hpp),
// and slow nodes for the per-payload GPS fix, GPS precision and sensor temperatures.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "match_names.hpp"
#include "palvex/plugin_kit.hpp"
#include "stream_block.hpp"
#include "stream_plan.hpp"
#include "timed_stream.hpp"

namespace gpmf {

// Recording-wide facts for the "Recording" group; empty texts and zero counts are left out.
struct RecordingFacts {
  std::string cameraModel;
  std::string firmware;
  std::string localStartTime;  // the camera's wall clock, no zone
  bool gpsTime = false;        // times are UTC from GPS, else media time
  std::uint32_t chapters = 1;
  std::uint64_t payloadsCutOff = 0;
  std::uint32_t extraTelemetryTracks = 0;
};

// More nodes than this is refused (kTooLarge): each keeps a sample store of its own.
constexpr std::size_t kMaxNodes = 512;

class TelemetryDocument {
 public:
  // Times are media nanoseconds + utcOffset since 1970-01-01 on a GMT time line with
  // millisecond precision.
  TelemetryDocument(PX_PLUGIN::IMgjsonRoot_v1 *root, std::int64_t utcOffset);
  ~TelemetryDocument();

  // One stream's share of a payload spanning [start, start + duration) media nanoseconds.
  void Add(const StreamBlock &block, const unsigned char *payload, std::int64_t start, std::int64_t duration);

  // Adds the groups to the root: the recording's first, then the devices in the order met.
  void Finish(const RecordingFacts &facts);

  // Samples added so far, over every node.
  std::uint64_t SampleCount() const;

 private:
  struct Node;
  struct Stream;
  struct Device;
  Device &DeviceOf(const StreamBlock &block);
  Stream &StreamOf(Device &device, const StreamBlock &block);
  Node &PropertyNode(Device &device, const std::string &id, const std::string &displayName);
  Node &MakeNode(std::uint32_t kind, const std::string &displayName,
                 std::initializer_list<std::string_view> components = {});

  PX_PLUGIN::IMgjsonRoot_v1 *root_;
  std::int64_t utcOffset_;
  palvex_plugins::TimeLine times_;
  palvex_plugins::MatchNames matchNames_;
  std::vector<std::unique_ptr<Device>> devices_;
  std::vector<std::unique_ptr<Node>> nodes_;
};

}  // namespace gpmf
