// The plug-in's own format check: cheap (the first header only) and silent, since it also
// runs on files of other extensions.
#pragma once

#include <istream>

namespace palvex_fit {

// Whether the input starts with a FIT header. Truncated files and files with a bad header
// CRC pass: the conversion then reports their damage with a code of its own, rather than
// handing a FIT file to a text converter.
bool LooksLikeFit(std::istream &in);

}  // namespace palvex_fit
