// Library records of a data type's property objects. The host copies them into its own
// records through the service table while a callback hands them out.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "palvex/records.h"

// "numberStringProperties": pattern, then range. The seven fields are consecutive
// because the service table hands out their addresses in this order.
struct PX_NumberStringProperties {
  std::uint32_t isSigned = 0;
  std::uint32_t digitsInteger = 0;
  std::uint32_t digitsDecimal = 0;
  double occurringMin = 0.0;
  double occurringMax = 0.0;
  double legalMin = 0.0;
  double legalMax = 0.0;
};

// "paddedStringProperties".
struct PX_PaddedStringProperties {
  std::uint32_t maxLen = 0;
  std::uint32_t maxDigitsInStrLength = 0;
  std::uint32_t eventMarker = 0;
};

// One element of "arrayRanges" "ranges".
struct PX_ArrayRange {
  double occurringMin = 0.0;
  double occurringMax = 0.0;
  double legalMin = 0.0;
  double legalMax = 0.0;
};

// "numberArrayProperties".
struct PX_NumberArrayProperties {
  std::uint32_t isSigned = 0;
  std::uint32_t digitsInteger = 0;
  std::uint32_t digitsDecimal = 0;
  std::uint32_t arraySize = 0;
  std::uint32_t isPoint = 0;
  std::vector<std::string> displayNames;
  std::vector<PX_ArrayRange> ranges;
};
