// The table of resources that the build embeds into the library (generated source).
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace palvex::platform {

struct EmbeddedResource {
  std::string_view type;
  std::string_view name;
  std::span<const std::byte> bytes;
};

std::span<const EmbeddedResource> EmbeddedResources();

}  // namespace palvex::platform
