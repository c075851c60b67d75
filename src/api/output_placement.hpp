// Placing the MGJSON file of an opened input in the host's output directory. The placed
// file is "<directory>/<input file name>.mgjson": data.csv becomes data.csv.mgjson and
// run.mgjson becomes run.mgjson.mgjson, so the placed file is never the input itself and
// inputs that differ only in their extension do not meet.
#pragma once

#include <string>
#include <string_view>

#include "api/temporary_file.hpp"

namespace ns_sensor {

// Where the MGJSON file of the input at inputPath is placed in directory.
std::string PlacementTarget(std::string_view directory, std::string_view inputPath);

// Copies the bytes of the file at from into the file at to, in blocks of 65536 bytes; to
// is created when it does not exist and cut to the copied length when it was longer.
void CopyFileContents(std::string_view from, std::string_view to);

// A converted file moved into its place: by renaming it when the target does not exist,
// else by swapping the two files' data, which leaves the target's old data at the
// temporary name until the placement is kept. Unless kept, the placement is undone when
// this object goes (the target gets its old data back, or goes again).
class PlacedFile {
 public:
  PlacedFile(TemporaryFile file, std::string target);
  ~PlacedFile();
  PlacedFile(const PlacedFile &) = delete;
  PlacedFile &operator=(const PlacedFile &) = delete;

  // The placement stays; the target's old data, if any, is deleted.
  void Keep() { kept_ = true; }

 private:
  TemporaryFile file_;  // after a swap: the target's old data
  std::string target_;
  bool swapped_ = false;
  bool kept_ = false;
};

}  // namespace ns_sensor
