#include "converters/bvh_motion.hpp"

#include "api/px_exception.hpp"
#include "converters/bvh_rotation.hpp"

namespace ns_sensor {
namespace {

using namespace PX_PLUGIN;

constexpr std::size_t kValuesPerTriple = 3;

// The numbers of one frame line into values, which must receive exactly its size.
void ReadFrameValues(std::string_view line, std::vector<double> &values) {
  BvhWords words(line);
  std::size_t count = 0;
  for (std::string_view word = words.Next(); !word.empty(); word = words.Next()) {
    if (count == values.size() || !ReadNumber(word, values[count])) Raise(Msg::BvhMalformed);
    ++count;
  }
  if (count != values.size()) Raise(Msg::BvhMalformed);
}

}  // namespace

void AddMotionFrames(BvhLines &lines, const std::vector<ChannelTriple> &triples) {
  std::vector<double> values(triples.size() * kValuesPerTriple);
  std::uint64_t frame = 0;
  std::string_view line;
  while (lines.Next(line)) {
    // A blank line (the end of many files has one) carries no frame.
    if (FirstWord(line).empty()) continue;
    ReadFrameValues(line, values);
    for (std::size_t index = 0; index < triples.size(); ++index) {
      const ChannelTriple &triple = triples[index];
      const Triple fileValues = {values[index * kValuesPerTriple], values[index * kValuesPerTriple + 1],
                                 values[index * kValuesPerTriple + 2]};
      const Triple sample = triple.rotationOrder == kNoChannels ? ConvertPosition(fileValues)
                                                                : ConvertRotation(triple.rotationOrder, fileValues);
      Call(triple.node.views().numberArray, &IMgjsonDynamicDataNumArr_v1::AddSampleAtFrame, frame, sample.data(),
           static_cast<std::uint32_t>(sample.size()));
    }
    ++frame;
  }
}

}  // namespace ns_sensor
