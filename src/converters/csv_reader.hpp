// Lines and fields of delimited text.
//
// Lines: a double quote opens a quoted section, kept in the line with its quotes, in which
// line breaks and delimiters are ordinary bytes and two quotes in a row stay two quotes
// without closing it. Outside one, a line feed ends the line and takes a carriage return
// right after it along (LF CR is one break); a carriage return alone ends the line, so CR
// LF leaves an empty line behind, which the table skips. The end of the text ends a line.
//
// Fields: a field that starts with a quote runs to the closing quote, two quotes giving
// one, and then takes the bytes up to the next delimiter as they stand; an unclosed quote
// takes the rest of the line. Any other field runs to the next delimiter. A trailing
// delimiter adds no empty field, an empty line has no field, nothing is trimmed.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "converters/text_source.hpp"

namespace ns_sensor {

class LineReader {
 public:
  explicit LineReader(TextChunks &text) : text_(text) {}
  // The next line, without its break, in line. False at the end, when no byte is left.
  bool Next(std::string &line);

 private:
  // The byte at the reading position, refilling from the text; false at the end.
  bool Peek(char &byte);

  TextChunks &text_;
  std::string_view piece_;
  std::size_t at_ = 0;
  bool ended_ = false;
};

using FieldSink = std::function<void(std::string_view field)>;

// Calls sink with each field of line, in order.
void SplitFields(std::string_view line, char delimiter, const FieldSink &sink);

// The fields of one line (tests and small callers).
std::vector<std::string> SplitFields(std::string_view line, char delimiter);

}  // namespace ns_sensor
