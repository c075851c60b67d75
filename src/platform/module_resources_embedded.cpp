// Module resources on systems without a resource section: the build embeds each
// resource file as an array (see cmake/EmbedResources.cmake).
#include <cctype>

#include "platform/embedded_resources.hpp"
#include "platform/module_resources.hpp"

namespace palvex::platform {
namespace {

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i]))) {
      return false;
    }
  }
  return true;
}

}  // namespace

std::span<const std::byte> FindModuleResource(std::string_view type, std::string_view name) {
  for (const EmbeddedResource &resource : EmbeddedResources()) {
    if (EqualsIgnoringCase(resource.type, type) && EqualsIgnoringCase(resource.name, name)) {
      return resource.bytes;
    }
  }
  return {};
}

}  // namespace palvex::platform
