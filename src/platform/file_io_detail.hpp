// Pieces shared by the two halves of the file layer (file_io.cpp, file_io_paths.cpp).
#pragma once

#include <string_view>

#include "api/px_exception.hpp"
#include "platform/native_file.hpp"

namespace ns_sensor::File_IO::detail {

// The path conversion every path-taking operation starts with: a path the system
// cannot be handed raises ConvertPath (12) naming the operation.
inline void RequireConvertiblePath(std::string_view path, std::string_view operation) {
  if (!palvex::platform::CheckPath(path).ok()) Raise(Msg::FileIoConvertPath, operation);
}

}  // namespace ns_sensor::File_IO::detail
