// Where a value checked by the validator lies, as its messages name it:
// "dataOutline[0]:Sensors/children[3]:Speed/dataType". Checking an outline of a hundred
// thousand nodes must not build a million texts that only a fault would show, so a path
// is a chain of small records on the stack, each pointing at its parent, and the text is
// put together only when a fault is reported. Every name must outlive the path.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ns_sensor {

class CheckPath {
 public:
  // A path of its own, such as "utcInfo"; an empty one stands for "no path".
  explicit CheckPath(std::string_view text = {}) : name_(text) {}
  // text + "[" + index + "]", such as "dataOutline[2]".
  static CheckPath Indexed(std::string_view text, std::size_t index) {
    return CheckPath(nullptr, '\0', text, true, index);
  }

  // path + "/" + name
  CheckPath Member(std::string_view name) const { return CheckPath(this, '/', name, false, 0); }
  // path + "/" + name + "[" + index + "]"
  CheckPath Item(std::string_view name, std::size_t index) const {
    return CheckPath(this, '/', name, true, index);
  }
  // path + ":" + display name
  CheckPath Named(std::string_view displayName) const {
    return CheckPath(this, ':', displayName, false, 0);
  }

  bool empty() const { return parent_ == nullptr && name_.empty() && !indexed_; }
  std::string Text() const;

 private:
  CheckPath(const CheckPath *parent, char separator, std::string_view name, bool indexed,
            std::size_t index)
      : parent_(parent), separator_(separator), name_(name), indexed_(indexed), index_(index) {}

  void AppendTo(std::string &text) const;

  const CheckPath *parent_ = nullptr;
  char separator_ = '\0';  // before name_; none for a path of its own
  std::string_view name_;
  bool indexed_ = false;
  std::size_t index_ = 0;
};

}  // namespace ns_sensor
