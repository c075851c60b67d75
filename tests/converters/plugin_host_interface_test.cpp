// The host interface table as a plug-in sees it: making and releasing roots, what a
// careless plug-in leaves behind, and the locale.
#include <gtest/gtest.h>

#include "converters/plugin_host_interface.hpp"
#include "localisation/dictionary.hpp"
#include "palvex/plugin_helpers.hpp"
#include "platform/file_test_support.hpp"

namespace ns_sensor::testing {
namespace {

using namespace PX_PLUGIN;
using palvex::testing::ScratchFolder;

const PX_HostInterface_v1 &Host() { return PluginHostInterface(); }

IMgjsonRoot_v1 *MakeRoot(const std::string &path, std::string_view creator = "test.creator") {
  IMgjsonRoot_v1 *root = nullptr;
  PX_PluginError error = NoPluginError();
  EXPECT_EQ(Host().createRoot(path.data(), TextLength(path), creator.data(), TextLength(creator), &root, &error), 0u);
  return root;
}

std::uint32_t Release(IMgjsonRoot_v1 *root) {
  PX_PluginError error = NoPluginError();
  const std::uint32_t status = Host().releaseRoot(root, &error);
  EXPECT_EQ(error.code, status);
  return status;
}

TEST(PluginHostInterface, TableHeader) {
  EXPECT_EQ(Host().size, sizeof(PX_HostInterface_v1));
  EXPECT_EQ(Host().version, 1u);
  LoadDictionary("fr_FR");
  EXPECT_STREQ(Host().locale(), "fr_FR");
  UnloadDictionary();
}

TEST(PluginHostInterface, CreateRootRefusesBadArguments) {
  const ScratchFolder scratch;
  const std::string path = scratch.Path("out.mgjson");
  const struct {
    const char *label, *path;
    std::uint32_t pathLength;
    const char *creator;
    std::uint32_t creatorLength;
    bool rootPlace;
    std::uint32_t status;
  } cases[] = {
      {"no place for the root", path.c_str(), TextLength(path), "c", 1, false, PX_PLUGIN_INVALID_ARGUMENT},
      {"empty output path", "", 0, "c", 1, true, PX_PLUGIN_NO_OUTPUT_PATH},
      {"null path with a length", nullptr, 4, "c", 1, true, PX_PLUGIN_INVALID_ARGUMENT},
      {"null creator with a length", path.c_str(), TextLength(path), nullptr, 3, true, PX_PLUGIN_INVALID_ARGUMENT},
  };
  for (const auto &c : cases) {
    IMgjsonRoot_v1 *root = MakeRoot(scratch.Path("other.mgjson"));  // overwritten by a failure
    ASSERT_NE(root, nullptr);
    IMgjsonRoot_v1 *kept = root;
    PX_PluginError error = NoPluginError();
    EXPECT_EQ(Host().createRoot(c.path, c.pathLength, c.creator, c.creatorLength, c.rootPlace ? &root : nullptr, &error),
              c.status)
        << c.label;
    EXPECT_EQ(error.code, c.status) << c.label;
    EXPECT_EQ(LivePluginRootCount(), 1u) << c.label << ": nothing is kept of a failed creation";
    EXPECT_EQ(Release(kept), 0u);
    if (c.rootPlace) {
      EXPECT_EQ(root, nullptr) << c.label;
    }
  }
}

TEST(PluginHostInterface, ARootWritesItsFileWithTheCreatorAndIsReleasedOnce) {
  const ScratchFolder scratch;
  const std::string path = scratch.Path("out.mgjson");
  IMgjsonRoot_v1 *root = MakeRoot(path, "test.\"creator\"");
  ASSERT_NE(root, nullptr);
  {
    const PX_StaticValue value = {42.0, nullptr, 0, 0};
    StaticNode node = CreateStaticData(root, PX_STATIC_NUMBER, "Answer", "answer", &value);
    Call(static_cast<IMgjsonGroup_v1 *>(root), &IMgjsonGroup_v1::AddStaticChild, node.views().node);
    std::uint32_t committed = 0;
    Call(root, &IMgjsonRoot_v1::Commit, &committed);
    EXPECT_EQ(committed, 1u);
  }
  EXPECT_NE(palvex::testing::ReadWholeFile(path).find("\"test.\\\"creator\\\"\""), std::string::npos)
      << "the creator is a free text, escaped for the file";
  EXPECT_EQ(Release(root), 0u);
  EXPECT_EQ(LivePluginRootCount(), 0u);
  EXPECT_EQ(Release(root), PX_PLUGIN_CHILD_MISSING) << "released already";
  EXPECT_EQ(Release(nullptr), PX_PLUGIN_CHILD_MISSING);
}

TEST(PluginHostInterface, RootsLeftBehindGoWithTheirOwner) {
  const ScratchFolder scratch;
  const int sessionA = 0;
  const int sessionB = 0;
  {
    const RootOwnerScope scope(&sessionA);
    MakeRoot(scratch.Path("a1.mgjson"));
    MakeRoot(scratch.Path("a2.mgjson"));
    {
      const RootOwnerScope inner(&sessionB);
      MakeRoot(scratch.Path("b.mgjson"));
    }
    MakeRoot(scratch.Path("a3.mgjson"));  // the outer owner is back
  }
  EXPECT_EQ(LivePluginRootCount(), 4u);
  ReleaseRootsOf(&sessionA);
  EXPECT_EQ(LivePluginRootCount(), 1u);
  ReleaseRootsOf(&sessionB);
  EXPECT_EQ(LivePluginRootCount(), 0u);

  {
    const CallRootScope call;
    MakeRoot(scratch.Path("c.mgjson"));
    EXPECT_EQ(LivePluginRootCount(), 1u);
  }
  EXPECT_EQ(LivePluginRootCount(), 0u) << "a single call's roots end with the call";
}

}  // namespace
}  // namespace ns_sensor::testing
