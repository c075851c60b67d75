// The part of a converter plug-in that is the same for every bundled format: the entry
// point's function table, sessions, guards around every call, and the output document made
// only once there is something to write. A plug-in supplies its check and its conversion:
//
//   PX_PLUGIN_ENTRY(moduleIdentifier, host, functions, error) {
//     palvex_plugins::InstallConverter({kUnsupportedHost, &Accepts, &Convert}, host, functions, error);
//   }
#ifndef PALVEX_PLUGINS_CONVERTER_MODULE_HPP
#define PALVEX_PLUGINS_CONVERTER_MODULE_HPP

#include <cstdint>
#include <fstream>
#include <optional>
#include <string>

#include "palvex/plugin_kit.hpp"

namespace palvex_plugins {

// What the library asked for in one session.
struct ConversionRequest {
  std::string inputPath;
  std::string extension;  // as the library matched it, lower case ("" when none)
  std::string outputPath;
  std::string creator;    // the converter's identifier
};

// The output document, made on first use: a conversion that finds nothing to write never
// creates the output.
class OutputDocument {
 public:
  OutputDocument(const PX_PLUGIN::PX_HostInterface_v1 *host, const ConversionRequest &request)
      : host_(host), request_(request) {}
  PX_PLUGIN::IMgjsonRoot_v1 *root();
  bool made() const { return root_.has_value(); }
  bool Commit() { return root_ && root_->Commit(); }

 private:
  const PX_PLUGIN::PX_HostInterface_v1 *host_;
  const ConversionRequest &request_;
  std::optional<PX_PLUGIN::OwnedRoot> root_;
};

struct ConverterFunctions {
  // Reported by the entry point when the library's tables are older than version 1.
  std::uint32_t unsupportedHostCode;
  // The check: true accepts the file. It runs on other formats' files too, so it declines
  // (false, nothing thrown) whatever is not its format, unreadable files included.
  bool (*accepts)(const std::string &inputPath);
  // Builds the document; true commits it. Returning false, or true without making the
  // document, tells the library there was nothing to convert. Failures are thrown as
  // PX_PluginException with the plug-in's codes.
  bool (*convert)(const ConversionRequest &request, OutputDocument &output);
};

// Fills the function table (the entry point's whole work); refuses older hosts.
void InstallConverter(const ConverterFunctions &converter, const PX_PLUGIN::PX_HostInterface_v1 *host,
                      PX_PLUGIN::PX_PluginFunctions_v1 *functions, PX_PLUGIN::PX_PluginError *error);

// The input opened for binary reading; paths arrive as UTF-8, which the narrow open on
// Windows would read in the ANSI code page. Check the stream: a failed open is not thrown.
std::ifstream OpenInput(const std::string &path);

// The first bytes of a file, for a check: at most `limit`; complete when that is the
// whole file. Empty when it cannot be read.
struct FileHead {
  std::string bytes;
  bool complete = false;
};
FileHead ReadHead(const std::string &path, std::size_t limit);

// The text after the last '.' of the file name, ASCII lower case; "" without one.
std::string ExtensionOf(const std::string &path);

}  // namespace palvex_plugins

#endif  // PALVEX_PLUGINS_CONVERTER_MODULE_HPP
