// The commands of the palvex tool and what they share.
#pragma once

#include <string>
#include <vector>

namespace palvex::cli {

// Options that stand before the command.
struct GlobalOptions {
  std::string locale;        // empty: the library's default
  std::string pluginFolder;  // empty: none

  // The first converter configuration string of CreatePalvex_1: null without a folder.
  const char *PluginFolder() const { return pluginFolder.empty() ? nullptr : pluginFolder.c_str(); }
};

// Exit statuses.
inline constexpr int kExitOk = 0;
inline constexpr int kExitError = 1;
inline constexpr int kExitUsage = 2;

// Each command's usage line, shared by its --help text and its usage errors so the two
// never drift apart.
inline constexpr char kConvertUsage[] = "usage: palvex [--locale LOCALE] [--plugins DIR] convert [-o OUT] INPUT...\n";
inline constexpr char kFormatsUsage[] = "usage: palvex [--locale LOCALE] [--plugins DIR] formats [--json]\n";
inline constexpr char kInfoUsage[] = "usage: palvex [--locale LOCALE] [--plugins DIR] info [--json] FILE\n";
inline constexpr char kMessageUsage[] = "usage: palvex [--locale LOCALE] [--plugins DIR] message KEY [P1 [P2 [P3 [P4]]]]\n";
inline constexpr char kPlotUsage[] = "usage: palvex [--locale LOCALE] [--plugins DIR] plot [-o OUT.svg] FILE DATAPATH...\n";
inline constexpr char kSamplesUsage[] =
    "usage: palvex [--locale LOCALE] [--plugins DIR] samples [--from T] [--to T] [--format FORMAT] FILE DATAPATH\n";
inline constexpr char kValidateUsage[] = "usage: palvex [--locale LOCALE] [--plugins DIR] validate [--json] FILE\n";

// The arguments of a command that reads one FILE and may print JSON ("info", "validate"):
// false for anything else.
bool ReadFileAndJsonArguments(const std::vector<std::string> &arguments, std::string &path, bool &json);

struct Command {
  const char *name;
  const char *summary;      // one line for the overview
  const char *usage;        // the usage line
  const char *description;  // what --help adds below the usage line
  int (*run)(const GlobalOptions &options, const std::vector<std::string> &arguments);
};

int RunConvert(const GlobalOptions &options, const std::vector<std::string> &arguments);
int RunFormats(const GlobalOptions &options, const std::vector<std::string> &arguments);
int RunInfo(const GlobalOptions &options, const std::vector<std::string> &arguments);
int RunMessage(const GlobalOptions &options, const std::vector<std::string> &arguments);
int RunPlot(const GlobalOptions &options, const std::vector<std::string> &arguments);
int RunSamples(const GlobalOptions &options, const std::vector<std::string> &arguments);
int RunValidate(const GlobalOptions &options, const std::vector<std::string> &arguments);

}  // namespace palvex::cli
