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
  for (const char *refused : {"HIERARCHY\n\nROOT x\n", "hierarchy\nROOT x\n", "HIERARCHYROOT\n", "HIERARCHY", ""}) {
    EXPECT_FALSE(HasBvhHeader(refused)) << refused;
  }
}

TEST(BvhHierarchy, MalformedHierarchiesAreRefusedWithTheirCodes) {
  // Not a motion capture file at all: 1001.
  for (const char *text : {"", "HIERARCHY\n", "HIERARCHY\nJOINT R\n{\n}\n", "ROOT R\n{\n}\n", "\x7F" "ELF\x02\x01\x01"}) {
    EXPECT_EQ(FailureCode(text), 1001u) << text;
  }
  // A skeleton that goes wrong: 1509.
  const std::string open = "HIERARCHY\nROOT R\n{\n";
  const std::string skeletons[] = {
      "HIERARCHY\nROOT\n{\n}\n", "HIERARCHY\nROOT R\n}\n", "HIERARCHY\nROOT R\n", open, open + "OFFSET 1 2\n}\n",
      open + "OFFSET 1 2 3 4\n}\n", open + "OFFSET 1 2 x\n}\n", open + "OFFSET 1 nan 3\n}\n",
      open + "CHANNELS 4 Xrotation Yrotation Zrotation\n}\n", open + "CHANNELS\n}\n", open + "End\n{\n}\n}\n",
      open + "End Sight\n{\n}\n}\n", open + "JOINT\n{\n}\n}\n", open + "JOINT J\nOFFSET 0 0 0\n}\n}\n",
      open + "JOINT J\n{\n}\n"};
  for (const std::string &text : skeletons) EXPECT_EQ(FailureCode(text), 1509u) << text;
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
