#include "converters/bvh_converter.hpp"

#include <memory>

#include "converters/bvh_document.hpp"
#include "converters/bvh_hierarchy.hpp"
#include "converters/bvh_motion.hpp"
#include "converters/bvh_timing.hpp"
#include "converters/converter_registry.hpp"
#include "converters/native_converter_session.hpp"

namespace ns_sensor {

extern const ConverterKind kBvhConverter;

namespace {

std::shared_ptr<PX_ConverterHandlerBase> MakeBvhConverter(const ConversionRequest &request) {
  return std::make_shared<BvhConverter>(request);
}

}  // namespace

const ConverterKind kBvhConverter = {IsBvhFile, MakeBvhConverter};

bool IsBvhFile(const ConversionRequest &request) { return HasBvhHeader(BvhInput(request.inputPath).Text()); }

BvhConverter::BvhConverter(ConversionRequest request)
    : PX_ConverterHandlerBase(request), work_(std::move(request)) {}

bool BvhConverter::Convert() {
  const BvhInput input(work_.inputPath);
  return ConvertBvhText(input.Text(), work_.outputPath, this);
}

bool ConvertBvhText(std::string_view text, const std::string &outputPath, void *context) {
  BvhLines lines(text);
  const std::shared_ptr<SkeletonNode> skeleton = ReadSkeleton(lines);
  const BvhFrameRate rate = ReadFrameRate(lines);

  NativeConverterSession session(context, outputPath);
  session.SetConverterIdentifier(kBvhConverterIdentifier);
  session.Fill([&](PX_PLUGIN::IMgjsonRoot_v1 *root) {
    PX_PLUGIN::Call(root, &PX_PLUGIN::IMgjsonRoot_v1::SetTimecodeInfo, rate.dropFrame ? 1u : 0u, rate.value,
                    rate.scale);
    const std::vector<ChannelTriple> triples = BuildSkeletonDocument(*skeleton, root);
    AddMotionFrames(lines, triples);
  });
  return session.Finish();
}

}  // namespace ns_sensor
