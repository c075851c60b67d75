// palvex message KEY [P1..P4]: the localised text of a message literal.
#include <cstdio>

#include "commands.hpp"
#include "output.hpp"

namespace palvex::cli {

int RunMessage(const GlobalOptions &options, const std::vector<std::string> &arguments) {
  if (arguments.empty() || arguments.size() > 5) {
    return UsageError("message takes a key and at most four parameters", kMessageUsage);
  }
  palvex::host::Library library(options.locale.c_str(), options.PluginFolder());
  auto parameter = [&](std::size_t n) { return n < arguments.size() ? arguments[n].c_str() : nullptr; };
  PX_HostString text;
  GetLocalizedErrorMsg_1(arguments[0].c_str(), parameter(1), parameter(2), parameter(3), parameter(4), &text);
  std::printf("%s\n", text.text.c_str());
  return ReportErrors(library.errors());
}

}  // namespace palvex::cli
