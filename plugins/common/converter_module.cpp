#include "converter_module.hpp"

#include <filesystem>

namespace palvex_plugins {
namespace {

using namespace PX_PLUGIN;

// One converter per module; both valid from InitializePlugin until terminatePlugin.
const PX_HostInterface_v1 *g_host = nullptr;
ConverterFunctions g_converter{};

void TerminatePlugin(PX_PluginError *) { g_host = nullptr; }

void InitializeSession(const PX_ConverterContext *converter, const char *inputPath, const char *extension,
                       const char *outputPath, PX_PluginSession *session, PX_PluginError *error) {
  RunGuarded(error, [&] {
    if (converter == nullptr || inputPath == nullptr || outputPath == nullptr || session == nullptr) {
      throw PX_PluginException(PX_PLUGIN_INVALID_ARGUMENT);
    }
    *session = new ConversionRequest{inputPath, extension != nullptr ? extension : ExtensionOf(inputPath),
                                     outputPath, converter->converterIdentifier};
  });
}

void TerminateSession(PX_PluginSession session, PX_PluginError *) {
  delete static_cast<ConversionRequest *>(session);
}

void CheckFileFormat(const PX_ConverterContext *, const char *inputPath, PX_PluginError *error, uint32_t *result) {
  RunGuarded(error, [&] {
    try {
      *result = inputPath != nullptr && g_converter.accepts(inputPath) ? 1 : 0;
    } catch (const PX_PluginException &) {
      *result = 0;  // a file the check cannot read is not one of ours
    }
  });
}

void ConvertToMgjson(PX_PluginSession session, PX_PluginError *error, PX_PluginResult *result) {
  RunGuarded(error, [&] {
    const ConversionRequest &request = *static_cast<const ConversionRequest *>(session);
    OutputDocument output(g_host, request);
    if (g_converter.convert(request, output) && output.made()) result->success = output.Commit() ? 1 : 0;
  });
}

}  // namespace

IMgjsonRoot_v1 *OutputDocument::root() {
  if (!root_) root_.emplace(host_, request_.outputPath, request_.creator);
  return root_->get();
}

void InstallConverter(const ConverterFunctions &converter, const PX_HostInterface_v1 *host,
                      PX_PluginFunctions_v1 *functions, PX_PluginError *error) {
  if (!HostSupportsV1(host, functions)) {
    if (error != nullptr) error->code = converter.unsupportedHostCode;
    return;
  }
  g_host = host;
  g_converter = converter;
  functions->terminatePlugin = &TerminatePlugin;
  functions->initializeSession = &InitializeSession;
  functions->terminateSession = &TerminateSession;
  functions->checkFileFormat = &CheckFileFormat;
  functions->convertToMgjson = &ConvertToMgjson;
}

std::ifstream OpenInput(const std::string &path) {
  return std::ifstream(std::filesystem::u8path(path), std::ios::binary);
}

FileHead ReadHead(const std::string &path, std::size_t limit) {
  FileHead head;
  std::ifstream in = OpenInput(path);
  if (!in) return head;
  head.bytes.resize(limit);
  in.read(head.bytes.data(), static_cast<std::streamsize>(limit));
  head.bytes.resize(static_cast<std::size_t>(in.gcount()));
  head.complete = head.bytes.size() < limit;
  return head;
}

std::string ExtensionOf(const std::string &path) {
  const std::size_t name = path.find_last_of("/\\") + 1;  // npos + 1 is 0
  const std::size_t dot = path.rfind('.');
  std::string extension = dot == std::string::npos || dot < name ? "" : path.substr(dot + 1);
  for (char &c : extension) c = (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
  return extension;
}

}  // namespace palvex_plugins
