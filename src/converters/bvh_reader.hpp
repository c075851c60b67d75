// The motion capture file as lines and words: the whole file is mapped, lines end at a line
// feed, a carriage return or both, and words are separated by white space. Nothing is
// copied, so a line of any length costs no memory.
#pragma once

#include <memory>
#include <string_view>

namespace ns_sensor {

class FileMapper;

// The input file's bytes. Opening raises BvhCannotOpen (1006) when the file cannot be
// opened or mapped; an empty file opens as no bytes.
class BvhInput {
 public:
  explicit BvhInput(std::string_view path);
  ~BvhInput();
  BvhInput(const BvhInput &) = delete;
  BvhInput &operator=(const BvhInput &) = delete;

  // The text after a leading UTF-8 byte-order mark, if any.
  std::string_view Text() const { return text_; }

 private:
  std::unique_ptr<FileMapper> mapping_;
  std::string_view text_;
};

// The lines of a text, one after the other.
class BvhLines {
 public:
  explicit BvhLines(std::string_view text) : rest_(text) {}
  // The next line without its line end; false at the end of the text.
  bool Next(std::string_view &line);

 private:
  std::string_view rest_;
  bool ended_ = false;
};

// The words of one line, one after the other.
class BvhWords {
 public:
  explicit BvhWords(std::string_view line) : rest_(line) {}
  // The next word; empty when the line has no more.
  std::string_view Next();
  // What follows the words taken so far.
  std::string_view Rest() const { return rest_; }

 private:
  std::string_view rest_;
};

// The first word of a line; empty for a blank line.
inline std::string_view FirstWord(std::string_view line) { return BvhWords(line).Next(); }

// A whole word read as a finite decimal number (a leading "+" allowed); false for anything
// else, NaN and infinities included.
bool ReadNumber(std::string_view word, double &value);

}  // namespace ns_sensor
