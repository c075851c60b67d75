// The exact bytes of small written documents, pinned as files in golden/: key order,
// number texts, widening, escaping, the dynamic data information, a withdrawn promise of
// samples. A change of the writer's output shows up as a diff of these files.
// Set PALVEX_WRITE_GOLDEN=1 to write the files afresh (and review the diff).
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <functional>

#include "palvex/plugin_helpers.hpp"
#include "writer_test_support.hpp"

namespace PX_PLUGIN {
namespace {

using palvex::testing::ReadWholeFile;
using palvex::testing::ScratchFolder;
using testing::WritingDocument;

std::string GoldenPath(const std::string &name) {
  return std::string(PALVEX_SOURCE_DIR) + "/tests/plugin_model/golden/" + name + ".mgjson";
}

void AddNumber(IMgjsonGroup_v1 *group, IMgjsonRoot_v1 *root, const char *match, double value) {
  const StaticNode node = CreateStaticNumber(root, "Number", match, value);
  Call(group, &IMgjsonGroup_v1::AddStaticChild, node.views().node);
}

// Static nodes of every kind, numbers in the forms their texts take.
void StaticOnly(IMgjsonRoot_v1 *root) {
  Call(root, &IMgjsonRoot_v1::SetCreator, "Palvex \"tests\"", 14u);
  const double numbers[] = {2.5, 3.0, 0.1, 1e20, 1.5e20, 0.00001, -1.4e-14};
  for (std::size_t i = 0; i < std::size(numbers); ++i) {
    AddNumber(root, root, ("n" + std::to_string(i)).c_str(), numbers[i]);
  }
  const StaticNode text = CreateStaticString(root, "Tab\there", "text", "say \"hi\"\\\n\x01");
  Call(root, &IMgjsonGroup_v1::AddStaticChild, text.views().node);
  Ref<IMgjsonGroup_v1> group = CreateGroup(root, "Flags", "flags");
  const StaticNode flag = CreateStaticBoolean(root, "On", "on", true);
  Call(group.get(), &IMgjsonGroup_v1::AddStaticChild, flag.views().node);
  Call(root, &IMgjsonGroup_v1::AddGroupChild, group.get());
}

// Numbers at drop-frame timecode, widened to a signed pattern of 3 and 2 digits.
void TimecodeNumbers(IMgjsonRoot_v1 *root) {
  Call(root, &IMgjsonRoot_v1::SetTimecodeInfo, 1u, 30000u, 1001u);
  Call(root, &IMgjsonRoot_v1::AddVideoSyncFrame, "clip.mov", 8u, 1800u);
  Call(root, &IMgjsonRoot_v1::AddVideoSyncTime, "other.mov", 9u, "00:01:00:02", 11u);
  const DynamicNode speed = CreateDynamicData(root, PX_DYNAMIC_NUMBER, "Speed", "speed");
  IMgjsonDynamicDataNum_v1 *number = speed.views().number;
  Call(number, &IMgjsonDynamicDataNum_v1::SetPattern, 1u, 3, 2);
  Call(speed.views().node, &IMgjsonDynamicData_v1::SetInterpolation, static_cast<std::uint32_t>(PX_INTERPOLATION_HOLD));
  Call(speed.views().node, &IMgjsonDynamicData_v1::SetExpectedMaxInterSampleDuration, "00:00:01:00", 11u);
  Call(root, &IMgjsonGroup_v1::AddDynamicChild, speed.views().node);
  Call(number, &IMgjsonDynamicDataNum_v1::AddSampleAtFrame, std::uint64_t{1799}, 5.0);
  Call(number, &IMgjsonDynamicDataNum_v1::AddSampleAtFrame, std::uint64_t{1800}, -1.5);
  Call(number, &IMgjsonDynamicDataNum_v1::AddSampleAtFrame, std::uint64_t{1801}, 0.25);
  AddNumber(root, root, "total", 3);
}

// UTC with an offset: strings padded to the digit count of their longest length, and a
// number array with its components.
void UtcWithOffset(IMgjsonRoot_v1 *root) {
  Call(root, &IMgjsonRoot_v1::SetUtcInfo, 3u, 0u);
  const DynamicNode notes = CreateDynamicData(root, PX_DYNAMIC_STRING, "Notes", "notes");
  IMgjsonDynamicDataString_v1 *string = notes.views().string;
  Call(string, &IMgjsonDynamicDataString_v1::SetPaddedStringProperties, 0u, 0u, 1u);
  Call(root, &IMgjsonGroup_v1::AddDynamicChild, notes.views().node);
  const char *base = "2020-02-28T23:59:59.000+01:00";
  Call(string, &IMgjsonDynamicDataString_v1::AddSampleAtUtc, base, 29u, 0u, 1u, "go", 2u);
  Call(string, &IMgjsonDynamicDataString_v1::AddSampleAtUtc, base, 29u, 3u, 2u, "a \"long\" note", 13u);
  Call(notes.views().node, &IMgjsonDynamicData_v1::CompleteSamples);

  const DynamicNode position = CreateDynamicData(root, PX_DYNAMIC_NUMBER_ARRAY, "Position", "position");
  IMgjsonDynamicDataNumArr_v1 *array = position.views().numberArray;
  Call(array, &IMgjsonDynamicDataNumArr_v1::AddComponent, "x", 1u);
  Call(array, &IMgjsonDynamicDataNumArr_v1::AddComponent, "y", 1u);
  Call(array, &IMgjsonDynamicDataNumArr_v1::SetComponentLegalRange, 1u, -90.0, 90.0);
  Call(array, &IMgjsonDynamicDataNumArr_v1::SetPoint, 1u);
  Call(position.views().node, &IMgjsonDynamicData_v1::SetSampleSetId, "pos", 3u);
  Call(root, &IMgjsonGroup_v1::AddDynamicChild, position.views().node);
  const double first[] = {1.25, -3};
  const double second[] = {0.00001, 45.5};
  Call(array, &IMgjsonDynamicDataNumArr_v1::AddSampleAtUtc, base, 29u, 0u, 1u, first, 2u);
  Call(array, &IMgjsonDynamicDataNumArr_v1::AddSampleAtUtc, base, 29u, 1u, 1000u, second, 2u);
}

// A static number array marked as a point, with ranges given for one element.
void StaticArray(IMgjsonRoot_v1 *root) {
  PX_StaticDataNode views{};
  const PX_StaticValue none{};
  Call(root, &IMgjsonRoot_v1::CreateStaticData, static_cast<std::uint32_t>(PX_STATIC_NUMBER_ARRAY), "Origin", 6u,
       "origin", 6u, &none, &views);
  const StaticNode origin(views);
  IMgjsonStaticDataNumArr_v1 *array = views.numberArray;
  Call(array, &IMgjsonStaticDataNumArr_v1::AddElement, 12.5, "east", 4u);
  Call(array, &IMgjsonStaticDataNumArr_v1::AddElement, -7.0, "north", 5u);
  Call(array, &IMgjsonStaticDataNumArr_v1::SetElementOccurringRange, 0u, 0.0, 100.0);
  Call(array, &IMgjsonStaticDataNumArr_v1::SetPoint, 1u);
  Call(root, &IMgjsonGroup_v1::AddStaticChild, views.node);
  const StaticNode label = CreateStaticString(root, "Label", "label", "start");
  Call(label.views().string, &IMgjsonStaticDataString_v1::SetPaddedStringProperties, 32u, 2u, 0u);
  Call(root, &IMgjsonGroup_v1::AddStaticChild, label.views().node);
}

// An empty creator writes no "creator" pair.
void EmptyCreator(IMgjsonRoot_v1 *root) {
  Call(root, &IMgjsonRoot_v1::SetCreator, "", 0u);
  const StaticNode flag = CreateStaticBoolean(root, "Off", "off", false);
  Call(root, &IMgjsonGroup_v1::AddStaticChild, flag.views().node);
}

// Samples promised but none written: the promise and the dynamic data information are
// withdrawn, and the node without samples is left out of the outline.
void PromisedButEmpty(IMgjsonRoot_v1 *root) {
  Call(root, &IMgjsonRoot_v1::SetTimecodeInfo, 0u, 25u, 1u);
  Call(root, &IMgjsonRoot_v1::SetDynamicSamplesPresent, 1u);
  const DynamicNode idle = CreateDynamicData(root, PX_DYNAMIC_NUMBER, "Idle", "idle");
  Call(root, &IMgjsonGroup_v1::AddDynamicChild, idle.views().node);
  AddNumber(root, root, "kept", 1);
}

// Nothing to write: commit fails and the output is empty.
void RootWithoutChildren(IMgjsonRoot_v1 *root) {
  Ref<IMgjsonGroup_v1> group = CreateGroup(root, "Empty", "empty");
  Call(root, &IMgjsonGroup_v1::AddGroupChild, group.get());
}

struct Golden {
  const char *name;
  std::function<void(IMgjsonRoot_v1 *)> build;
  std::uint32_t commitStatus;
};

TEST(MgjsonWriterGolden, DocumentsAreWrittenByteForByte) {
  const Golden goldens[] = {
      {"static_only", StaticOnly, 0},
      {"timecode_numbers", TimecodeNumbers, 0},
      {"utc_with_offset", UtcWithOffset, 0},
      {"static_array_and_padded_string", StaticArray, 0},
      {"empty_creator", EmptyCreator, 0},
      {"promised_but_empty", PromisedButEmpty, 0},
      {"root_without_children", RootWithoutChildren, PX_PLUGIN_NO_CHILDREN},
  };
  const bool write = std::getenv("PALVEX_WRITE_GOLDEN") != nullptr;
  for (const Golden &golden : goldens) {
    ScratchFolder folder;
    std::string text;
    {
      WritingDocument document(folder);
      golden.build(document.root);
      EXPECT_EQ(document.Commit(), golden.commitStatus) << golden.name;
      text = document.Text();
    }
    if (write) std::ofstream(GoldenPath(golden.name), std::ios::binary) << text;
    EXPECT_EQ(text, ReadWholeFile(GoldenPath(golden.name))) << golden.name;
  }
}

}  // namespace
}  // namespace PX_PLUGIN
