// The plug-in kit's helpers, and a plug-in written with them driven through its tables as
// the library drives it, with a host table whose roots are the library's own objects.
#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "kit_plugin.hpp"
#include "palvex/plugin_kit.hpp"
#include "plugin_model/model_test_support.hpp"

namespace PX_PLUGIN {
namespace {

// A host table over test documents; records what the plug-in asked of it.
struct FakeHost {
  static FakeHost *current;

  PX_HostInterface_v1 table{sizeof(PX_HostInterface_v1), PX_PLUGIN_INTERFACE_VERSION, &CreateRoot, &ReleaseRoot, &Locale};
  std::vector<std::unique_ptr<testing::TestDocument>> documents;
  std::vector<std::string> createdFor;  // "outputPath|creator"
  int releases = 0;
  uint32_t refuseWith = 0;  // createRoot fails with this status when not 0

  FakeHost() { current = this; }
  ~FakeHost() { current = nullptr; }

  int Finishes() const {
    int finishes = 0;
    for (const auto &document : documents) finishes += document->log.finishes;
    return finishes;
  }

  static uint32_t CreateRoot(const char *path, uint32_t pathLength, const char *creator, uint32_t creatorLength,
                             IMgjsonRoot_v1 **root, PX_PluginError *error) {
    FakeHost &host = *current;
    host.createdFor.push_back(std::string(path, pathLength) + "|" + std::string(creator, creatorLength));
    if (host.refuseWith != 0) {
      *error = PX_PluginError{host.refuseWith, 11, 12};
      return host.refuseWith;
    }
    host.documents.push_back(std::make_unique<testing::TestDocument>());
    *root = host.documents.back()->root;
    return PX_PLUGIN_OK;
  }
  static uint32_t ReleaseRoot(IMgjsonRoot_v1 *, PX_PluginError *) {
    ++current->releases;
    return PX_PLUGIN_OK;
  }
  static const char *Locale() { return "en_US"; }
};
FakeHost *FakeHost::current = nullptr;

PX_PluginFunctions_v1 FreshFunctionTable() {
  PX_PluginFunctions_v1 functions{};
  functions.header = {sizeof(PX_PluginFunctions_v1), PX_PLUGIN_INTERFACE_VERSION};
  return functions;
}

TEST(PluginKitTables, HostSupportsVersionOneOrLaterOnly) {
  const FakeHost host;
  const struct {
    const char *what;
    void (*spoil)(PX_HostInterface_v1 &, PX_PluginFunctions_v1 &);
    bool supported;
  } cases[] = {
      {"as the library fills them", [](PX_HostInterface_v1 &, PX_PluginFunctions_v1 &) {}, true},
      {"a later host table with more slots", [](PX_HostInterface_v1 &h, PX_PluginFunctions_v1 &) { h.size += 8; h.version = 2; }, true},
      {"host table version 0", [](PX_HostInterface_v1 &h, PX_PluginFunctions_v1 &) { h.version = 0; }, false},
      {"host table shorter than version 1", [](PX_HostInterface_v1 &h, PX_PluginFunctions_v1 &) { h.size -= 8; }, false},
      {"a host slot missing", [](PX_HostInterface_v1 &h, PX_PluginFunctions_v1 &) { h.releaseRoot = nullptr; }, false},
      {"function table of another size", [](PX_HostInterface_v1 &, PX_PluginFunctions_v1 &f) { f.header.size = 40; }, false},
      {"function table of another version", [](PX_HostInterface_v1 &, PX_PluginFunctions_v1 &f) { f.header.version = 2; }, false},
  };
  for (const auto &c : cases) {
    PX_HostInterface_v1 table = host.table;
    PX_PluginFunctions_v1 functions = FreshFunctionTable();
    c.spoil(table, functions);
    EXPECT_EQ(HostSupportsV1(&table, &functions), c.supported) << c.what;
  }
  PX_PluginFunctions_v1 functions = FreshFunctionTable();
  EXPECT_FALSE(HostSupportsV1(nullptr, &functions));
  EXPECT_FALSE(HostSupportsV1(&host.table, nullptr));
}

TEST(PluginKitErrors, CaughtExceptionsBecomeErrorRecords) {
  const struct {
    const char *what;
    void (*thrower)();
    PX_PluginError expected;
  } cases[] = {
      {"a plug-in exception keeps code and details", [] { throw PX_PluginException(2029, 5, 6); }, {2029, 5, 6}},
      {"a plug-in exception claiming success", [] { throw PX_PluginException(0, 5, 6); }, {1023, -1, -1}},
      {"lack of memory", [] { throw std::bad_alloc(); }, {1034, -1, -1}},
      {"a standard exception", [] { throw std::runtime_error("x"); }, {1023, -1, -1}},
      {"something that is no exception class", [] { throw 42; }, {1023, -1, -1}},
  };
  for (const auto &c : cases) {
    PX_PluginError error = NoPluginError();
    RunGuarded(&error, c.thrower);
    EXPECT_EQ(error.code, c.expected.code) << c.what;
    EXPECT_EQ(error.detail1, c.expected.detail1) << c.what;
    EXPECT_EQ(error.detail2, c.expected.detail2) << c.what;
  }
  PX_PluginError untouched = NoPluginError();
  RunGuarded(&untouched, [] {});
  EXPECT_EQ(untouched.code, 0u);
  RunGuarded(nullptr, [] { throw std::bad_alloc(); });  // a null record is left alone
}

TEST(PluginKitRoot, ReleasedOnceWhateverHappensToTheHolder) {
  FakeHost host;
  {
    OwnedRoot first(&host.table, "a.mgjson", "me");
    OwnedRoot second(&host.table, "b.mgjson", "me");
    OwnedRoot moved(std::move(first));
    EXPECT_EQ(first.get(), nullptr);
    second = std::move(moved);  // lets go of b's root now
    EXPECT_EQ(host.releases, 1);
  }
  EXPECT_EQ(host.releases, 2);
  EXPECT_EQ(host.createdFor, (std::vector<std::string>{"a.mgjson|me", "b.mgjson|me"}));

  host.refuseWith = PX_PLUGIN_NO_OUTPUT_PATH;
  try {
    OwnedRoot refused(&host.table, "", "me");
    ADD_FAILURE() << "a refused root must throw";
  } catch (const PX_PluginException &e) {
    EXPECT_EQ(e.code(), PX_PLUGIN_NO_OUTPUT_PATH);
    EXPECT_EQ(e.detail1(), 11);
    EXPECT_EQ(e.detail2(), 12);
  }
  EXPECT_EQ(host.releases, 2);  // nothing to let go of
}

TEST(PluginKitPlugin, ConversionsReportThroughTheRecords) {
  const struct {
    const char *mode;
    PX_PluginError expected;
    uint32_t success;
    int roots;  // made and let go of
    int finishes;
  } cases[] = {
      {kit_plugin::kCommits, {0, -1, -1}, 1, 1, 1},
      {kit_plugin::kThrowsOwnCode, {kit_plugin::kOwnCode, 7, 8}, 0, 1, 0},
      {kit_plugin::kRunsOutOfMemory, {PX_PLUGIN_OUT_OF_MEMORY, -1, -1}, 0, 1, 0},
      {kit_plugin::kFindsNothing, {0, -1, -1}, 0, 0, 0},
  };
  for (const auto &c : cases) {
    FakeHost host;
    PX_PluginFunctions_v1 functions = FreshFunctionTable();
    PX_PluginError error = NoPluginError();
    const PX_InitializePluginFn entry = &InitializePlugin;
    entry("kit.module", &host.table, &functions, &error);
    ASSERT_EQ(error.code, 0u);
    ASSERT_NE(functions.convertToMgjson, nullptr);

    PX_ConverterContext context{sizeof(PX_ConverterContext), "kit.module", "kit.converter", "Kit", "en_US"};
    PX_PluginSession session = nullptr;
    functions.initializeSession(&context, "in.kit", c.mode, "out.mgjson", &session, &error);
    ASSERT_EQ(error.code, 0u) << c.mode;
    PX_PluginResult result{0};
    functions.convertToMgjson(session, &error, &result);
    functions.terminateSession(session, nullptr);

    EXPECT_EQ(error.code, c.expected.code) << c.mode;
    EXPECT_EQ(error.detail1, c.expected.detail1) << c.mode;
    EXPECT_EQ(error.detail2, c.expected.detail2) << c.mode;
    EXPECT_EQ(result.success, c.success) << c.mode;
    EXPECT_EQ(static_cast<int>(host.documents.size()), c.roots) << c.mode;
    EXPECT_EQ(host.releases, c.roots) << c.mode;
    EXPECT_EQ(host.Finishes(), c.finishes) << c.mode;
  }
}

TEST(PluginKitPlugin, EntryPointRefusesTablesItCannotFill) {
  FakeHost host;
  PX_HostInterface_v1 old = host.table;
  old.version = 0;
  PX_PluginFunctions_v1 functions = FreshFunctionTable();
  PX_PluginError error = NoPluginError();
  InitializePlugin("kit.module", &old, &functions, &error);
  EXPECT_NE(error.code, 0u);
  EXPECT_EQ(functions.convertToMgjson, nullptr);
}

}  // namespace
}  // namespace PX_PLUGIN
