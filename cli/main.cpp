// palvex: the command-line host of the Palvex library.
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "commands.hpp"
#include "held_library.hpp"
#include "output.hpp"
#include "palvex/export.h"

namespace palvex::cli {
namespace {

const Command kCommands[] = {
    {"convert", "convert sensor files (CSV, TSV, ...) to MGJSON", kConvertUsage,
     "Converts each INPUT to MGJSON as a host does (a stream, validated). With one INPUT the\n"
     "MGJSON goes to standard output, or to the file OUT with -o. With several, OUT must be an\n"
     "existing directory and INPUT X is written to OUT/<X's name without its extension>.mgjson.\n",
     RunConvert},
    {"formats", "list the input formats the library opens", kFormatsUsage,
     "Prints one line per supported input format: the extension, a tab, the format's name.\n"
     "With --json, a JSON array of {\"extension\", \"description\"} objects in the same order.\n",
     RunFormats},
    {"info", "show a file (MGJSON, or converted): file information, timing, video sync, outline", kInfoUsage,
     "Prints the file information, the timing, the video sync list and the data outline as an\n"
     "indented tree. With --json, one JSON object instead (keys in docs/cli.md).\n",
     RunInfo},
    {"samples", "print the samples of one dynamic node", kSamplesUsage,
     "Prints the samples of the dynamic node at DATAPATH (such as [1][0] or [\"sensors\"][0]), in\n"
     "ascending time order. T is in seconds, a decimal (1.5) or a fraction (3/2), counted from\n"
     "00:00:00:00 in timecode files and from the earliest sample time in UTC files; both bounds\n"
     "are included. FORMAT is one of\n"
     "  text  one '<time>\\t<value>' line per sample (the default); tab, line feed and\n"
     "        backslash in texts are printed as \\t, \\n and \\\\\n"
     "  tsv   a header line (time, then the value's or each component's display name), then\n"
     "        one line per sample with the components in their own columns\n"
     "  csv   as tsv, comma-separated, fields quoted where they need it\n"
     "  json  a JSON array of {\"time\", \"value\"} objects\n",
     RunSamples},
    {"plot", "draw dynamic nodes against time as an SVG picture", kPlotUsage,
     "Draws the dynamic nodes at the DATAPATHs against time: numbers as lines, arrays as one\n"
     "line per component, texts as labelled marks, with the display names as the legend and\n"
     "time ticks as the file writes its times. The SVG goes to standard output, or to the\n"
     "file OUT.svg with -o. Long sets are reduced to at most 2,000 points per line (the\n"
     "lowest and highest value of each of 1,000 time slices).\n",
     RunPlot},
    {"validate", "open an MGJSON file, read all of it, and say whether it is sound", kValidateUsage,
     "Opens the file, reads its outline and every sample, closes it, and prints 'ok:' with the\n"
     "schema version and the numbers of nodes, sample sets and samples. With --json, one JSON\n"
     "object with the same facts, or with the errors when the file is not sound.\n",
     RunValidate},
    {"message", "print the localised text of a message literal", kMessageUsage,
     "KEY is a whole message literal as the library uses it, such as\n"
     "'$$$/PXError/FileNotExist=File not exist at input path:^1.'; P1 to P4 replace ^1 to ^4.\n",
     RunMessage},
};

void PrintOverview(std::FILE *out) {
  std::fprintf(out,
               "usage: palvex [--locale LOCALE] [--plugins DIR] COMMAND [ARGUMENTS]\n\n"
               "Reads MGJSON files and converts sensor recordings to MGJSON.\n\n"
               "Options:\n"
               "  --locale LOCALE  language of messages: de_DE, en_US (default), es_ES, fr_FR,\n"
               "                   it_IT, ja_JP, ko_KR, pt_BR, ru_RU, zh_CN\n"
               "  --plugins DIR    folder of converter plug-ins (default: the plugins folder\n"
               "                   installed with palvex, or beside it)\n"
               "  --help           this text; 'palvex COMMAND --help' describes a command\n"
               "  --version        the version of palvex and the library ABI version it uses\n\n"
               "Commands:\n");
  for (const Command &command : kCommands) std::fprintf(out, "  %-9s %s\n", command.name, command.summary);
  std::fprintf(out, "\nErrors are printed as 'palvex: error CODE: MESSAGE' (exit status 1);\n"
                    "plug-ins that cannot be used as 'palvex: warning CODE: MESSAGE' (the command\n"
                    "goes on); usage errors exit with status 2.\n");
}

// The tool's own release, and the ABI version of the library functions it calls
// (their "_1" suffix).
void PrintVersion() {
  std::printf("palvex %s\nlibrary ABI version %d\n", PALVEX_VERSION, PALVEX_ABI_VERSION);
}

}  // namespace
}  // namespace palvex::cli

int main(int argc, char **argv) {
  using namespace palvex::cli;
  GlobalOptions options;
  bool pluginsGiven = false;
  int at = 1;
  for (; at < argc && argv[at][0] == '-'; ++at) {
    const std::string_view option = argv[at];
    if (option == "--help" || option == "-h") {
      PrintOverview(stdout);
      return kExitOk;
    }
    if (option == "--version") {
      PrintVersion();
      return kExitOk;
    }
    if (option == "--locale" && at + 1 < argc) {
      options.locale = argv[++at];
      continue;
    }
    if (option == "--plugins" && at + 1 < argc) {
      options.pluginFolder = argv[++at];
      pluginsGiven = true;
      continue;
    }
    std::fprintf(stderr, "palvex: unknown option '%s'\n", argv[at]);
    PrintOverview(stderr);
    return kExitUsage;
  }
  if (at >= argc) {
    PrintOverview(stderr);
    return kExitUsage;
  }
  const std::string_view name = argv[at++];
  for (const Command &command : kCommands) {
    if (name != command.name) continue;
    std::vector<std::string> arguments(argv + at, argv + argc);
    for (const std::string &argument : arguments) {
      if (argument == "--help" || argument == "-h") {
        std::printf("%s\n%s", command.usage, command.description);
        return kExitOk;
      }
    }
    if (!pluginsGiven) options.pluginFolder = DefaultPluginFolder();
    // Held for the whole run, so plug-in warnings are told once and the plug-ins are
    // unloaded once, after the command.
    HeldLibrary library(options);
    if (!library.ok()) return kExitError;
    const int status = command.run(options, arguments);
    const int released = library.Release();
    return status != kExitOk ? status : released;
  }
  std::fprintf(stderr, "palvex: unknown command '%.*s'\n", static_cast<int>(name.size()), name.data());
  PrintOverview(stderr);
  return kExitUsage;
}
