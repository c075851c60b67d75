// The telemetry fields whose meaning we know: display names with units, match names and
// legal ranges, kept as data. Any other field keeps the name it has in the file.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace srt {

// How a known field's written value becomes its number.
enum class ValueRule {
  kAsWritten,
  kFNumber,  // "F2.8" is 2.8; a whole number from 100 up is in hundredths (280 is 2.8)
};

struct KnownField {
  std::string_view key;  // lower case, as it appears in the file
  std::string_view displayName;
  std::string_view matchName;
  bool hasLegalRange = false;
  double legalMin = 0;
  double legalMax = 0;
  ValueRule rule = ValueRule::kAsWritten;
};

// The known field of a key (any case), or null.
const KnownField *FindKnownField(std::string_view key);

// The key of component `index` (from 0) of a "NAME(a,b,c)" group: GPS(longitude, latitude,
// third value), HOME(longitude, latitude); "NAME 1", "NAME 2", ... for other names.
std::string FunctionComponentKey(std::string_view name, std::size_t index);

// The number a known field's value stands for, when its rule reads the text ("F2.8") or
// changes the number (hundredths); nullopt when neither applies.
std::optional<double> ApplyRule(ValueRule rule, std::optional<double> number, std::string_view text);

}  // namespace srt
