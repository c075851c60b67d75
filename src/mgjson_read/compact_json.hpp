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

// What the member and item readers share: the walk over a container's separators.
class ContainerReader {
 public:
  bool failed() const { return failed_; }
  // After the container's closing bracket once Next returned false without failing.
  const char *after() const { return at_; }

 protected:
  // `at` must point at the container's opening bracket; otherwise the reader fails at once.
  ContainerReader(const char *at, const char *end, char open, char close);

  // Steps over the separator to the next element: false at the container's end (then
  // past its closing bracket) and when the text is malformed.
  bool StepToElement();
  // Marks the text malformed; returns false.
  bool Fail() {
    failed_ = true;
    return false;
  }

  const char *at_;
  const char *end_;

 private:
  char close_;
  bool first_ = true;
  bool failed_ = false;
};

// The members of an object, in order.
class MemberReader : public ContainerReader {
 public:
  MemberReader(const char *at, const char *end) : ContainerReader(at, end, '{', '}') {}

  // The next member: its key (raw body) and its value's text. False at the object's end
  // and when the text is malformed (then failed() is true).
  bool Next(std::string_view &key, std::string_view &value);
};

// The items of an array, in order.
class ItemReader : public ContainerReader {
 public:
  ItemReader(const char *at, const char *end) : ContainerReader(at, end, '[', ']') {}

  // The next item's text. False at the array's end and when the text is malformed.
  bool Next(std::string_view &item);
};

}  // namespace ns_sensor::compact_json
