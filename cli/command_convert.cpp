// palvex convert [-o OUT] INPUT...: converts each input through a validated MGJSON stream,
// as a host does, and writes the MGJSON to standard output, to OUT, or into the directory
// OUT as <input name without its extension>.mgjson.
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "commands.hpp"
#include "output.hpp"

namespace palvex::cli {
namespace {

constexpr uint32_t kReadBlock = 65536;

// Where the MGJSON of input goes inside directory.
std::string TargetInDirectory(const std::string &directory, const std::string &input) {
  const std::filesystem::path name = std::filesystem::u8path(input).filename().replace_extension(".mgjson");
  const std::u8string text = (std::filesystem::u8path(directory) / name).u8string();
  return std::string(text.begin(), text.end());
}

// Reads the whole stream to standard output; false after a fault.
bool CopyToStandardOutput(IMgjsonStream *stream, palvex::host::ErrorLog &errors) {
  std::vector<uint8_t> block(kReadBlock);
  for (;;) {
    uint32_t size = kReadBlock;
    const uint32_t count = stream->Read(block.data(), &size, &errors);
    if (!errors.empty()) return false;
    if (count == 0) return std::fflush(stdout) == 0;
    if (std::fwrite(block.data(), 1, count, stdout) != count) return false;
  }
}

// Converts input; the MGJSON goes to target, or to standard output when target is empty.
void Convert(IPalvex *manager, const std::string &input, const std::string &target, palvex::host::ErrorLog &errors) {
  IMgjsonStream *stream = nullptr;
  manager->CreateMgjsonStream(&stream, input.c_str(), 1, &errors);
  if (stream == nullptr) return;
  if (target.empty()) {
    CopyToStandardOutput(stream, errors);
  } else {
    stream->SaveCopy(target.c_str(), &errors);
  }
  manager->ReleaseMgjsonStream(&stream, &errors);
}

}  // namespace

int RunConvert(const GlobalOptions &options, const std::vector<std::string> &arguments) {
  std::string output;
  std::vector<std::string> inputs;
  for (std::size_t at = 0; at < arguments.size(); ++at) {
    if (arguments[at] == "-o") {
      if (at + 1 == arguments.size()) return UsageError("-o needs a path", kConvertUsage);
      output = arguments[++at];
    } else {
      inputs.push_back(arguments[at]);
    }
  }
  if (inputs.empty()) return UsageError("convert takes at least one input", kConvertUsage);
  std::error_code ignored;
  if (inputs.size() > 1 && !std::filesystem::is_directory(std::filesystem::u8path(output), ignored)) {
    return UsageError("with several inputs, -o must name an existing directory", kConvertUsage);
  }
  palvex::host::Library library(options.locale.c_str(), options.PluginFolder());
  palvex::host::ErrorLog errors;
  if (library.manager() != nullptr) {
    for (const std::string &input : inputs) {
      const std::string target = inputs.size() > 1 ? TargetInDirectory(output, input) : output;
      Convert(library.manager(), input, target, errors);
    }
  }
  errors.errors.insert(errors.errors.begin(), library.errors().errors.begin(), library.errors().errors.end());
  return ReportErrors(errors);
}

}  // namespace palvex::cli
