#include "converters/plugin_discovery.hpp"

#include <algorithm>
#include <memory>
#include <new>

#include "converters/converter_selection.hpp"
#include "converters/plugin_manifest.hpp"
#include "localisation/dictionary.hpp"
#include "platform/file_io.hpp"
#include "platform/module_texts.hpp"

namespace ns_sensor {
namespace {

constexpr std::string_view kDefaultModuleExtension = "mgx";

std::string_view Trimmed(std::string_view text) {
  const auto isBlank = [](char byte) { return byte == ' ' || byte == '\t'; };
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

// The names of the files in folder, sorted. Entries that are folders are passed over;
// anything else that is not a module is left for the manifest reading to refuse.
std::vector<std::string> FileNames(std::string_view folder) {
  std::vector<std::string> names;
  const File_IO::Handle search = File_IO::OpenFolder(folder);
  try {
    File_IO::FolderEntry entry;
    while (File_IO::NextFolderEntry(search, entry)) {
      if (!entry.isFolder && entry.name != "." && entry.name != "..") names.push_back(std::move(entry.name));
    }
  } catch (...) {
    File_IO::CloseFolder(search);
    throw;
  }
  File_IO::CloseFolder(search);
  std::sort(names.begin(), names.end());
  return names;
}

std::string JoinedPath(std::string_view folder, std::string_view name) {
  std::string path(folder);
  if (path.back() != '/' && path.back() != '\\') path.push_back('/');
  path.append(name);
  return path;
}

// Enters the converters of the module at path; a refused manifest is added to failures.
void DiscoverModule(const std::string &path, const std::string &locale, PluginRegistry &plugins,
                    std::vector<PX_Exception> &failures) {
  palvex::platform::ModuleTexts texts = palvex::platform::ReadModuleTexts(path);
  if (!texts.manifest) return;  // not a plug-in
  std::vector<ConverterDescription> descriptions;
  try {
    descriptions = ReadPluginManifest(*texts.manifest, locale);
  } catch (const PX_Exception &failure) {
    failures.push_back(failure);
    return;
  }
  auto module = std::make_shared<PluginModule>(path, texts.identifier.value_or(std::string()));
  plugins.AddModule(module);
  for (ConverterDescription &description : descriptions) {
    plugins.Enter(std::make_shared<PX_PLUGIN::PX_ConverterHandler>(std::move(description), module));
  }
}

}  // namespace

std::vector<std::string> ModuleExtensions(std::string_view configured) {
  std::vector<std::string> extensions;
  std::size_t start = 0;
  while (start <= configured.size()) {
    const std::size_t comma = std::min(configured.find(',', start), configured.size());
    std::string_view item = Trimmed(configured.substr(start, comma - start));
    if (!item.empty() && item.front() == '.') item.remove_prefix(1);
    std::string extension(item);
    for (char &byte : extension) {
      if (byte >= 'A' && byte <= 'Z') byte = static_cast<char>(byte - 'A' + 'a');
    }
    if (!extension.empty()) extensions.push_back(std::move(extension));
    start = comma + 1;
  }
  if (extensions.empty()) extensions.emplace_back(kDefaultModuleExtension);
  return extensions;
}

std::vector<PX_Exception> DiscoverPlugins(std::string_view folder, std::string_view moduleExtensions,
                                          PluginRegistry &plugins, ConverterRegistry &converters) {
  std::vector<PX_Exception> failures;
  if (folder.empty()) return failures;
  const std::vector<std::string> extensions = ModuleExtensions(moduleExtensions);
  std::vector<std::string> names;
  try {
    names = FileNames(folder);
  } catch (const PX_Exception &failure) {
    failures.push_back(failure);
    return failures;
  }
  const std::string locale = ActiveLocale();
  for (const std::string &name : names) {
    if (std::find(extensions.begin(), extensions.end(), InputExtension(name)) == extensions.end()) continue;
    DiscoverModule(JoinedPath(folder, name), locale, plugins, failures);
  }
  plugins.RegisterExtensions(converters);
  return failures;
}

}  // namespace ns_sensor
