#include "mgjson_read/property_path.hpp"

namespace ns_sensor {

std::string PropertyPath::Text() const {
  std::string text;
  AppendTo(text);
  return text;
}

void PropertyPath::AppendTo(std::string &text) const {
  if (parent_ != nullptr) parent_->AppendTo(text);
  if (parent_ == nullptr) {
    text += name_;
  } else if (isItem_) {
    text += '[';
    text += std::to_string(index_);
    text += ']';
  } else {
    text += "::";
    text += name_;
  }
}

}  // namespace ns_sensor
