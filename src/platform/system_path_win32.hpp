// UTF-8 texts as the Windows API takes them, shared by the Windows backends.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace palvex::platform {

// UTF-8 to UTF-16, refusing bytes that are not UTF-8 and embedded terminators (the
// system would stop reading the path there and reach another file).
std::optional<std::wstring> Widen(std::string_view text);

// The path as the system gets it: long form, UTF-16. The system takes at most 32767
// units, terminator included; a longer path cannot be handed over at all.
std::optional<std::wstring> SystemPath(std::string_view path);

}  // namespace palvex::platform
