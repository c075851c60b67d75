// The library-side records of the three sample queries (declared in
// palvex/interfaces.hpp). The caller sets the request; the query resets the rest and
// leaves a cursor over the selected samples, which are decoded one at a time as they are
// taken, so a long selection never sits in memory as a whole.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "mgjson_read/sample_reader.hpp"
#include "palvex/records.h"

namespace ns_sensor {

struct PX_SampleSelection {
  // Request: selected samples to pass over, then at most `limit` of them (0: all).
  std::uint32_t skip = 0;
  std::uint32_t limit = 0;
  // Called, when set, once the selection is made and before a sample is taken: it sees
  // the defaults (the set's size among them) and may change skip and limit. The client
  // forms ask the host's record here.
  std::function<void(PX_SampleRequest &request)> readRequest;

  // Result.
  std::uint32_t setSampleCount = 0;  // samples in the whole sample set
  std::uint32_t count = 0;           // samples that Next yields: the selection after skip and limit
  bool reversed = false;             // they run in descending time order

  // The next sample of the result; false once `count` samples were taken. The views stay
  // valid until the next call. Faults of decoding: InvalidSample (39).
  bool Next(SampleView &sample) {
    if (taken_ == count || !cursor_) return false;
    if (!cursor_->Next(sample)) return false;
    ++taken_;
    return true;
  }

  // For the queries: forget the last result, keep the request.
  void ResetResult() {
    setSampleCount = 0;
    count = 0;
    reversed = false;
    cursor_.reset();
    taken_ = 0;
  }
  // For the queries: serve the selected samples of `cursor`, after asking readRequest.
  void Serve(SampleCursor cursor);

 private:
  std::optional<SampleCursor> cursor_;
  std::uint32_t taken_ = 0;
};

struct DynamicDataSampleSet : PX_SampleSelection {};
struct PX_DynamicSampleInfo : PX_SampleSelection {};

}  // namespace ns_sensor
