#include "converters/bvh_document.hpp"

#include <string>
#include <string_view>
#include <unordered_set>

namespace ns_sensor {
namespace {

using namespace PX_PLUGIN;

constexpr std::string_view kMatchNamePrefix = "mn";
constexpr std::string_view kOffsetWord = "OFFSET";
constexpr std::string_view kPositionWord = "POSITION";
constexpr std::string_view kRotationWord = "ROTATION";
constexpr std::array<std::string_view, 3> kAxisPrefixes = {"X_", "Y_", "Z_"};
// Rotations are converted to angles about X, Y and Z whatever the file's order.
constexpr std::int8_t kRotationComponentOrder = 0;
constexpr unsigned kFirstCounter = 2;

bool IsAsciiAlphanumeric(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9'); }

// The match names of the whole document, so that no two nodes share one.
class MatchNames {
 public:
  // The stem of a node's match names (its group's match name): "mn", the letters and digits
  // of name, and a counter if needed so that stem + each of suffixes is new too.
  std::string Claim(std::string_view name, const std::vector<std::string_view> &suffixes) {
    std::string base(kMatchNamePrefix);
    for (char c : name) {
      if (IsAsciiAlphanumeric(c)) base.push_back(c);
    }
    std::string stem = base;
    for (unsigned counter = kFirstCounter; !AllFree(stem, suffixes); ++counter) stem = base + std::to_string(counter);
    taken_.insert(stem);
    for (std::string_view suffix : suffixes) taken_.insert(stem + std::string(suffix));
    return stem;
  }

 private:
  bool AllFree(const std::string &stem, const std::vector<std::string_view> &suffixes) const {
    if (taken_.contains(stem)) return false;
    for (std::string_view suffix : suffixes) {
      if (taken_.contains(stem + std::string(suffix))) return false;
    }
    return true;
  }

  std::unordered_set<std::string> taken_;
};

std::string Joined(std::string_view a, std::string_view b) { return std::string(a) + std::string(b); }

class DocumentBuilder {
 public:
  explicit DocumentBuilder(IMgjsonRoot_v1 *root) : root_(root) {}

  Ref<IMgjsonGroup_v1> JointGroup(const SkeletonNode &joint) {
    std::vector<std::string_view> suffixes = {kOffsetWord};
    if (joint.positionOrder != kNoChannels) suffixes.push_back(kPositionWord);
    if (joint.rotationOrder != kNoChannels) suffixes.push_back(kRotationWord);
    const std::string stem = matchNames_.Claim(joint.name, suffixes);

    Ref<IMgjsonGroup_v1> group = CreateGroup(root_, joint.name, stem);
    AddOffset(joint, stem, group.get());
    if (joint.positionOrder != kNoChannels) {
      AddChannels(joint, stem, kPositionWord, joint.positionOrder, kNoChannels, group.get());
    }
    if (joint.rotationOrder != kNoChannels) {
      AddChannels(joint, stem, kRotationWord, kRotationComponentOrder, joint.rotationOrder, group.get());
    }
    for (const auto &child : joint.children) {
      Ref<IMgjsonGroup_v1> childGroup = JointGroup(*child);
      Call(group.get(), &IMgjsonGroup_v1::AddGroupChild, childGroup.get());
    }
    return group;
  }

  std::vector<ChannelTriple> TakeTriples() { return std::move(triples_); }

 private:
  void AddOffset(const SkeletonNode &joint, const std::string &stem, IMgjsonGroup_v1 *group) {
    const StaticNode offset = CreateStaticData(root_, PX_STATIC_NUMBER_ARRAY, Joined(joint.name, kOffsetWord),
                                               Joined(stem, kOffsetWord), nullptr);
    for (std::size_t axis = 0; axis < kAxisPrefixes.size(); ++axis) {
      const std::string element = Joined(kAxisPrefixes[axis], kOffsetWord);
      Call(offset.views().numberArray, &IMgjsonStaticDataNumArr_v1::AddElement, joint.offset[axis], element.data(),
           TextLength(element));
    }
    Call(group, &IMgjsonGroup_v1::AddStaticChild, offset.views().node);
  }

  // A dynamic node whose components are named after the axes of componentOrder, and its
  // channel triple.
  void AddChannels(const SkeletonNode &joint, const std::string &stem, std::string_view word,
                   std::int8_t componentOrder, std::int8_t rotationOrder, IMgjsonGroup_v1 *group) {
    DynamicNode node = CreateDynamicData(root_, PX_DYNAMIC_NUMBER_ARRAY, Joined(joint.name, word), Joined(stem, word));
    for (std::uint8_t axis : kChannelAxes[static_cast<std::size_t>(componentOrder)]) {
      const std::string component = Joined(kAxisPrefixes[axis], word);
      Call(node.views().numberArray, &IMgjsonDynamicDataNumArr_v1::AddComponent, component.data(),
           TextLength(component));
    }
    Call(group, &IMgjsonGroup_v1::AddDynamicChild, node.views().node);
    triples_.push_back({std::move(node), rotationOrder});
  }

  IMgjsonRoot_v1 *root_;
  MatchNames matchNames_;
  std::vector<ChannelTriple> triples_;
};

}  // namespace

std::vector<ChannelTriple> BuildSkeletonDocument(const SkeletonNode &skeleton, IMgjsonRoot_v1 *root) {
  DocumentBuilder builder(root);
  Ref<IMgjsonGroup_v1> group = builder.JointGroup(skeleton);
  Call(root, &IMgjsonGroup_v1::AddGroupChild, group.get());
  return builder.TakeTriples();
}

}  // namespace ns_sensor
