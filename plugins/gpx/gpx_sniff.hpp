// Whether the first bytes of a file are a GPX document's: a <gpx> root element after an
// optional byte order mark, XML declaration, comments, processing instructions and
// document type declaration.
#pragma once

#include <cstddef>
#include <string_view>

namespace gpx {

// Bytes the check reads: the root element of any GPX file starts well within them.
constexpr std::size_t kSniffLength = 4096;

bool LooksLikeGpx(std::string_view head);

}  // namespace gpx
