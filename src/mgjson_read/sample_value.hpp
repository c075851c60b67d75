// One sample value read as its node's data type says: numbers and text, from the value's
// compacted JSON text. The same reading checks every value when a file is opened and
// decodes the values a request delivers, so what was accepted is what can be read.
//
// Accepted forms:
// - number string: a string holding a decimal number (a leading "+" allowed), or a JSON
//   number; one number, the text as written.
// - number string array: an array of exactly arraySize such items; the numbers, and the
//   items' texts joined by ",".
// - padded string: an object with "str" (a string) and "length" (a string of digits or a
//   whole JSON number); neither the length nor the text (counted in characters) may
//   exceed maxLen. The text is "str"; there are no numbers.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "mgjson_read/sample_index.hpp"

namespace ns_sensor {

enum class ValueFault {
  None,
  Unreadable,     // not of the form the data type requires
  ArrayItemType,  // an array item is neither a string nor a number (see failedItem)
  ArrayTooShort,  // fewer items than arraySize
  PaddedTooLong,  // a padded string longer than maxLen
};

// A decoded value. Its views point into the compacted text or into its own buffers, and
// stay valid until it is used for the next value; the buffers are reused, so decoding
// many values allocates only while they grow.
struct DecodedValue {
  std::vector<double> numbers;
  std::string_view text;
  std::uint32_t failedItem = 0;  // ArrayItemType: the item's index

  std::string textBuffer;  // holds text when it had to be built
  std::string scratch;     // an item's unescaped bytes
};

// Reads `json`, the compacted text of one value, as `type` requires.
ValueFault ReadSampleValue(const SampleValueType &type, std::string_view json, DecodedValue &value);

// The number a number text stands for: an optional sign, then a decimal number as JSON
// writes it (leading zeros accepted). False when the whole text is not such a number or
// it is not finite.
bool ReadNumberText(std::string_view text, double &number);

}  // namespace ns_sensor
