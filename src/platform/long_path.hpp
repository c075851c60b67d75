// The long-path form of a file-layer path, as the Windows backend hands it to the
// system: UTF-8 in, UTF-8 out (the backend converts the result to UTF-16). Pure text
// work, so it is tested on every platform; POSIX paths never go through it.
#pragma once

#include <string>
#include <string_view>

namespace palvex::platform {

// The long-path prefix "\\?\" and its form for network paths "\\?\UNC\".
inline constexpr std::string_view kLongPathPrefix = "\\\\?\\";
inline constexpr std::string_view kNetworkLongPathPrefix = "\\\\?\\UNC\\";

// 1. Every "/" becomes "\".
// 2. A path already holding the long-path prefix is kept.
// 3. A network path ("\\server\share...") gets "\\?\UNC\" instead of its two backslashes.
// 4. A drive path ("X:\...", at least three characters) gets "\\?\" in front, unless it
//    holds ".\" anywhere (the system must still resolve those dots).
// 5. Anything else (relative paths, "C:" alone, "C:x") is left as it is.
std::string ToLongPath(std::string_view path);

}  // namespace palvex::platform
