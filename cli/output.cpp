#include "output.hpp"

#include <cstdio>

#include "commands.hpp"

namespace palvex::cli {

int ReportErrors(const palvex::host::ErrorLog &log) {
  for (const auto &error : log.errors) {
    std::fprintf(stderr, "palvex: error %u: %s\n", static_cast<unsigned>(error.code), error.message.c_str());
  }
  return log.empty() ? kExitOk : kExitError;
}

int UsageError(std::string_view problem, std::string_view usage) {
  std::fprintf(stderr, "palvex: %.*s\n%.*s", static_cast<int>(problem.size()), problem.data(),
               static_cast<int>(usage.size()), usage.data());
  return kExitUsage;
}

}  // namespace palvex::cli
