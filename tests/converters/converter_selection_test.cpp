// Extensions, the registry and the choice of a converter.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "converters/converter_selection.hpp"

namespace ns_sensor {
namespace {

TEST(InputExtension, TextAfterTheLastDotOfTheNameLowerCased) {
  const std::pair<const char *, const char *> cases[] = {
      {"/a/b/run.MGJSON", "mgjson"}, {"C:\\x.y\\data", ""}, {"archive.tar.Gz", "gz"}, {"noext", ""},
      {"dir/.hidden", "hidden"},     {"data.CSV", "csv"},   {"a/b.\xC3\x84X", "\xC3\x84x"}, {"x.", ""},
  };
  for (const auto &[path, extension] : cases) EXPECT_EQ(InputExtension(path), extension) << path;
}

// A registry whose converters say which they are and record every check.
struct Recorder {
  std::vector<std::string> asked;
  ConverterCheck Check(std::string name, bool accepts) {
    return [this, name, accepts](const ConverterEntry &, const ConversionRequest &) {
      asked.push_back(name);
      return accepts;
    };
  }
};

ConverterCreate NoCreate() {
  return [](const ConverterEntry &, const ConversionRequest &) { return std::shared_ptr<PX_ConverterHandlerBase>(); };
}

std::string Chosen(const ConverterRegistry &registry, const std::string &path) {
  const ConversionRequest request{path, InputExtension(path), "out"};
  const ConverterEntry *entry = FindConverter(registry, request);
  if (entry == nullptr) return "none";
  const bool isPlugin = registry.Plugins().contains(entry->extension) && &registry.Plugins().at(entry->extension) == entry;
  return (isPlugin ? "plugin " : "native ") + entry->extension;
}

TEST(ConverterSelection, ExtensionFirstThenPluginsThenBuiltIns) {
  Recorder recorder;
  ConverterRegistry registry;
  registry.RegisterNative("bvh", "Biovision Hierarchy", recorder.Check("native bvh", false), NoCreate());
  registry.RegisterNative("csv", "Comma-separated values", recorder.Check("native csv", true), NoCreate());
  registry.RegisterNative("tsv", "Tab-separated values", recorder.Check("native tsv", true), NoCreate());
  registry.RegisterPlugin("tsv", "Tab-separated values", recorder.Check("plugin tsv", false), NoCreate());
  registry.RegisterPlugin("gpx", "GPS exchange", recorder.Check("plugin gpx", false), NoCreate());

  EXPECT_EQ(Chosen(registry, "data.TSV"), "native tsv") << "a declining plug-in hands over to its extension's built-in";
  EXPECT_EQ(recorder.asked, (std::vector<std::string>{"plugin tsv", "native tsv"}));

  recorder.asked.clear();
  EXPECT_EQ(Chosen(registry, "data"), "native csv") << "no extension: the walks, CSV before the rest";
  EXPECT_EQ(recorder.asked, (std::vector<std::string>{"plugin gpx", "plugin tsv", "native bvh", "native csv"}));

  recorder.asked.clear();
  EXPECT_EQ(Chosen(registry, "x.bvh"), "native csv") << "a refused BVH file falls through to CSV";
  EXPECT_EQ(recorder.asked.front(), "native bvh");

  EXPECT_EQ(Chosen(ConverterRegistry(), "x.csv"), "none");
}

TEST(ConverterRegistry, FirstRegistrationWinsAndFormatsKeepByteOrder) {
  ConverterRegistry registry;
  Recorder recorder;
  EXPECT_TRUE(registry.RegisterNative("csv", "first", recorder.Check("first", true), NoCreate()));
  EXPECT_FALSE(registry.RegisterNative("csv", "second", recorder.Check("second", true), NoCreate()));
  EXPECT_EQ(Chosen(registry, "a.csv"), "native csv");
  EXPECT_EQ(recorder.asked, std::vector<std::string>{"first"});
  EXPECT_EQ(registry.Formats().at("csv"), "first");

  ConverterRegistry builtIn;
  RegisterBuiltInConverters(builtIn);
  std::vector<std::string> formats;
  for (const auto &[extension, name] : builtIn.Formats()) formats.push_back(extension + "=" + name);
  EXPECT_EQ(formats, (std::vector<std::string>{"bvh=Biovision Hierarchy", "csv=Comma-separated values", "json=JSON",
                                               "mgjson=Motion Graphics JSON", "tsv=Tab-separated values",
                                               "txt=Tab-separated values"}));
  std::vector<std::string> converters;
  for (const auto &[extension, entry] : builtIn.Native()) converters.push_back(extension);
  EXPECT_EQ(converters, (std::vector<std::string>{"bvh", "csv", "json", "tsv", "txt"}))
      << "MGJSON is read, never converted";
}

}  // namespace
}  // namespace ns_sensor
