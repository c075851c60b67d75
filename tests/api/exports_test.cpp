// The exported functions, as a host calls them.
#include <gtest/gtest.h>

#include "api/client_table.hpp"
#include "api/manager_lifetime.hpp"
#include "localisation/dictionary.hpp"
#include "palvex/host.hpp"
#include "support/test_host.hpp"

namespace {

using palvex::testing::TestCallbacks;
using palvex::host::ErrorLog;

// Every test stores the helper's table first, so they run in any order in one process.
class Exports : public ::testing::Test {
 protected:
  void SetUp() override {
    PX_SupportedFormatList ignored;
    GetSupportedFormats_1(&ignored, nullptr, TestCallbacks());
    ASSERT_EQ(ns_sensor::ClientTable(), TestCallbacks());
    ASSERT_EQ(ns_sensor::ManagerUseCount(), 0) << "a manager leaked from an earlier test";
  }
};

std::vector<std::string> Extensions(const PX_SupportedFormatList &list) {
  std::vector<std::string> extensions;
  for (const auto &format : list.formats) extensions.push_back(format.extension + "=" + format.name);
  return extensions;
}

TEST_F(Exports, SupportedFormatsComeInByteOrder) {
  PX_SupportedFormatList list;
  ErrorLog log;
  GetSupportedFormats_1(&list, &log, nullptr);
  EXPECT_TRUE(log.empty());
  EXPECT_EQ(Extensions(list), (std::vector<std::string>{
                                  "bvh=Biovision Hierarchy", "csv=Comma-separated values", "json=JSON",
                                  "mgjson=Motion Graphics JSON", "tsv=Tab-separated values",
                                  "txt=Tab-separated values"}));
  GetSupportedFormats_1(nullptr, &log, nullptr);
  ASSERT_EQ(log.errors.size(), 1u);
  EXPECT_EQ(log.errors[0].code, 1u);
  EXPECT_EQ(log.errors[0].message, "Invalid pointer to \"PX_SupportedFormatList\".");
}

TEST_F(Exports, ASecondTableIsIgnored) {
  static ErrorLog otherLog;
  static std::vector<std::string> otherFormats;
  PX_ClientCallbacks other = *TestCallbacks();
  other.addSupportedFormat = [](PX_SupportedFormatList *, const char *e, const char *) { otherFormats.push_back(e); };
  other.reportError = [](PX_ErrorContext, uint32_t code, const char *, int64_t, int64_t) {
    otherLog.errors.push_back({code, "", -1, -1});
  };
  PX_SupportedFormatList list;
  ErrorLog log;
  GetSupportedFormats_1(&list, &log, &other);
  IPalvex *manager = nullptr;
  CreatePalvex_1(nullptr, nullptr, nullptr, nullptr, &log, &other, nullptr);
  CreatePalvex_1(&manager, nullptr, nullptr, nullptr, &log, &other, nullptr);
  EXPECT_EQ(list.formats.size(), 6u);
  EXPECT_TRUE(otherFormats.empty());
  EXPECT_TRUE(otherLog.empty());
  ASSERT_EQ(log.errors.size(), 1u);
  EXPECT_EQ(log.errors[0].message, "Invalid pointer to \"IPalvex\".");
  DestroyPalvex_1(&manager, &log);
}

TEST_F(Exports, OneManagerSharedThroughAUseCount) {
  ErrorLog log;
  IPalvex *first = nullptr;
  IPalvex *second = nullptr;
  CreatePalvex_1(&first, nullptr, nullptr, "fr_FR", &log, TestCallbacks(), nullptr);
  CreatePalvex_1(&second, nullptr, nullptr, "de_DE", &log, TestCallbacks(), nullptr);
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first, second);
  EXPECT_EQ(ns_sensor::ManagerUseCount(), 2);
  EXPECT_EQ(ns_sensor::ActiveLocale(), "fr_FR");  // the later locale is ignored

  DestroyPalvex_1(&second, &log);
  EXPECT_EQ(second, nullptr);
  EXPECT_TRUE(ns_sensor::DictionaryLoaded());
  // Still usable after one release: the client form reports through the table.
  ISensorFileHandler *handler = nullptr;
  first->CloseFile(&handler, &log);
  ASSERT_EQ(log.errors.size(), 1u);
  EXPECT_EQ(log.errors[0].code, 1u);

  DestroyPalvex_1(&first, &log);
  EXPECT_EQ(ns_sensor::ManagerUseCount(), 0);
  EXPECT_FALSE(ns_sensor::DictionaryLoaded());

  // A new manager loads its dictionary again.
  IPalvex *third = nullptr;
  CreatePalvex_1(&third, nullptr, nullptr, "it_IT", &log, TestCallbacks(), nullptr);
  EXPECT_TRUE(ns_sensor::DictionaryLoaded());
  EXPECT_EQ(ns_sensor::ActiveLocale(), "it_IT");
  DestroyPalvex_1(&third, &log);
  EXPECT_EQ(log.errors.size(), 1u);
  ns_sensor::LoadDictionary("en_US");
}

TEST_F(Exports, DestroyWithoutAManagerChangesNothing) {
  ErrorLog log;
  IPalvex *manager = nullptr;
  CreatePalvex_1(&manager, nullptr, nullptr, nullptr, &log, TestCallbacks(), nullptr);
  IPalvex *none = nullptr;
  DestroyPalvex_1(&none, &log);
  DestroyPalvex_1(nullptr, &log);
  ASSERT_EQ(log.errors.size(), 2u);
  for (const auto &error : log.errors) {
    EXPECT_EQ(error.code, 1u);
    EXPECT_EQ(error.message, "Invalid pointer to \"IPalvex\".");
  }
  EXPECT_EQ(ns_sensor::ManagerUseCount(), 1);
  DestroyPalvex_1(&manager, &log);
  EXPECT_EQ(ns_sensor::ManagerUseCount(), 0);
}

TEST_F(Exports, LocalizedMessagesFillParameters) {
  ErrorLog log;
  IPalvex *manager = nullptr;
  CreatePalvex_1(&manager, nullptr, nullptr, "ja_JP", &log, TestCallbacks(), nullptr);
  PX_HostString text;
  GetLocalizedErrorMsg_1("$$$/PXError/FileNotExist=File not exist at input path:^1.", "/a/b.csv", nullptr,
                         nullptr, nullptr, &text);
  EXPECT_NE(text.text.find("/a/b.csv"), std::string::npos) << text.text;
  EXPECT_EQ(text.text.find("File not exist"), std::string::npos) << text.text;
  // Null parameters count as empty strings, so the mark disappears.
  GetLocalizedErrorMsg_1("$$$/T/Own=a^1b^2c", nullptr, "x", nullptr, nullptr, &text);
  EXPECT_EQ(text.text, "abxc");
  GetLocalizedErrorMsg_1(nullptr, nullptr, nullptr, nullptr, nullptr, &text);
  EXPECT_EQ(text.text, "");
  DestroyPalvex_1(&manager, &log);
  EXPECT_TRUE(log.empty());
}

TEST_F(Exports, LastExceptionWithAndWithoutReset) {
  auto report = [](PX_ErrorContext context, uint32_t code, const char *message, int64_t, int64_t) {
    *static_cast<std::string *>(context) = std::to_string(code) + " " + message;
  };
  // The thread's last exception as "code message", taken with or without a reset.
  const auto last = [&](int reset) {
    std::string seen = "unset";
    GetLastException_1(&seen, report, reset);
    return seen;
  };
  last(1);  // whatever this thread had before
  EXPECT_EQ(last(0), "0 ");
  ErrorLog log;
  DestroyPalvex_1(nullptr, &log);
  EXPECT_EQ(last(0), "1 Invalid pointer to \"IPalvex\".");
  EXPECT_EQ(last(1), "1 Invalid pointer to \"IPalvex\".");
  EXPECT_EQ(last(0), "0 ");
  GetLastException_1(nullptr, nullptr, 0);  // no function: nothing happens
}

TEST_F(Exports, AHostFunctionThatThrowsEndsTheDelivery) {
  int delivered = 0;
  palvex::testing::FormatDeliveryHook() = [&delivered] {
    if (++delivered == 3) throw std::runtime_error("host record is full");
  };
  PX_SupportedFormatList list;
  ErrorLog log;
  GetSupportedFormats_1(&list, &log, nullptr);
  palvex::testing::FormatDeliveryHook() = nullptr;
  EXPECT_EQ(list.formats.size(), 2u);  // what arrived before the failure stays
  ASSERT_EQ(log.errors.size(), 1u);
  EXPECT_EQ(log.errors[0].code, 23u);
  EXPECT_EQ(log.errors[0].message, "Unknown exception occurred.");
}

}  // namespace
