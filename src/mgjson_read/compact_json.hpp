// Reading compacted JSON text: text that the scanner accepted and the compactor stripped
// of white space between tokens, so that every token follows the previous one directly.
// The sample reader reads its samples from such text on request, in place.
//
// Every helper stays within [at, end) and returns null (or false) instead of reading past
// it, so text that is not what it should be is refused, never overrun.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ns_sensor::compact_json {

// The position after the value that starts at `at`; null when it does not end by `end`.
const char *SkipValue(const char *at, const char *end);

// A string value at `at` (its opening quote). `body` receives the bytes between the quotes
// with escapes left in place, `escaped` whether it holds any. Returns the position after
// the closing quote, or null.
const char *ReadString(const char *at, const char *end, std::string_view &body, bool &escaped);

// The bytes a string body stands for, with the scanner's escapes: \" \\ \b \f \n \r \t,
// and any other escaped byte standing for itself.
void Unescape(std::string_view body, std::string &out);

// The bytes a string body stands for: the body itself when it holds no escape,
// otherwise its unescaped copy in `scratch`.
std::string_view StringText(std::string_view body, bool escaped, std::string &scratch);

// The members of an object, in order.
class MemberReader {
 public:
  // `at` must point at the object's "{"; otherwise the reader fails at once.
  MemberReader(const char *at, const char *end);

  // The next member: its key (raw body) and its value's text. False at the object's end
  // and when the text is malformed (then failed() is true).
  bool Next(std::string_view &key, std::string_view &value);

  bool failed() const { return failed_; }
  // After the object's "}" once Next returned false without failing.
  const char *after() const { return at_; }

 private:
  const char *at_;
  const char *end_;
  bool first_ = true;
  bool failed_ = false;
};

// The items of an array, in order.
class ItemReader {
 public:
  // `at` must point at the array's "["; otherwise the reader fails at once.
  ItemReader(const char *at, const char *end);

  // The next item's text. False at the array's end and when the text is malformed.
  bool Next(std::string_view &item);

  bool failed() const { return failed_; }
  const char *after() const { return at_; }

 private:
  const char *at_;
  const char *end_;
  bool first_ = true;
  bool failed_ = false;
};

}  // namespace ns_sensor::compact_json
