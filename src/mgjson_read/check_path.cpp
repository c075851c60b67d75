#include "mgjson_read/check_path.hpp"

namespace ns_sensor {

std::string CheckPath::Text() const {
  std::string text;
  AppendTo(text);
  return text;
}

void CheckPath::AppendTo(std::string &text) const {
  if (parent_ != nullptr) parent_->AppendTo(text);
  if (separator_ != '\0') text += separator_;
  text += name_;
  if (indexed_) {
    text += '[';
    text += std::to_string(index_);
    text += ']';
  }
}

}  // namespace ns_sensor
