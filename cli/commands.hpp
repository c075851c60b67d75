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

struct Command {
  const char *name;
  const char *summary;  // one line for the overview
  const char *usage;    // the command's --help text
  int (*run)(const GlobalOptions &options, const std::vector<std::string> &arguments);
};

int RunConvert(const GlobalOptions &options, const std::vector<std::string> &arguments);
int RunFormats(const GlobalOptions &options, const std::vector<std::string> &arguments);
int RunInfo(const GlobalOptions &options, const std::vector<std::string> &arguments);
int RunMessage(const GlobalOptions &options, const std::vector<std::string> &arguments);
int RunSamples(const GlobalOptions &options, const std::vector<std::string> &arguments);
int RunValidate(const GlobalOptions &options, const std::vector<std::string> &arguments);

}  // namespace palvex::cli
