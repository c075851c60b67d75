// palvex formats [--json]: the input formats the library can open, one "<ext>\t<name>" per
// line, or a JSON array of {"extension", "description"} in the same order.
#include <cstdio>

#include "commands.hpp"
#include "json_output.hpp"
#include "output.hpp"

namespace palvex::cli {
namespace {

void PrintText(const PX_SupportedFormatList &formats) {
  for (const auto &format : formats.formats) {
    std::printf("%s\t%s\n", format.extension.c_str(), format.name.c_str());
  }
}

void PrintJson(const PX_SupportedFormatList &formats) {
  ChunkedText buffer;
  JsonWriter writer(buffer);
  writer.StartArray();
  for (const auto &format : formats.formats) {
    writer.StartObject();
    writer.Key("extension");
    WriteString(writer, format.extension);
    writer.Key("description");
    WriteString(writer, format.name);
    writer.EndObject();
  }
  writer.EndArray();
  buffer.Put('\n');
  buffer.WriteTo(stdout);
}

}  // namespace

int RunFormats(const GlobalOptions &options, const std::vector<std::string> &arguments) {
  const bool json = arguments.size() == 1 && arguments[0] == "--json";
  if (!arguments.empty() && !json) return UsageError("formats takes only --json", kFormatsUsage);
  palvex::host::Library library(options.locale.c_str(), options.PluginFolder());
  palvex::host::ErrorLog errors;
  PX_SupportedFormatList formats;
  GetSupportedFormats_1(&formats, &errors, palvex::host::Callbacks());
  if (json) {
    PrintJson(formats);
  } else {
    PrintText(formats);
  }
  errors.errors.insert(errors.errors.end(), library.errors().errors.begin(), library.errors().errors.end());
  return ReportErrors(errors);
}

}  // namespace palvex::cli
