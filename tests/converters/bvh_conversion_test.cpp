// Motion capture files converted through the manager and read back through the handler:
// the skeleton's groups and nodes, the timing, the samples, and the failures, which leave
// no file behind.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "api/conversion_test_support.hpp"
#include "api/px_exception.hpp"
#include "api/service_table.hpp"
#include "converters/bvh_converter.hpp"

namespace palvex::testing {
namespace {

using Lines = std::vector<std::string>;

// Hips: position and rotation; Left_Arm and LeftArm share their match name's letters;
// Leg's six channels name no position order, so its frames carry three values only.
constexpr std::string_view kSkeleton =
    "HIERARCHY\n"
    "ROOT Hips\n"
    "{\n"
    "\tOFFSET 0 90 0\n"
    "\tCHANNELS 6 Xposition Yposition Zposition Zrotation Xrotation Yrotation\n"
    "\tJOINT Left_Arm\n"
    "\t{\n"
    "\t\tOFFSET 15 30 -2.5\n"
    "\t\tCHANNELS 3 Yrotation Zrotation Xrotation\n"
    "\t\tEnd Site\n"
    "\t\t{\n"
    "\t\t\tOFFSET 20 0 0\n"
    "\t\t}\n"
    "\t}\n"
    "\tJOINT LeftArm\n"
    "\t{\n"
    "\t\tOFFSET 1 2 3\n"
    "\t\tCHANNELS 3 Xrotation Yrotation Zrotation\n"
    "\t}\n"
    "\tJOINT Leg\n"
    "\t{\n"
    "\t\tOFFSET 0 -40 0\n"
    "\t\tCHANNELS 6 Xpos Ypos Zpos Zrotation Yrotation Xrotation\n"
    "\t}\n"
    "}\n";

class BvhConversion : public ConversionTest {
 protected:
  // Data types arrive through the service table (the component names among them).
  void SetUp() override {
    ConversionTest::SetUp();
    palvex::host::ServiceTable() = &ns_sensor::ServiceTable();
  }

  // Every node below the root: groups as "display (match)", static nodes with their
  // values, dynamic nodes with their component names, indented by depth.
  void Walk(ISensorFileHandler *handler, const std::string &path, std::size_t count, int depth, Lines &lines) {
    for (std::size_t child = 0; child < count; ++child) {
      const std::string childPath = path + "[" + std::to_string(child) + "]";
      const std::string indent(2 * depth, ' ');
      PX_GroupChildInfo info;
      handler->GetGroupChildInfo(childPath.c_str(), &info, &log_);
      if (info.nodeType == PX_NODE_GROUP) {
        lines.push_back(indent + info.displayName + " (" + info.matchName + ")");
        PX_GroupChildren children;
        handler->GetGroupChildren(childPath.c_str(), &children, &log_);
        Walk(handler, childPath, children.paths.size(), depth + 1, lines);
      } else if (info.nodeType == PX_NODE_STATIC) {
        PX_StaticDataInfo node;
        handler->GetStaticDataInfo(childPath.c_str(), &node, &log_);
        std::string text = indent + node.displayName + " (" + node.matchName + "):";
        const std::vector<std::string> &names = node.dataType.numberArray.displayNames;
        for (std::size_t i = 0; i < node.numbers.size(); ++i) {
          char number[32];
          std::snprintf(number, sizeof number, "=%g", node.numbers[i]);
          text += " " + (i < names.size() ? names[i] : "?") + number;
        }
        lines.push_back(text);
      } else {
        PX_DynamicDataInfo node;
        handler->GetDynamicDataInfo(childPath.c_str(), &node, &log_);
        std::string text = indent + node.displayName + " (" + node.matchName + ") " +
                           std::to_string(node.sampleCount) + " samples:";
        for (const std::string &name : node.dataType.numberArray.displayNames) text += " " + name;
        lines.push_back(text);
      }
    }
  }

  ISensorFileHandler *Open(const std::string &path) {
    ISensorFileHandler *handler = nullptr;
    manager_->OpenFile(&handler, path.c_str(), nullptr, &log_);
    return handler;
  }

  // The samples of a set as "time: v1 v2 v3", index first on for count samples.
  Lines Samples(ISensorFileHandler *handler, const std::string &id, std::uint32_t first, std::uint32_t count) {
    PX_DynamicSampleInfo info;
    handler->GetDynamicSampleInfo(id.c_str(), first, count, 1, &info, &log_);
    Lines lines;
    for (const auto &sample : info.samples) {
      std::string text = sample.time.text + ":";
      for (double value : sample.numbers) {
        char number[32];
        std::snprintf(number, sizeof number, " %.6g", value);
        text += number;
      }
      lines.push_back(text);
    }
    return lines;
  }
};

TEST_F(BvhConversion, SkeletonBecomesGroupsAndFramesSamples) {
  const std::string path = folder_.WriteFile(
      "walk.bvh", std::string(kSkeleton) +
                      "MOTION\nFrames: 2\nFrame Time: 0.0333667\n"
                      "1 2 3 90 0 0 0 0 0 0 0 0 5 6 7\n"
                      "-1.5 0 -2 0 0 90 30 -45 60 30 -45 60 0 0 0\n\n");
  ISensorFileHandler *handler = Open(path);
  ASSERT_NE(handler, nullptr) << TakeError();

  PX_GroupChildren root;
  handler->GetRootChildren(&root, &log_);
  Lines outline;
  Walk(handler, "", root.paths.size(), 0, outline);
  EXPECT_EQ(outline, (Lines{
                         "Hips (mnHips)",
                         "  HipsOFFSET (mnHipsOFFSET): X_OFFSET=0 Y_OFFSET=90 Z_OFFSET=0",
                         "  HipsPOSITION (mnHipsPOSITION) 2 samples: X_POSITION Y_POSITION Z_POSITION",
                         "  HipsROTATION (mnHipsROTATION) 2 samples: X_ROTATION Y_ROTATION Z_ROTATION",
                         "  Left_Arm (mnLeftArm)",
                         "    Left_ArmOFFSET (mnLeftArmOFFSET): X_OFFSET=15 Y_OFFSET=30 Z_OFFSET=-2.5",
                         "    Left_ArmROTATION (mnLeftArmROTATION) 2 samples: X_ROTATION Y_ROTATION Z_ROTATION",
                         "    Left_ArmEnd (mnLeftArmEnd)",
                         "      Left_ArmEndOFFSET (mnLeftArmEndOFFSET): X_OFFSET=20 Y_OFFSET=0 Z_OFFSET=0",
                         "  LeftArm (mnLeftArm2)",
                         "    LeftArmOFFSET (mnLeftArm2OFFSET): X_OFFSET=1 Y_OFFSET=2 Z_OFFSET=3",
                         "    LeftArmROTATION (mnLeftArm2ROTATION) 2 samples: X_ROTATION Y_ROTATION Z_ROTATION",
                         "  Leg (mnLeg)",
                         "    LegOFFSET (mnLegOFFSET): X_OFFSET=0 Y_OFFSET=-40 Z_OFFSET=0",
                         "    LegROTATION (mnLegROTATION) 2 samples: X_ROTATION Y_ROTATION Z_ROTATION",
                     }));

  PX_FileInfo info;
  handler->GetFileInfo(&info, &log_);
  EXPECT_EQ(info.creator, "com.corvane.sensor.bvh");
  EXPECT_EQ(info.timeKind, static_cast<std::uint32_t>(PX_TIME_TIMECODE));
  EXPECT_EQ(info.frameRateValue, 30000u);
  EXPECT_EQ(info.frameRateScale, 1001u);
  EXPECT_TRUE(info.dropFrame);

  EXPECT_EQ(Samples(handler, "mnHipsPOSITION", 0, 2), (Lines{"00:00:00:00: 1 -2 -3", "00:00:00:01: -1.5 0 2"}));
  // Hips rotates Z X Y: 90 about Z, then 90 about Y.
  EXPECT_EQ(Samples(handler, "mnHipsROTATION", 0, 2), (Lines{"00:00:00:00: 0 0 -90", "00:00:00:01: 0 -90 0"}));
  EXPECT_EQ(Samples(handler, "mnLeftArm2ROTATION", 1, 1), (Lines{"00:00:00:01: 30 45 -60"}));
  EXPECT_EQ(Samples(handler, "mnLegROTATION", 0, 1), (Lines{"00:00:00:00: 6.49406 -6.54457 -4.261"}));
  manager_->CloseFile(&handler, &log_);
  EXPECT_EQ(TakeError(), "ok");
  EXPECT_TRUE(TempFiles().empty());
}

TEST_F(BvhConversion, DropFrameTimesSkipTheirLabels) {
  std::string text = "HIERARCHY\nROOT R\n{\nCHANNELS 3 Xrotation Yrotation Zrotation\n}\nMOTION\n"
                     "Frames: 1801\nFrame Time: 0.0333667\n";
  for (int frame = 0; frame < 1801; ++frame) text += std::to_string(frame % 90) + " 0 0\n";
  ISensorFileHandler *handler = Open(folder_.WriteFile("long.bvh", text));
  ASSERT_NE(handler, nullptr) << TakeError();
  EXPECT_EQ(Samples(handler, "mnRROTATION", 1799, 2), (Lines{"00:00:59:29: 89 0 0", "00:01:00:02: 0 0 0"}));
  manager_->CloseFile(&handler, &log_);
  EXPECT_EQ(TakeError(), "ok");
}

TEST_F(BvhConversion, BadFilesFailWithTheirCodeAndLeaveNothing) {
  const std::string header = "HIERARCHY\nROOT R\n{\nCHANNELS 6 Xposition Yposition Zposition Xrotation Yrotation Zrotation\n";
  const std::string motion = "}\nMOTION\nFrames: 1\nFrame Time: 0.04\n";
  std::string deep = "HIERARCHY\nROOT J\n{\n";
  for (int i = 0; i < 10000; ++i) deep += "JOINT J\n{\n";
  std::string longLine = header + motion;
  for (int i = 0; i < 200000; ++i) longLine += "1 ";
  const struct {
    const char *name;
    std::string content;
    std::uint32_t code;
  } cases[] = {
      // Each reading step once, end to end; the ways each step fails are its own tests'.
      {"truncated.bvh", header, 1509},  {"few.bvh", header + motion + "1 2 3 4 5\n", 1509},
      {"many.bvh", header + motion + "1 2 3 4 5 6 7\n", 1509},
      {"nan.bvh", header + motion + "1 2 3 4 nan 6\n", 1509},
      {"late.bvh", header + motion + "1 2 3 4 5 6\n1 2 3 4 5\n", 1509}, {"long.bvh", longLine, 1509},
      {"binary.bvh", header + motion + std::string("\x01\x02\0\xFF\xFE\n\x80", 7), 1509},
      {"zero.bvh", header + "}\nMOTION\nFrames: 1\nFrame Time: 0\n", 1508},
      {"nomotion.bvh", header + "}\n", 1509},  {"deep.bvh", deep, 1509},
  };
  for (const auto &c : cases) {
    EXPECT_EQ(Open(folder_.WriteFile(c.name, c.content)), nullptr) << c.name;
    ASSERT_FALSE(log_.empty()) << c.name;
    EXPECT_EQ(log_.errors[0].code, c.code) << c.name << ": " << log_.errors[0].message;
    log_.clear();
    EXPECT_TRUE(TempFiles().empty()) << c.name;
  }
}

TEST_F(BvhConversion, UnreadableFilesAreRefusedByTheCheckAndTheConverter) {
  const auto codeOf = [](auto &&attempt) -> std::uint32_t {
    try {
      attempt();
    } catch (const ns_sensor::PX_Exception &failure) {
      return failure.code();
    }
    return 0;
  };
  const ns_sensor::ConversionRequest gone{folder_.Path("gone.bvh"), "bvh", folder_.Path("out.mgjson")};
  EXPECT_EQ(codeOf([&] { ns_sensor::IsBvhFile(gone); }), 1006u);
  EXPECT_EQ(codeOf([&] { ns_sensor::BvhConverter(gone).Convert(); }), 1006u);
  const ns_sensor::ConversionRequest empty{folder_.WriteFile("empty.bvh", ""), "bvh", folder_.Path("out.mgjson")};
  EXPECT_FALSE(ns_sensor::IsBvhFile(empty));
  EXPECT_EQ(codeOf([&] { ns_sensor::BvhConverter(empty).Convert(); }), 1001u);
}

}  // namespace
}  // namespace palvex::testing
