// Chaptered recordings: a camera splits one long recording into files named
// <two letters><chapter, two digits><recording, four digits>.<extension> (chapter 01 first).
#pragma once

#include <string>
#include <vector>

namespace gpmf {

// The file given (UTF-8 path) and, when it is chapter 01 of such a recording, the later
// chapters found beside it with the same letters, recording number and extension, in
// chapter order up to the first one missing.
std::vector<std::string> FindChapters(const std::string &firstPath);

}  // namespace gpmf
