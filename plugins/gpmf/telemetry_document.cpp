#include "telemetry_document.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

#include "big_endian.hpp"
#include "gpmf_errors.hpp"
#include "telemetry_clock.hpp"

namespace gpmf {

using namespace PX_PLUGIN;
using palvex_plugins::TimedStream;

namespace {
constexpr std::uint32_t kMillisecondDigits = 3;
constexpr double kFixed2d = 2;               // GPSF: 0 none, 2 two-dimensional, 3 three-dimensional
constexpr double kPrecisionScale = 100;      // GPSP is the dilution of precision x 100
constexpr char kOutOfOrder[] = "Samples out of time order";

bool IsGpsKey(std::uint32_t key) { return key == FourCc("GPS5") || key == FourCc("GPS9"); }
}  // namespace

struct TelemetryDocument::Node {
  Node(IMgjsonRoot_v1 *root, std::uint32_t kind, const std::string &displayName, const std::string &matchName,
       std::initializer_list<std::string_view> components)
      : stream(root, kind, displayName, matchName, components) {}
  TimedStream stream;
  double min = std::numeric_limits<double>::infinity();
  double max = -std::numeric_limits<double>::infinity();
  std::optional<std::pair<double, double>> legalRange;

  void Add(palvex_plugins::TimeLine &times, const palvex_plugins::Instant &at, double value) {
    if (!std::isfinite(value)) return;  // the file format has no missing-value marker
    stream.Add(times, at, value);
    min = std::min(min, value);
    max = std::max(max, value);
  }
};

struct TelemetryDocument::Stream {
  std::uint32_t key = 0;
  StreamPlan plan;
  Node *whole = nullptr;            // kNumber, kText, kArray
  std::vector<Node *> fieldNodes;   // kSplit, parallel to plan.fields
};

struct TelemetryDocument::Device {
  std::string id;
  std::string name;
  std::vector<std::unique_ptr<Stream>> streams;
  std::vector<Node *> nodes;  // in the order met
  std::map<std::string, Node *> properties;
};

TelemetryDocument::TelemetryDocument(IMgjsonRoot_v1 *root, std::int64_t utcOffset)
    : root_(root), utcOffset_(utcOffset), times_(root, kMillisecondDigits, true) {}

TelemetryDocument::~TelemetryDocument() = default;

TelemetryDocument::Node &TelemetryDocument::MakeNode(std::uint32_t kind, const std::string &displayName,
                                                     std::initializer_list<std::string_view> components) {
  if (nodes_.size() >= kMaxNodes) Fail(kTooLarge);
  nodes_.push_back(std::make_unique<Node>(root_, kind, displayName, matchNames_.Make(displayName), components));
  return *nodes_.back();
}

TelemetryDocument::Device &TelemetryDocument::DeviceOf(const StreamBlock &block) {
  for (const auto &device : devices_) {
    if (device->id == block.deviceId && device->name == block.deviceName) return *device;
  }
  if (devices_.size() >= kMaxNodes) Fail(kTooLarge);
  devices_.push_back(std::make_unique<Device>());
  devices_.back()->id = block.deviceId;
  devices_.back()->name = block.deviceName;
  return *devices_.back();
}

TelemetryDocument::Stream &TelemetryDocument::StreamOf(Device &device, const StreamBlock &block) {
  for (const auto &stream : device.streams) {
    if (stream->key == block.key) return *stream;
  }
  auto stream = std::make_unique<Stream>();
  stream->key = block.key;
  stream->plan = PlanStream(block);
  const StreamPlan &plan = stream->plan;
  const std::vector<std::string> &axes = plan.components;
  switch (plan.shape) {
    case Shape::kNumber: stream->whole = &MakeNode(PX_DYNAMIC_NUMBER, plan.displayName); break;
    case Shape::kText: stream->whole = &MakeNode(PX_DYNAMIC_STRING, plan.displayName); break;
    case Shape::kArray:
      stream->whole = axes.size() == 2 ? &MakeNode(PX_DYNAMIC_NUMBER_ARRAY, plan.displayName, {axes[0], axes[1]})
                                       : &MakeNode(PX_DYNAMIC_NUMBER_ARRAY, plan.displayName, {axes[0], axes[1], axes[2]});
      break;
    case Shape::kSplit:
      for (const FieldNode &field : plan.fields) {
        Node &node = MakeNode(field.text ? PX_DYNAMIC_STRING : PX_DYNAMIC_NUMBER, field.displayName);
        node.legalRange = field.legalRange;
        stream->fieldNodes.push_back(&node);
      }
      break;
  }
  if (stream->whole != nullptr) device.nodes.push_back(stream->whole);
  device.nodes.insert(device.nodes.end(), stream->fieldNodes.begin(), stream->fieldNodes.end());
  device.streams.push_back(std::move(stream));
  return *device.streams.back();
}

TelemetryDocument::Node &TelemetryDocument::PropertyNode(Device &device, const std::string &id,
                                                         const std::string &displayName) {
  Node *&node = device.properties[id];
  if (node == nullptr) {
    node = &MakeNode(PX_DYNAMIC_NUMBER, displayName);
    // A per-payload value holds until the next payload says otherwise.
    node->stream.SetInterpolation(PX_INTERPOLATION_HOLD);
    device.nodes.push_back(node);
  }
  return *node;
}

void TelemetryDocument::Add(const StreamBlock &block, const unsigned char *payload, std::int64_t start,
                            std::int64_t duration) {
  if (block.fields.empty()) return;
  Device &device = DeviceOf(block);
  const StreamProperties &p = block.properties;
  const palvex_plugins::Instant payloadStart = InstantAt(start + utcOffset_);
  if (p.gpsFix) PropertyNode(device, "GPSF", "GPS fix").Add(times_, payloadStart, *p.gpsFix);
  if (p.gpsPrecision) {
    PropertyNode(device, "GPSP", "GPS dilution of precision").Add(times_, payloadStart, *p.gpsPrecision / kPrecisionScale);
  }
  if (p.temperature) {
    PropertyNode(device, "TMPC" + KeyText(block.key), StreamName(block) + " temperature [\xC2\xB0" "C]")
        .Add(times_, payloadStart, *p.temperature);
  }
  // Positions written before the first fix are zeros or stale: left out.
  if (IsGpsKey(block.key) && p.gpsFix && *p.gpsFix < kFixed2d) return;
  Stream &stream = StreamOf(device, block);
  if (block.fields.size() != stream.plan.fieldCount) return;  // a layout that changed mid-file
  const std::size_t steps = block.Steps();
  if (steps == 0) return;
  const std::int64_t perStep = duration / static_cast<std::int64_t>(steps);
  const std::int64_t remainder = duration % static_cast<std::int64_t>(steps);
  block.ForEachSample(payload, [&](std::size_t step, const std::vector<double> &numbers,
                                   const std::vector<std::string> &texts) {
    const auto s = static_cast<std::int64_t>(step);
    const palvex_plugins::Instant at =
        InstantAt(start + utcOffset_ + perStep * s + remainder * s / static_cast<std::int64_t>(steps));
    switch (stream.plan.shape) {
      case Shape::kNumber: stream.whole->Add(times_, at, numbers[0]); break;
      case Shape::kText: stream.whole->stream.AddText(times_, at, texts[0]); break;
      case Shape::kArray:
        if (std::all_of(numbers.begin(), numbers.end(), [](double v) { return std::isfinite(v); })) {
          stream.whole->stream.AddArray(times_, at, numbers.data(), static_cast<std::uint32_t>(numbers.size()));
        }
        break;
      case Shape::kSplit:
        for (std::size_t i = 0; i < stream.plan.fields.size(); ++i) {
          const FieldNode &field = stream.plan.fields[i];
          if (field.text) {
            stream.fieldNodes[i]->stream.AddText(times_, at, texts[field.field]);
          } else {
            stream.fieldNodes[i]->Add(times_, at, numbers[field.field]);
          }
        }
        break;
    }
  });
}

std::uint64_t TelemetryDocument::SampleCount() const {
  std::uint64_t samples = 0;
  for (const auto &node : nodes_) samples += node->stream.sampleCount();
  return samples;
}

void TelemetryDocument::Finish(const RecordingFacts &facts) {
  Ref<IMgjsonGroup_v1> recording = CreateGroup(root_, "Recording", matchNames_.Make("recording"));
  const auto addText = [&](const char *name, const std::string &value) {
    if (value.empty()) return;
    const StaticNode node = CreateStaticString(root_, name, matchNames_.Make(name), value);
    Call(recording.get(), &IMgjsonGroup_v1::AddStaticChild, node.views().node);
  };
  const auto addNumber = [&](const char *name, double value) {
    const StaticNode node = CreateStaticNumber(root_, name, matchNames_.Make(name), value);
    Call(recording.get(), &IMgjsonGroup_v1::AddStaticChild, node.views().node);
  };
  addText("Camera model", facts.cameraModel);
  addText("Firmware", facts.firmware);
  addText("Local start time", facts.localStartTime);
  addText("Time reference", facts.gpsTime ? "GPS (UTC)" : "Media time (from 1970-01-01T00:00:00Z)");
  addNumber("Chapters", facts.chapters);
  if (facts.payloadsCutOff > 0) addNumber("Payloads cut off", static_cast<double>(facts.payloadsCutOff));
  if (facts.extraTelemetryTracks > 0) addNumber("Telemetry tracks not read", facts.extraTelemetryTracks);
  Call(root_, &IMgjsonGroup_v1::AddGroupChild, recording.get());

  for (const auto &device : devices_) {
    const std::string name = !device->name.empty() ? device->name : "Device " + device->id;
    Ref<IMgjsonGroup_v1> group = CreateGroup(root_, name, matchNames_.Make(name, "device"));
    std::uint64_t backward = 0;
    for (Node *node : device->nodes) {
      if (node->legalRange && node->stream.sampleCount() > 0) {
        Call(node->stream.views().number, &IMgjsonDynamicDataNum_v1::SetRanges, node->min, node->max,
             node->legalRange->first, node->legalRange->second);
      }
      node->stream.AttachTo(group.get());
      backward += node->stream.backwardSteps();
    }
    if (backward > 0) {
      const StaticNode count = CreateStaticNumber(root_, kOutOfOrder, matchNames_.Make(kOutOfOrder),
                                                  static_cast<double>(backward));
      Call(group.get(), &IMgjsonGroup_v1::AddStaticChild, count.views().node);
    }
    if (group->GetChildCount() > 0) Call(root_, &IMgjsonGroup_v1::AddGroupChild, group.get());
  }
}

}  // namespace gpmf
