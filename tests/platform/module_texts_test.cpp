// The two texts of a plug-in module, read from a module file without loading it: what a
// module carries, and nothing (never an exception) for files that are no module.
#include <gtest/gtest.h>

#include <string>

#include "platform/elf_image.hpp"
#include "platform/fault_injection.hpp"
#include "platform/file_test_support.hpp"
#include "platform/module_texts.hpp"

namespace palvex::platform {
namespace {

using palvex::testing::AsText;
using palvex::testing::ElfImageBuilder;
using palvex::testing::OpenDescriptorCount;
using palvex::testing::ScratchFolder;

constexpr const char *kManifest = "{\"converter\":[{\"identifier\":\"com.example.x\"}]}";

// An ELF shared object is a module only where modules are ELF files.
#ifdef _WIN32
constexpr bool kElfIsModule = false;
#else
constexpr bool kElfIsModule = true;
#endif

TEST(ModuleTexts, FilesThatAreNoModuleHaveNeitherText) {
  ScratchFolder folder;
  const std::size_t descriptors = OpenDescriptorCount();
  const std::string paths[] = {
      folder.WriteFile("empty.mgx", ""),
      folder.WriteFile("text.mgx", kManifest),
      folder.WriteFile("truncated.mgx", "\x7F" "ELF\x02\x01\x01"),
      folder.WriteFile("pe-stub.mgx", "MZ" + std::string(200, '\0')),
      folder.Path("missing.mgx"),
      folder.root().string(),
      "",
  };
  for (const std::string &path : paths) {
    const ModuleTexts texts = ReadModuleTexts(path);
    EXPECT_EQ(texts.manifest, std::nullopt) << path;
    EXPECT_EQ(texts.identifier, std::nullopt) << path;
  }
  EXPECT_EQ(OpenDescriptorCount(), descriptors);
}

TEST(ModuleTexts, ElfModuleCarriesBothTextsWithoutTheirTerminators) {
  ScratchFolder folder;
  ElfImageBuilder builder;
  builder.Add("PXPLUGINUIDS", std::string(kManifest) + std::string(3, '\0'))
      .Add("MODULE_IDENTIFIER", std::string("mod-1\0", 6));
  const ModuleTexts texts = ReadModuleTexts(folder.WriteFile("both.mgx", AsText(builder.Build())));
  if (!kElfIsModule) {
    EXPECT_EQ(texts.manifest, std::nullopt);
    EXPECT_EQ(texts.identifier, std::nullopt);
    return;
  }
  EXPECT_EQ(texts.manifest, kManifest);
  EXPECT_EQ(texts.identifier, "mod-1");
}

TEST(ModuleTexts, ElfModuleMayLackEitherText) {
  if (!kElfIsModule) GTEST_SKIP() << "modules are no ELF files here";
  ScratchFolder folder;
  ElfImageBuilder manifestOnly;
  manifestOnly.Add("PXPLUGINUIDS", kManifest).Add(".data", "MODULE_IDENTIFIER");
  const ModuleTexts first = ReadModuleTexts(folder.WriteFile("a.mgx", AsText(manifestOnly.Build())));
  EXPECT_EQ(first.manifest, kManifest);
  EXPECT_EQ(first.identifier, std::nullopt);

  ElfImageBuilder emptyTexts;
  emptyTexts.Add("MODULE_IDENTIFIER", std::string(4, '\0'));
  const ModuleTexts second = ReadModuleTexts(folder.WriteFile("b.mgx", AsText(emptyTexts.Build())));
  EXPECT_EQ(second.manifest, std::nullopt);
  EXPECT_EQ(second.identifier, "");  // present, and empty once its padding is gone
}

#ifndef _WIN32
TEST(ModuleTexts, RunningProgramIsAModuleWithoutTexts) {
  const ModuleTexts texts = ReadModuleTexts("/proc/self/exe");
  EXPECT_EQ(texts.manifest, std::nullopt);
  EXPECT_EQ(texts.identifier, std::nullopt);
}

TEST(ModuleTexts, RefusedMappingGivesNeitherTextAndClosesTheFile) {
  PALVEX_SKIP_WITHOUT_FAULT_SEAM();
  ScratchFolder folder;
  ElfImageBuilder builder;
  builder.Add("PXPLUGINUIDS", kManifest);
  const std::string path = folder.WriteFile("m.mgx", AsText(builder.Build()));
  const std::size_t descriptors = OpenDescriptorCount();
  for (const FaultPoint point : {FaultPoint::OpenFile, FaultPoint::FileSize, FaultPoint::MapWholeFile}) {
    const ScopedFault fault(point, ErrorKind::Other);
    EXPECT_EQ(ReadModuleTexts(path).manifest, std::nullopt) << static_cast<int>(point);
    EXPECT_EQ(FaultsTriggered(point), 1u);
  }
  EXPECT_EQ(OpenDescriptorCount(), descriptors);
  EXPECT_EQ(ReadModuleTexts(path).manifest, kManifest);
}
#endif

}  // namespace
}  // namespace palvex::platform
