// What every telemetry plug-in does with its samples: one UTC time line for the document,
// and dynamic streams that take samples at instants on it, count the times that go
// backwards, and join the outline only when they received a sample.
#ifndef PALVEX_PLUGINS_TIMED_STREAM_HPP
#define PALVEX_PLUGINS_TIMED_STREAM_HPP

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include "palvex/plugin_kit.hpp"
#include "utc_time.hpp"

namespace palvex_plugins {

// The document's time information, set on the root when made: UTC with `precision`
// fraction digits, GMT ("Z") or the unknown zone of the file ("+00:00").
class TimeLine {
 public:
  TimeLine(PX_PLUGIN::IMgjsonRoot_v1 *root, std::uint32_t precision, bool gmt);

  // The base text the library takes for an instant; valid until the next call. Streams of
  // one row or point ask for the same instant in turn: the last text is kept.
  std::string_view Text(const Instant &instant);
  std::uint32_t precision() const { return precision_; }
  bool gmt() const { return gmt_; }

 private:
  std::uint32_t precision_;
  bool gmt_;
  std::string text_;
  Instant textInstant_;
};

// One dynamic node. Samples are added in file order; a time before the previous sample's
// is kept where it stands and counted (backwardSteps), for the plug-in to report.
class TimedStream {
 public:
  // A number, string or number-array node (PX_DynamicKind). Components name the values of
  // an array (at most three); other kinds take none.
  TimedStream(PX_PLUGIN::IMgjsonRoot_v1 *root, std::uint32_t kind, std::string_view displayName,
              std::string_view matchName, std::initializer_list<std::string_view> components = {});

  void SetInterpolation(std::uint32_t interpolation);  // PX_Interpolation
  void Add(TimeLine &times, const Instant &at, double value);
  void AddText(TimeLine &times, const Instant &at, std::string_view text);
  void AddArray(TimeLine &times, const Instant &at, const double *values, std::uint32_t count);

  // Adds the node to group when it has samples; a stream without any stays out of the file.
  void AttachTo(PX_PLUGIN::IMgjsonGroup_v1 *group);

  std::uint64_t sampleCount() const { return samples_; }
  std::uint64_t backwardSteps() const { return backwardSteps_; }
  PX_PLUGIN::PX_DynamicDataNode views() const { return node_.views(); }

 private:
  void Step(const Instant &at);

  PX_PLUGIN::DynamicNode node_;
  std::uint64_t samples_ = 0;
  std::uint64_t backwardSteps_ = 0;
  Instant last_;
};

}  // namespace palvex_plugins

#endif  // PALVEX_PLUGINS_TIMED_STREAM_HPP
