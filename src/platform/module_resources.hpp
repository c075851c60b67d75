// Resources carried inside the library's own module (the message dictionaries).
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace palvex::platform {

// The bytes of the resource of the given type and name, matched without regard to
// letter case; empty when the module has no such resource. The bytes live as long as
// the module.
std::span<const std::byte> FindModuleResource(std::string_view type, std::string_view name);

}  // namespace palvex::platform
