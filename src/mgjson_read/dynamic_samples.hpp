// What a parser keeps of its file's dynamic samples: the sample-set index, the temporary
// file holding the compacted text of "dataDynamicSamples", and the file's time origin.
//
// Order of work during a parse: the index is built when the outline has been validated;
// the sample text is compacted into a new temporary file when "dataDynamicSamples" is
// read (wherever it stands, before the outline or after it); once the whole file has been
// read, the sample sets are parsed against the index and the time origin is worked out.
// The temporary file belongs to this object: it is deleted when the object goes, and by
// Drop after a failed parse.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "mgjson_read/compacted_sample_file.hpp"
#include "mgjson_read/rapidjson_config.hpp"
#include "mgjson_read/sample_compactor.hpp"
#include "mgjson_read/sample_index.hpp"
#include "mgjson_read/sample_reader.hpp"
#include "mgjson_read/sample_timing.hpp"
#include "mgjson_read/time_values.hpp"

namespace ns_sensor {

class DynamicSamples {
 public:
  // Replaces the index with the dynamic nodes of a validated outline (DuplicateSampleId, 37).
  void IndexOutline(const JsonValue &outline);
  // Before the outline the index views goes away.
  void ForgetOutline() noexcept { index_.Clear(); }

  // Compacts the text of a "dataDynamicSamples" array that the scanner accepted into a
  // new temporary file, which replaces any earlier one. fileOffset is where the array's
  // "[" stands in the file. Raises the temporary file's faults (14, 15, 21).
  void Compact(std::string_view arrayText, std::uint64_t fileOffset);

  // Parses the compacted sample sets against the index (the faults of ParseSampleSets)
  // and works out the time origin. Without compacted samples it only keeps the timing.
  void Complete(const SampleTiming &timing);

  // After a failed parse: deletes the temporary file and forgets the samples found.
  void Drop() noexcept;

  const SampleSetIndex &index() const { return index_; }
  const SampleTiming &timing() const { return timing_; }
  // The file's time axis: its timing, and for UTC files the origin below.
  const TimeAxis &timeAxis() const { return axis_; }
  // UTC files: the earliest sample time of all sample sets, from which seconds are
  // counted; for a set in ascending order its first sample's time. Empty for timecode
  // files (whose origin is 00:00:00:00) and for files without samples.
  const std::string &utcOriginText() const { return originText_; }

  // The compacted "dataDynamicSamples" text; empty when the file has none.
  std::string_view compactedText() const { return file_ ? file_->text() : std::string_view(); }
  // The temporary file's path; empty when there is none.
  std::string temporaryPath() const { return file_ ? file_->path() : std::string(); }

  // Requests between times or by index; valid as long as this object is unchanged.
  SampleReader Reader() const { return SampleReader(index_, compactedText(), timing_, axis_); }

 private:
  SampleSetIndex index_;
  std::unique_ptr<CompactedSampleFile> file_;
  CompactedArray layout_;
  SampleTiming timing_;
  TimeAxis axis_;
  std::string originText_;
};

}  // namespace ns_sensor
