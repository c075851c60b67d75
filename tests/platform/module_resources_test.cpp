// The dictionaries the build puts into the library's module, found as the library
// finds them: by type and name, without regard to letter case.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "platform/module_resources.hpp"

#ifdef _WIN32
#include <windows.h>
#endif

namespace palvex::platform {
namespace {

// Every dictionary's presence and form is checked with the message table's tests.
TEST(ModuleResources, TypeAndNameMatchWithoutRegardToCase) {
  const auto upper = FindModuleResource("DICT", "PX_EN_US");
  ASSERT_FALSE(upper.empty());
  for (const auto &[type, name] : {std::pair{"dict", "px_en_US"}, std::pair{"Dict", "pX_eN_uS"}}) {
    const auto found = FindModuleResource(type, name);
    EXPECT_EQ(found.data(), upper.data()) << type << " " << name;
    EXPECT_EQ(found.size(), upper.size()) << type << " " << name;
  }
}

TEST(ModuleResources, UnknownOrMalformedNamesFindNothing) {
  const std::pair<std::string, std::string> misses[] = {
      {"DICT", "PX_XX_XX"},
      {"TXT", "PX_EN_US"},
      {"DICT", ""},
      {"", "PX_EN_US"},
      {"DICT", "#1"},                          // a resource number, not a name
      {"DICT", std::string("PX_EN_US\0x", 10)},  // the name must not end early
  };
  for (const auto &[type, name] : misses) EXPECT_TRUE(FindModuleResource(type, name).empty()) << type << " " << name;
}

#ifdef _WIN32
const char *const kLocales[] = {"DE_DE", "EN_US", "ES_ES", "FR_FR", "IT_IT",
                                "JA_JP", "KO_KR", "PT_BR", "RU_RU", "ZH_CN"};

// The resources carry US English as their language (1033).
TEST(ModuleResources, DictionariesAreStoredInUsEnglish) {
  HMODULE module = nullptr;
  ASSERT_TRUE(GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                                 reinterpret_cast<LPCWSTR>(&kLocales), &module));
  constexpr WORD kUsEnglish = 1033;
  for (const char *locale : kLocales) {
    const std::string name = std::string("PX_") + locale;
    EXPECT_NE(FindResourceExA(module, "DICT", name.c_str(), kUsEnglish), nullptr) << name;
  }
}
#endif

}  // namespace
}  // namespace palvex::platform
