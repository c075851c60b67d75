// One stream's share of one payload: its sticky properties and its data KLVs, with the
// layout of a sample worked out, ready to be read sample by sample.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "klv.hpp"

namespace gpmf {

struct Field {
  char type = 0;
  std::size_t offset = 0;  // in the sample
  std::size_t bytes = 0;
  bool text = false;       // written as a text, never scaled
};

// What the stream's properties said, as far as the converter uses them.
struct StreamProperties {
  std::string name;                 // STNM
  std::vector<std::string> units;   // SIUN, else UNIT: one for all fields or one per field
  std::vector<double> scales;       // SCAL: one for all numeric fields or one per field
  std::string typeText;             // TYPE
  std::string axisOrder;            // ORIN
  std::optional<double> gpsFix;     // GPSF
  std::optional<std::string> gpsTime;  // GPSU, as written
  std::optional<double> gpsPrecision;  // GPSP (dilution of precision x 100)
  std::optional<double> temperature;   // TMPC
};

struct StreamBlock {
  std::string deviceId;    // DVID as text ("1", or a four-character code)
  std::string deviceName;  // DVNM
  std::uint32_t key = 0;   // the data key
  StreamProperties properties;
  std::vector<Field> fields;  // empty: the layout is unknown or inconsistent; skip the data
  std::vector<Klv> data;      // the data KLVs, in order

  // Time steps the payload's duration is shared among: the samples of one data KLV, or
  // the KLVs themselves when a stream writes one KLV per step (objects seen at that step).
  std::size_t Steps() const;

  // Each sample in order: its step, and its fields (numbers scaled; text fields in texts,
  // their number NaN).
  void ForEachSample(const unsigned char *payload,
                     const std::function<void(std::size_t step, const std::vector<double> &numbers,
                                              const std::vector<std::string> &texts)> &visit) const;
};

// Works out fields for the data KLV and the properties; leaves fields empty when the
// sample cannot be read (unknown type, compressed, sizes that disagree, a SCAL or unit
// count that fits neither one nor every field).
void LayOut(StreamBlock &block, const Klv &firstData);

}  // namespace gpmf
