// The reading half of the round trip: opens a written file through the manager, as a host
// does, and lists every difference from what the builder recorded. Header-only, so the
// fuzz target can share it.
#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "palvex/host.hpp"
#include "roundtrip_builder.hpp"

namespace PX_PLUGIN::roundtrip {

class FileComparison {
 public:
  FileComparison(IPalvex &manager, const ExpectedDocument &expected) : manager_(manager), expected_(expected) {}

  // The differences between the file at path and the expected document; none when equal.
  std::vector<std::string> Compare(const std::string &path) {
    ISensorFileHandler *handler = nullptr;
    manager_.OpenFile(&handler, path.c_str(), nullptr, &log_);
    if (handler == nullptr || !log_.empty()) {
      Differ("open", "no error", ErrorText());
      return std::move(differences_);
    }
    file_ = handler;
    CompareFileInfo();
    CompareSyncList();
    CompareChildren("", expected_.root);
    manager_.CloseFile(&handler, &log_);
    return std::move(differences_);
  }

 private:
  std::string ErrorText() {
    if (log_.empty()) return "no error";
    std::string text = std::to_string(log_.errors[0].code) + " " + log_.errors[0].message;
    log_.clear();
    return text;
  }

  template <class Expected, class Found>
  void Check(const std::string &where, const Expected &expected, const Found &found) {
    if (!(expected == found)) {
      std::ostringstream e, f;
      e.precision(17);
      f.precision(17);
      e << expected;
      f << found;
      Differ(where, e.str(), f.str());
    }
  }
  void Differ(const std::string &where, const std::string &expected, const std::string &found) {
    differences_.push_back(where + ": expected [" + expected + "] found [" + found + "]");
  }
  // Reports a failed query; true when it succeeded.
  bool Succeeded(const std::string &where) {
    if (log_.empty()) return true;
    Differ(where, "no error", ErrorText());
    return false;
  }

  void CompareFileInfo() {
    PX_FileInfo info;
    file_->GetFileInfo(&info, &log_);
    if (!Succeeded("file info")) return;
    Check("schema version", 2u, info.schemaVersion);
    Check("version", std::string("mgjson2.0.0"), info.version);
    Check("creator", expected_.creator, info.creator);
    // Time information is written only with samples.
    if (!expected_.HasSamples()) return;
    if (expected_.time == TimeKind::Timecode) {
      Check("time kind", static_cast<std::uint32_t>(PX_TIME_TIMECODE), info.timeKind);
      Check("frame rate value", expected_.rate.value, info.frameRateValue);
      Check("frame rate scale", expected_.rate.scale, info.frameRateScale);
      Check("drop frame", expected_.rate.dropFrame, info.dropFrame);
    } else {
      Check("time kind", static_cast<std::uint32_t>(PX_TIME_UTC), info.timeKind);
      Check("precision", expected_.precision, info.utcPrecision);
      Check("is GMT", expected_.isGmt, info.utcIsGmt);
    }
  }

  void CompareSyncList() {
    PX_VideoSyncTimeList list;
    file_->GetVideoSyncTimeList(&list, &log_);
    if (!Succeeded("sync list")) return;
    const std::size_t count = expected_.HasSamples() ? expected_.syncList.size() : 0;
    Check("sync entries", count, list.entries.size());
    for (std::size_t i = 0; i < std::min(count, list.entries.size()); ++i) {
      const auto &want = expected_.syncList[i];
      const auto &got = list.entries[i];
      const std::string where = "sync[" + std::to_string(i) + "]";
      Check(where + " file", want.fileName, got.fileName);
      if (want.frame) {
        Check(where + " kind", static_cast<std::uint32_t>(PX_SYNC_FRAME_NUMBER), got.kind);
        Check(where + " frame", static_cast<std::int32_t>(*want.frame), got.frameNumber);
      } else {
        Check(where + " kind", static_cast<std::uint32_t>(PX_SYNC_TIME_STRING), got.kind);
        Check(where + " time", want.timeString, got.timeString);
      }
    }
  }

  void CompareChildren(const std::string &path, const ExpectedNode &group) {
    std::vector<const ExpectedNode *> shown;
    for (const ExpectedNode &child : group.children) {
      if (child.Shown()) shown.push_back(&child);
    }
    PX_GroupChildren children;
    if (path.empty()) {
      file_->GetRootChildren(&children, &log_);
    } else {
      file_->GetGroupChildren(path.c_str(), &children, &log_);
    }
    if (!Succeeded("children of " + path)) return;
    Check("child count of " + path, shown.size(), children.paths.size());
    for (std::size_t i = 0; i < std::min(shown.size(), children.paths.size()); ++i) {
      CompareNode(path + "[" + std::to_string(i) + "]", *shown[i]);
    }
  }

  void CompareNode(const std::string &path, const ExpectedNode &node) {
    PX_GroupChildInfo info;
    file_->GetGroupChildInfo(path.c_str(), &info, &log_);
    if (!Succeeded("info of " + path)) return;
    Check(path + " display name", node.displayName, info.displayName);
    Check(path + " match name", node.matchName, info.matchName);
    if (node.kind == NodeKind::Group) {
      Check(path + " type", static_cast<std::uint32_t>(PX_NODE_GROUP), info.nodeType);
      CompareChildren(path, node);
    } else if (node.IsDynamic()) {
      Check(path + " type", static_cast<std::uint32_t>(PX_NODE_DYNAMIC), info.nodeType);
      CompareDynamic(path, node);
    } else {
      Check(path + " type", static_cast<std::uint32_t>(PX_NODE_STATIC), info.nodeType);
      CompareStatic(path, node);
    }
  }

  void CompareStatic(const std::string &path, const ExpectedNode &node) {
    PX_StaticDataInfo info;
    file_->GetStaticDataInfo(path.c_str(), &info, &log_);
    if (!Succeeded("static " + path)) return;
    switch (node.kind) {
      case NodeKind::StaticNumber:
        Check(path + " kind", static_cast<std::uint32_t>(PX_TYPE_NUMBER), info.valueKind);
        CheckJsonNumber(path + " number", node.number, info.number);
        break;
      case NodeKind::StaticString:
        Check(path + " kind", static_cast<std::uint32_t>(PX_TYPE_STRING), info.valueKind);
        Check(path + " text", node.text, info.text);
        break;
      case NodeKind::StaticBoolean:
        Check(path + " kind", static_cast<std::uint32_t>(PX_TYPE_BOOLEAN), info.valueKind);
        Check(path + " boolean", node.boolean, info.boolean);
        break;
      default:
        Check(path + " kind", static_cast<std::uint32_t>(PX_TYPE_NUMBER_ARRAY), info.valueKind);
        CheckNumbers(path + " numbers", node.numbers, info.numbers, kJsonNumberUlps);
        break;
    }
  }

  // Sample values are read exactly; JSON numbers (static values) with the reader's
  // normal-precision number reading, which may land a few units in the last place away
  // from the nearest double of a long text.
  static constexpr std::uint64_t kJsonNumberUlps = 3;

  static std::uint64_t UlpsBetween(double a, double b) {
    if (std::signbit(a) != std::signbit(b)) return a == b ? 0 : UINT64_MAX;
    std::uint64_t x = 0, y = 0;
    std::memcpy(&x, &a, sizeof x);
    std::memcpy(&y, &b, sizeof y);
    return x > y ? x - y : y - x;
  }

  void CheckJsonNumber(const std::string &where, double expected, double found) {
    if (UlpsBetween(expected, found) > kJsonNumberUlps) Check(where, expected, found);
  }

  void CheckNumbers(const std::string &where, const std::vector<double> &expected, const std::vector<double> &found,
                    std::uint64_t ulps = 0) {
    Check(where + " count", expected.size(), found.size());
    for (std::size_t i = 0; i < std::min(expected.size(), found.size()); ++i) {
      if (UlpsBetween(expected[i], found[i]) > ulps) Check(where + "[" + std::to_string(i) + "]", expected[i], found[i]);
    }
  }

  void CompareDynamic(const std::string &path, const ExpectedNode &node) {
    PX_DynamicDataInfo info;
    file_->GetDynamicDataInfo(path.c_str(), &info, &log_);
    if (!Succeeded("dynamic " + path)) return;
    static constexpr std::uint32_t kTypes[] = {PX_TYPE_NUMBER_STRING, PX_TYPE_PADDED_STRING,
                                               PX_TYPE_NUMBER_STRING_ARRAY};
    const auto kindIndex = static_cast<std::size_t>(node.kind) - static_cast<std::size_t>(NodeKind::DynamicNumber);
    Check(path + " type", kTypes[kindIndex], info.dataType.kind);
    Check(path + " sample set ID", node.sampleSetId, info.sampleSetId);
    Check(path + " interpolation", node.interpolation, info.interpolation);
    Check(path + " expected frequency", node.hasExpectedFrequency, info.hasExpectedFrequency);
    Check(path + " sample count", node.samples.size(), static_cast<std::size_t>(info.sampleCount));
    Check(path + " duration", node.maxInterSampleDuration.value_or(""), info.maxInterSampleDuration);
    CompareSamples(path, node);
  }

  void CompareSamples(const std::string &path, const ExpectedNode &node) {
    PX_DynamicSampleInfo block;
    const auto count = static_cast<std::uint32_t>(node.samples.size());
    file_->GetDynamicSampleInfo(node.sampleSetId.c_str(), 0, count, 1, &block, &log_);
    if (!Succeeded("samples of " + path)) return;
    Check(path + " samples read", node.samples.size(), block.samples.size());
    for (std::size_t i = 0; i < std::min(node.samples.size(), block.samples.size()); ++i) {
      const ExpectedSample &want = node.samples[i];
      const palvex::host::Sample &got = block.samples[i];
      const std::string where = path + " sample " + std::to_string(i);
      Check(where + " time", want.time, got.time.text);
      if (node.kind == NodeKind::DynamicString) {
        Check(where + " text", want.text, got.text);
      } else {
        CheckNumbers(where, want.numbers, got.numbers);
      }
    }
  }

  IPalvex &manager_;
  const ExpectedDocument &expected_;
  ISensorFileHandler *file_ = nullptr;
  palvex::host::ErrorLog log_;
  std::vector<std::string> differences_;
};

}  // namespace PX_PLUGIN::roundtrip
