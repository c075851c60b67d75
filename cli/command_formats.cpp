// palvex formats: the input formats the library can open, one "<ext>\t<name>" per line.
#include <cstdio>

#include "commands.hpp"
#include "output.hpp"

namespace palvex::cli {

int RunFormats(const GlobalOptions &options, const std::vector<std::string> &arguments) {
  if (!arguments.empty()) return UsageError("formats takes no arguments", "usage: palvex formats\n");
  palvex::host::Library library(options.locale.c_str(), options.PluginFolder());
  palvex::host::ErrorLog errors;
  PX_SupportedFormatList formats;
  GetSupportedFormats_1(&formats, &errors, palvex::host::Callbacks());
  for (const auto &format : formats.formats) {
    std::printf("%s\t%s\n", format.extension.c_str(), format.name.c_str());
  }
  errors.errors.insert(errors.errors.end(), library.errors().errors.begin(), library.errors().errors.end());
  return ReportErrors(errors);
}

}  // namespace palvex::cli
