// How the tool reports: results on stdout, one line per error on stderr.
#pragma once

#include <string_view>

#include "palvex/host.hpp"

namespace palvex::cli {

// Prints each error as "palvex: error <code>: <message>"; returns the exit status
// (kExitOk when there were none, else kExitError).
int ReportErrors(const palvex::host::ErrorLog &log);

// Prints a usage error and the text to read; returns kExitUsage.
int UsageError(std::string_view problem, std::string_view usage);

}  // namespace palvex::cli
