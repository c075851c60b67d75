// `palvex info --json`: one JSON object with everything the library says of a file.
#pragma once

#include "palvex/host.hpp"

namespace palvex::cli {

// Prints the object; false (and nothing printed) when a query reported an error.
bool PrintInfoJson(ISensorFileHandler *file, palvex::host::ErrorLog &errors);

}  // namespace palvex::cli
