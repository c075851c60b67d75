// The values the object model keeps for the writer, in the form the writer reads them.
// Free texts are stored escaped (text_arguments.hpp), match names as checked.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace PX_PLUGIN {

struct NodeNames {
  std::string displayName;  // escaped
  std::string matchName;
};

// Names as the writer reads them.
struct NameView {
  NameView(std::string_view display, std::string_view match) : displayName(display), matchName(match) {}
  NameView(const NodeNames &names) : displayName(names.displayName), matchName(names.matchName) {}  // NOLINT: a view

  std::string_view displayName;  // escaped
  std::string_view matchName;
};

// A node's names as static nodes and groups keep them: both texts in one allocation of their exact
// size, since two strings cost 64 bytes and often an allocation each, and a large
// document has millions of nodes. Names longer than 4 GiB together raise 2029.
class StoredNames {
 public:
  explicit StoredNames(const NodeNames &names);

  NameView View() const {
    return {{text_.get(), displayLength_}, {text_.get() + displayLength_, matchLength_}};
  }

 private:
  std::unique_ptr<char[]> text_;  // the display name, then the match name
  std::uint32_t displayLength_ = 0;
  std::uint32_t matchLength_ = 0;
};

struct NumberPattern {
  bool isSigned = false;
  std::int32_t digitsInteger = 0;
  std::int32_t digitsDecimal = 0;
};

struct MinMax {
  double min = 0;
  double max = 0;
};

// "range": what occurs and what is legal.
struct NumberRange {
  MinMax occurring;
  MinMax legal;
};

struct PaddedStringProperties {
  std::uint32_t maxLength = 0;
  std::uint32_t maxDigitsInLength = 0;
  bool eventMarker = false;
};

// "numberArrayProperties": one range and one display name per element.
struct NumberArrayProperties {
  NumberPattern pattern;
  std::vector<NumberRange> ranges;
  std::vector<std::string> displayNames;  // escaped
  bool isPoint = false;
};

// value / scale frames per second.
struct TimecodeInfo {
  std::uint32_t frameRateValue = 0;
  std::uint32_t frameRateScale = 1;
  bool dropFrame = false;
};

struct UtcInfo {
  std::uint32_t precisionLength = 0;
  bool isGmt = true;
};

// The document's time information: none yet, timecode or UTC.
using TimeInformation = std::variant<std::monostate, TimecodeInfo, UtcInfo>;

// One entry of the video sync list: a frame number or a time text.
struct VideoSyncEntry {
  std::string fileName;  // escaped
  std::optional<std::uint32_t> frameNumber;
  std::string timeString;  // escaped; used when frameNumber is empty
};

}  // namespace PX_PLUGIN
