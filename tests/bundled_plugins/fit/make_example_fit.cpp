// Writes examples/ride.fit (or the path given): the bundled example, made by the tests'
// generator so that it can be checked against it and never drifts. With a second word it
// writes a damaged copy for the end-to-end test: "flipped" (one data byte changed), "cut"
// (the last 100 bytes missing), "unchained" (two bytes of garbage after the file).
#include <cstdio>
#include <fstream>
#include <string>

#include "fit_samples.hpp"

int main(int argc, char **argv) {
  const char *path = argc > 1 ? argv[1] : PALVEX_SOURCE_DIR "/examples/ride.fit";
  std::string bytes = palvex_fit::testing::RideFile(300);
  const std::string damage = argc > 2 ? argv[2] : "";
  if (damage == "flipped") bytes[200] = static_cast<char>(~bytes[200]);
  if (damage == "cut") bytes.resize(bytes.size() - 100);
  if (damage == "unchained") bytes += "\r\n";
  std::ofstream out(path, std::ios::binary);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!out) {
    std::fprintf(stderr, "cannot write %s\n", path);
    return 1;
  }
  return 0;
}
