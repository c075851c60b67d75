// What a round-trip document is made of: the source of every choice (a seeded generator
// in the tests, the input bytes in the fuzz target) and the record of what the written
// file must say when it is read back. Header-only, so the fuzz target can share it.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "mgjson_read/time_values.hpp"
#include "palvex/plugin_model.hpp"

namespace PX_PLUGIN::roundtrip {

class ChoiceSource {
 public:
  virtual ~ChoiceSource() = default;
  virtual std::uint64_t Next() = 0;
  // 0 to n - 1 (0 when n is 0).
  std::uint32_t Below(std::uint32_t n) { return n == 0 ? 0 : static_cast<std::uint32_t>(Next() % n); }
  bool Chance(std::uint32_t percent) { return Below(100) < percent; }
};

class RandomChoices final : public ChoiceSource {
 public:
  explicit RandomChoices(std::uint64_t seed) : engine_(seed) {}
  std::uint64_t Next() override { return engine_(); }

 private:
  std::mt19937_64 engine_;
};

// Choices from bytes, one byte each; 0 once they run out, which ends every loop.
class ByteChoices final : public ChoiceSource {
 public:
  ByteChoices(const std::uint8_t *data, std::size_t size) : data_(data), size_(size) {}
  std::uint64_t Next() override { return at_ < size_ ? data_[at_++] : 0; }

 private:
  const std::uint8_t *data_;
  std::size_t size_;
  std::size_t at_ = 0;
};

// A number as the file gives it back: its 16-significant-digit text read again (17
// digits next to the largest double, where 16 would read back as infinite).
inline double Written(double value) {
  if (std::fabs(value) >= 1.7976931348623155e308) return value;
  char text[40];
  std::snprintf(text, sizeof text, "%.15e", value);
  return std::strtod(text, nullptr);
}

// A free text as the file gives it back: control bytes without an escape become spaces.
inline std::string Written(std::string_view text) {
  std::string out(text);
  for (char &c : out) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 && c != '\b' && c != '\t' && c != '\n' && c != '\f' && c != '\r') c = ' ';
  }
  return out;
}

struct ExpectedSample {
  std::string time;
  std::vector<double> numbers;  // numbers and number arrays
  std::string text;             // strings
};

enum class NodeKind { Group, StaticNumber, StaticString, StaticBoolean, StaticArray, DynamicNumber, DynamicString, DynamicArray };

struct ExpectedNode {
  NodeKind kind = NodeKind::Group;
  std::string displayName;
  std::string matchName;
  double number = 0;                // static number
  std::string text;                 // static string
  bool boolean = false;             // static Boolean
  std::vector<double> numbers;      // static number array
  std::string sampleSetId;          // dynamic
  std::uint32_t interpolation = PX_INTERPOLATION_LINEAR;
  bool hasExpectedFrequency = false;
  std::optional<std::string> maxInterSampleDuration;
  std::vector<ExpectedSample> samples;
  std::vector<ExpectedNode> children;  // groups

  bool IsDynamic() const { return kind >= NodeKind::DynamicNumber; }
  // What the file holds of it: a dynamic node with samples, a static array with elements,
  // a group holding any of these, any other static node.
  bool Shown() const {
    if (kind == NodeKind::Group) {
      for (const ExpectedNode &child : children) {
        if (child.Shown()) return true;
      }
      return false;
    }
    if (kind == NodeKind::StaticArray) return !numbers.empty();
    if (IsDynamic()) return !samples.empty();
    return true;
  }
};

enum class TimeKind { None, Timecode, Utc };

struct ExpectedDocument {
  TimeKind time = TimeKind::None;
  ns_sensor::FrameRate rate;
  std::uint32_t precision = 0;
  bool isGmt = true;
  std::string creator;
  struct Sync {
    std::string fileName;
    std::optional<std::uint32_t> frame;
    std::string timeString;
  };
  std::vector<Sync> syncList;
  bool announced = false;  // SetDynamicSamplesPresent(1)
  ExpectedNode root;       // its children form the outline

  bool HasSamples() const {
    bool any = false;
    Visit(root, [&](const ExpectedNode &node) { any = any || (node.IsDynamic() && !node.samples.empty()); });
    return any;
  }
  // The status commit must return.
  std::uint32_t CommitStatus() const {
    if ((announced || HasSamples()) && time == TimeKind::None) return PX_PLUGIN_TIME_INFO_MISSING;
    return root.Shown() ? PX_PLUGIN_OK : PX_PLUGIN_NO_CHILDREN;
  }
  template <class Visitor>
  static void Visit(const ExpectedNode &node, Visitor &&visit) {
    visit(node);
    for (const ExpectedNode &child : node.children) Visit(child, visit);
  }
};

}  // namespace PX_PLUGIN::roundtrip
