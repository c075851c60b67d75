// Reading samples on request. A request selects samples of one sample set (between two
// times, or by index) and returns a cursor; the file handler drives the cursor to deliver
// the samples one by one through callback entry 5, so a million samples never become a
// million strings: the cursor decodes each sample into buffers it reuses.
//
// Before every selection the set is checked: an ID no dynamic node has raises
// SampleIdNotFound (35); a node whose samples the file does not hold, SamplesNotFound
// (38); and the range check raises InvalidSampleSetInfo (36) when the node's
// "sampleCount" is not the number of samples found, or when
//   last = base + start + (count - 1) x stride + count - 1
// is not below the size of the compacted text (base 0: the text is the region; start the
// offset of the set's first sample; stride the length of its shortest sample; count its
// samples), so no request ever reads outside the temporary file.
//
// Between two times (seconds from the file's time origin, both included): the first and
// last sample within the times are found by binary search over the sample times, compared
// with CompareSMPTETime or CompareUTCTime. A start after the end asks for descending
// order. Samples stored in descending time order are served the same way.
//
// Sets whose times are not monotonic (rising somewhere, falling elsewhere; found when the
// file is opened) cannot be searched: a request between times scans such a set and
// yields exactly the samples within the times, in file order, never reversed; with
// neighbours, the latest sample before the times comes first and the earliest after them
// last.
//
// A failed request changes nothing; the next one starts afresh.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "mgjson_read/sample_index.hpp"
#include "mgjson_read/sample_seconds.hpp"
#include "mgjson_read/sample_set_view.hpp"
#include "mgjson_read/sample_timing.hpp"
#include "mgjson_read/sample_value.hpp"
#include "mgjson_read/time_values.hpp"

namespace ns_sensor {

// One sample as a cursor yields it; its views stay valid until the cursor moves on.
struct SampleView {
  std::uint64_t index = 0;          // position in the sample set, in file order
  std::string_view time;            // the time text as the file writes it
  RationalTime seconds;             // from the time origin; denominator 0 when not expressible
  std::uint32_t kind = PX_TYPE_UNKNOWN;  // PX_DataTypeKind of the value
  std::span<const double> numbers;  // one for a number string, arraySize for an array, none for a padded string
  std::string_view text;            // a number string's text, the array items joined by ",", a padded string's "str"
};

class SampleCursor {
 public:
  // Samples the cursor yields in all, counted when it was made.
  std::uint64_t count() const { return count_; }
  // True when it yields them in descending time order (PX_SAMPLE_REVERSED).
  bool reversed() const { return reversed_; }
  // Samples in the whole set.
  std::uint64_t setSampleCount() const { return view_.count(); }

  // Passes over up to `samples` samples without decoding them.
  void Skip(std::uint64_t samples);
  // The next sample; false once every one has been yielded. Faults: InvalidSample (39),
  // SampleMemoryNotAvailable (34).
  bool Next(SampleView &sample);

 private:
  friend class SampleReader;

  // A run of samples: indices from `first` on, one way, or (filtered) the samples of
  // [first, scanEnd) whose times lie within the cursor's times.
  struct Segment {
    std::uint64_t first = 0;
    std::uint64_t length = 0;  // samples it yields
    bool backward = false;
    bool filtered = false;
    std::uint64_t scanEnd = 0;
    std::uint64_t scanAt = 0;  // filtered: the next index to look at
  };

  SampleCursor(SampleSetView view, const SampleTiming &timing, const TimeAxis &axis)
      : view_(view), timing_(&timing), seconds_(timing, axis) {}
  void Add(const Segment &segment);
  // The index of the next sample, or false at the end.
  bool Advance(std::uint64_t &index);
  bool WithinTimes(std::uint64_t index);
  void Decode(std::uint64_t index, SampleView &sample);

  SampleSetView view_;
  const SampleTiming *timing_;
  SampleSeconds seconds_;
  std::array<Segment, 3> segments_{};
  std::size_t segmentCount_ = 0;
  std::size_t current_ = 0;       // the segment being yielded
  std::uint64_t yielded_ = 0;     // samples yielded from it
  std::uint64_t count_ = 0;
  bool reversed_ = false;
  std::string lowText_;   // filtered segments: the times, as texts to compare with
  std::string highText_;
  DecodedValue value_;
};

class SampleReader {
 public:
  // Over the index, the compacted sample text, and the file's timing and time axis, all
  // of which must outlive the reader and its cursors.
  SampleReader(const SampleSetIndex &index, std::string_view compacted, const SampleTiming &timing,
               const TimeAxis &axis)
      : index_(&index), compacted_(compacted), timing_(&timing), axis_(&axis) {}

  // The samples whose times lie between start and end (seconds from the time origin),
  // both included; descending when start is after end. With neighbours, also the nearest
  // sample before the times and the nearest after them, when they exist. A denominator of
  // 0 raises ZeroScaleValue (1) naming "startTime" or "endTime".
  SampleCursor SelectBetween(std::string_view sampleSetId, RationalTime start, RationalTime end,
                             bool withNeighbours) const;

  // `count` samples from index `first`, in file order (fewer at the end of the set).
  SampleCursor SelectByIndex(std::string_view sampleSetId, std::uint64_t first, std::uint64_t count) const;

  // The checks every selection starts with; the set's entry, and in storedId the index's
  // own copy of the ID.
  const SampleSetEntry &CheckedEntry(std::string_view sampleSetId, std::string_view *storedId = nullptr) const;

 private:
  const SampleSetIndex *index_;
  std::string_view compacted_;
  const SampleTiming *timing_;
  const TimeAxis *axis_;
};

}  // namespace ns_sensor
