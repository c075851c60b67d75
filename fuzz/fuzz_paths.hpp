// Scratch files of the fuzz targets: one name per process, so that targets (or two runs of
// one target) fuzzing side by side never truncate each other's mapped input.
#pragma once

#include <unistd.h>

#include <filesystem>
#include <string>
#include <string_view>

inline std::string FuzzScratchPath(std::string_view name) {
  const std::string file = "palvex-fuzz-" + std::to_string(::getpid()) + "-" + std::string(name);
  return (std::filesystem::temp_directory_path() / file).string();
}
