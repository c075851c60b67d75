// The name of the value being scanned, as messages show it: "dataOutline[2]::children[0]".
// Scanning millions of values must not build millions of strings, so a path is a chain of
// small records on the scanner's stack, each pointing at its parent, and the text is put
// together only when a fault is reported.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ns_sensor {

class PropertyPath {
 public:
  // A path of its own, such as "dataOutline" or "version". The name must outlive the path.
  explicit PropertyPath(std::string_view root) : parent_(nullptr), name_(root) {}

  // parent + "::" + key; the key must outlive the path.
  PropertyPath Member(std::string_view key) const { return PropertyPath(this, key, 0, false); }
  // parent + "[" + index + "]".
  PropertyPath Item(std::size_t index) const { return PropertyPath(this, {}, index, true); }

  std::string Text() const;

 private:
  PropertyPath(const PropertyPath *parent, std::string_view key, std::size_t index, bool isItem)
      : parent_(parent), name_(key), index_(index), isItem_(isItem) {}

  void AppendTo(std::string &text) const;

  const PropertyPath *parent_;
  std::string_view name_;
  std::size_t index_ = 0;
  bool isItem_ = false;
};

}  // namespace ns_sensor
