// A converter built from the public headers alone drives the library's objects.
#include <gtest/gtest.h>

#include "model_test_support.hpp"
#include "standalone_converter.hpp"

namespace PX_PLUGIN {
namespace {

TEST(StandaloneConverter, BuildsAndCommitsThroughThePublicInterfaces) {
  testing::TestDocument document;
  ASSERT_EQ(standalone::BuildStationDocument(document.root), 0u);
  EXPECT_EQ(document.log.finishes, 1);
  ASSERT_EQ(document.log.sampleSets.size(), 1u);
  EXPECT_EQ(document.log.sampleSets[0].id, "wind");
  EXPECT_EQ(document.log.sampleSets[0].samples,
            (std::vector<std::pair<std::string, std::string>>{
                {"00:00:00:00", "0"}, {"00:00:00:01", "3.5"}, {"00:00:00:02", "7"}}));
  const auto &root = dynamic_cast<IMgjsonRoot_I &>(*document.root);
  EXPECT_EQ(root.Creator(), "station");
  ASSERT_EQ(root.Children().size(), 2u);
  EXPECT_EQ(root.Children()[0].Group()->Children().size(), 3u);
}

TEST(StandaloneConverter, RawOperationsReportStatuses) {
  testing::TestDocument document;
  EXPECT_EQ(standalone::RenameWithRawOperations(document.root), PX_PLUGIN_INVALID_MATCH_NAME);
}

TEST(StandaloneConverter, HelperHandlesCountEveryCopy) {
  testing::TestDocument document;
  const auto references = [](IMgjsonGroup_v1 *group) {
    return dynamic_cast<SharedObjectImpl &>(*group).ReferenceCount();
  };
  Ref<IMgjsonGroup_v1> group = CreateGroup(document.root, "G", "g");
  EXPECT_EQ(references(group.get()), 2u);  // the library's and the handle's
  {
    const Ref<IMgjsonGroup_v1> copy = group;
    EXPECT_EQ(references(group.get()), 3u);
  }
  EXPECT_EQ(references(group.get()), 2u);
  Call(document.root, &IMgjsonGroup_v1::AddGroupChild, group.get());
  group.reset();
  EXPECT_EQ(document.root->GetChildCount(), 1u);
  EXPECT_EQ(references(document.root->GetInternalGroup()->Children()[0].Group()), 1u);
}

}  // namespace
}  // namespace PX_PLUGIN
