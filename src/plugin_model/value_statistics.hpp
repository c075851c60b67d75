// What the values of a node need, gathered as they arrive: the pattern that holds every
// number text (sign, digits before and after the point), the smallest and largest
// number, and the longest text with the digit count of its length.
#pragma once

#include <cstdint>

#include "plugin_model/model_records.hpp"
#include "plugin_model/number_text.hpp"

namespace PX_PLUGIN {

// Decimal digits of a count: 1 for 0 to 9, 2 for 10 to 99, ...
std::uint32_t DecimalDigitCount(std::uint64_t value);

class NumberStatistics {
 public:
  // A value and the digit counts of its plain decimal text (number_text.hpp).
  void Add(double value, NumberDigits digits);

  bool Empty() const { return count_ == 0; }
  // The smallest pattern that holds every text added (not signed when nothing was added).
  NumberPattern Pattern() const { return pattern_; }
  // The least pattern given, widened to hold every text added.
  NumberPattern Widen(const NumberPattern &least) const;
  // Smallest to largest value; 0 to 0 when nothing was added.
  MinMax Extent() const { return extent_; }

 private:
  std::uint64_t count_ = 0;
  NumberPattern pattern_;
  MinMax extent_;
};

class TextStatistics {
 public:
  // The length of a text before escaping.
  void Add(std::uint64_t length);
  // The least properties given, widened to the longest text and its digit count.
  PaddedStringProperties Widen(const PaddedStringProperties &least) const;

 private:
  std::uint64_t longest_ = 0;
};

}  // namespace PX_PLUGIN
