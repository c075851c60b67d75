// Where the running palvex program lives: the one question the tool asks the operating
// system itself.
#pragma once

#include <filesystem>

namespace palvex::cli {

// The folder of the running executable; empty when the system cannot tell.
std::filesystem::path ExecutableFolder();

}  // namespace palvex::cli
