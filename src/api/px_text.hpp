// The library-side text record of the raising forms (declared in palvex/interfaces.hpp):
// an operation that hands out a text appends it here.
#pragma once

#include <string>

namespace ns_sensor {

struct PX_Text {
  std::string text;  // UTF-8
};

}  // namespace ns_sensor
