// The skeleton of a motion capture file: joints, End Sites, offsets, channel orders, and
// the ways a hierarchy is refused.
#include <gtest/gtest.h>

#include <string>

#include "api/px_exception.hpp"
#include "converters/bvh_hierarchy.hpp"

namespace ns_sensor {
namespace {

std::shared_ptr<SkeletonNode> Skeleton(std::string_view text) {
  BvhLines lines(text);
  return ReadSkeleton(lines);
}

// The code of the failure reading text, 0 when it is read.
std::uint32_t FailureCode(std::string_view text) {
  try {
    Skeleton(text);
  } catch (const PX_Exception &failure) {
    return failure.code();
  }
  return 0;
}

constexpr std::string_view kArm =
    "HIERARCHY\n"
    "ROOT Hips\n"
    "{\n"
    "  OFFSET 1 2.5 -3\n"
    "  CHANNELS 6 Xposition Yposition Zposition Zrotation Xrotation Yrotation\n"
    "  JOINT Arm\n"
    "  {\n"
    "    OFFSET 0 4 0\n"
    "    CHANNELS 3 Yrotation Zrotation Xrotation\n"
    "    End Site\n"
    "    {\n"
    "      OFFSET 0 1 0\n"
    "    }\n"
    "  }\n"
    "  JOINT Leg\n"
    "  {\n"
    "    OFFSET 0 -4 0\n"
    "  }\n"
    "}\n"
    "MOTION\n";

TEST(BvhHierarchy, JointsEndSitesOffsetsAndChannels) {
  BvhLines lines(kArm);
  const auto hips = ReadSkeleton(lines);
  EXPECT_EQ(hips->name, "Hips");
  EXPECT_EQ(hips->parentName, "");
  EXPECT_EQ(hips->offset, (std::array<double, 3>{1, 2.5, -3}));
  EXPECT_EQ(hips->positionOrder, 0);
  EXPECT_EQ(hips->rotationOrder, 4);
  ASSERT_EQ(hips->children.size(), 2u);

  const SkeletonNode &arm = *hips->children[0];
  EXPECT_EQ(arm.name, "Arm");
  EXPECT_EQ(arm.parentName, "Hips");
  EXPECT_EQ(arm.positionOrder, kNoChannels);
  EXPECT_EQ(arm.rotationOrder, 2);
  ASSERT_EQ(arm.children.size(), 1u);
  const SkeletonNode &end = *arm.children[0];
  EXPECT_EQ(end.name, "ArmEnd");
  EXPECT_EQ(end.parentName, "Arm");
  EXPECT_EQ(end.offset, (std::array<double, 3>{0, 1, 0}));
  EXPECT_EQ(end.rotationOrder, kNoChannels);
  EXPECT_TRUE(end.children.empty());

  const SkeletonNode &leg = *hips->children[1];
  EXPECT_EQ(leg.name, "Leg");
  EXPECT_EQ(leg.rotationOrder, kNoChannels);
  EXPECT_EQ(leg.positionOrder, kNoChannels);

  std::string_view next;
  ASSERT_TRUE(lines.Next(next));
  EXPECT_EQ(next, "MOTION") << "the reader stops after the root's closing brace";
}

TEST(BvhHierarchy, ChannelOrdersAreFoundAnywhereOnTheLine) {
  const struct {
    const char *words;
    const char *suffix;
    std::int8_t order;
  } cases[] = {
      {"Xrotation Yrotation Zrotation", "rotation", 0},
      {"Xrotation Zrotation Yrotation", "rotation", 1},
      {"Yrotation Zrotation Xrotation", "rotation", 2},
      {"Yrotation Xrotation Zrotation", "rotation", 3},
      {"Zrotation Xrotation Yrotation", "rotation", 4},
      {"Zrotation Yrotation Xrotation", "rotation", 5},
      {"Zposition Yposition Xposition Yrotation Xrotation Zrotation", "position", 5},
      {"Zposition Yposition Xposition Yrotation Xrotation Zrotation", "rotation", 3},
      {"Xposition\tYposition   Zposition", "position", 0},
      // Overlapping triples: the lowest code wins wherever it stands.
      {"Zrotation Xrotation Yrotation Zrotation", "rotation", 0},
      {"Xrotation Yrotation", "rotation", kNoChannels},
      {"Xrotation Yrotation Xrotation", "rotation", kNoChannels},
      {"xrotation yrotation zrotation", "rotation", kNoChannels},
      {"XrotationYrotation Zrotation", "rotation", kNoChannels},
      {"Xposition Yposition Zposition", "rotation", kNoChannels},
      {"Xpos Ypos Zpos", "position", kNoChannels},
      {"", "rotation", kNoChannels},
  };
  for (const auto &c : cases) EXPECT_EQ(FindChannelOrder(c.words, c.suffix), c.order) << c.words;
}

TEST(BvhHierarchy, SixChannelsWithoutAPositionTextGiveRotationsOnly) {
  const auto root = Skeleton("HIERARCHY\nROOT R\n{\nCHANNELS 6 Xpos Ypos Zpos Zrotation Yrotation Xrotation\n}\n");
  EXPECT_EQ(root->positionOrder, kNoChannels);
  EXPECT_EQ(root->rotationOrder, 5);
}

TEST(BvhHierarchy, LinesItDoesNotKnowAreIgnored) {
  const auto root = Skeleton(
      "HIERARCHY anything\nROOT R extra\n  {  \n\n# note\nCHANNELS 3 Xrotation Yrotation Zrotation\n"
      "End Site\n{\nCHANNELS 3 Zrotation Yrotation Xrotation\nJOINT Hidden\n}\nROOT Other\n}\n");
  EXPECT_EQ(root->name, "R");
  EXPECT_EQ(root->rotationOrder, 0);
  ASSERT_EQ(root->children.size(), 1u);
  EXPECT_EQ(root->children[0]->name, "REnd");
  EXPECT_EQ(root->children[0]->rotationOrder, kNoChannels) << "an End Site has no channels";
  EXPECT_TRUE(root->children[0]->children.empty()) << "nor joints";
}

TEST(BvhHierarchy, HeaderCheck) {
  EXPECT_TRUE(HasBvhHeader("HIERARCHY\nROOT x\n"));
  EXPECT_TRUE(HasBvhHeader("  HIERARCHY  \r\n\tROOT"));
  EXPECT_FALSE(HasBvhHeader("HIERARCHY\n\nROOT x\n"));
  EXPECT_FALSE(HasBvhHeader("hierarchy\nROOT x\n"));
  EXPECT_FALSE(HasBvhHeader("HIERARCHYROOT\n"));
  EXPECT_FALSE(HasBvhHeader("HIERARCHY"));
  EXPECT_FALSE(HasBvhHeader(""));
}

TEST(BvhHierarchy, MalformedHierarchiesAreRefusedWithTheirCodes) {
  const std::string open = "HIERARCHY\nROOT R\n{\n";
  const struct {
    std::string text;
    std::uint32_t code;
  } cases[] = {
      {"", 1001},
      {"HIERARCHY\n", 1001},
      {"HIERARCHY\nJOINT R\n{\n}\n", 1001},
      {"ROOT R\n{\n}\n", 1001},
      {"\x7F" "ELF\x02\x01\x01", 1001},
      {"HIERARCHY\nROOT\n{\n}\n", 1509},
      {"HIERARCHY\nROOT R\n}\n", 1509},
      {"HIERARCHY\nROOT R\n", 1509},
      {open, 1509},
      {open + "OFFSET 1 2\n}\n", 1509},
      {open + "OFFSET 1 2 3 4\n}\n", 1509},
      {open + "OFFSET 1 2 x\n}\n", 1509},
      {open + "OFFSET 1 nan 3\n}\n", 1509},
      {open + "CHANNELS 4 Xrotation Yrotation Zrotation\n}\n", 1509},
      {open + "CHANNELS\n}\n", 1509},
      {open + "End\n{\n}\n}\n", 1509},
      {open + "End Sight\n{\n}\n}\n", 1509},
      {open + "JOINT\n{\n}\n}\n", 1509},
      {open + "JOINT J\nOFFSET 0 0 0\n}\n}\n", 1509},
      {open + "JOINT J\n{\n}\n", 1509},
  };
  for (const auto &c : cases) EXPECT_EQ(FailureCode(c.text), c.code) << c.text;
}

TEST(BvhHierarchy, NestingIsBoundedByTheDocument) {
  // Forty nodes along one chain fit (the document root holds the first); one more does not.
  auto chain = [](int joints, bool endSite) {
    std::string text = "HIERARCHY\nROOT J0\n{\n";
    for (int i = 1; i < joints; ++i) text += "JOINT J" + std::to_string(i) + "\n{\n";
    if (endSite) text += "End Site\n{\n}\n";
    for (int i = 0; i < joints; ++i) text += "}\n";
    return text;
  };
  EXPECT_EQ(FailureCode(chain(40, false)), 0u);
  EXPECT_EQ(FailureCode(chain(39, true)), 0u);
  EXPECT_EQ(FailureCode(chain(40, true)), 1509u);
  try {
    Skeleton(chain(10000, false));
    ADD_FAILURE() << "ten thousand nested joints were accepted";
  } catch (const PX_Exception &failure) {
    EXPECT_EQ(failure.code(), 1509u);
    EXPECT_EQ(std::string(failure.what()), "The skeleton of the motion capture file nests joints more than 40 deep.");
  }
}

}  // namespace
}  // namespace ns_sensor
