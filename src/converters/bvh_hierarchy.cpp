#include "converters/bvh_hierarchy.hpp"

#include <optional>
#include <utility>

#include "api/px_exception.hpp"
#include "plugin_model/group_impl.hpp"

namespace ns_sensor {
namespace {

constexpr std::string_view kHierarchy = "HIERARCHY";
constexpr std::string_view kRoot = "ROOT";
constexpr std::string_view kJoint = "JOINT";
constexpr std::string_view kEnd = "End";
constexpr std::string_view kSite = "Site";
constexpr std::string_view kEndSiteSuffix = "End";
constexpr std::string_view kOffset = "OFFSET";
constexpr std::string_view kChannels = "CHANNELS";
constexpr std::string_view kOpenBrace = "{";
constexpr std::string_view kCloseBrace = "}";
constexpr std::string_view kPositionSuffix = "position";
constexpr std::string_view kRotationSuffix = "rotation";
constexpr std::string_view kRotationOnly = "3";
constexpr std::string_view kPositionAndRotation = "6";

// Every joint becomes a group of the document, so the skeleton may nest no deeper than
// groups may; refusing here also bounds the reader's own stack.
constexpr std::size_t kMaxSkeletonDepth = PX_PLUGIN::kMaxGroupNesting;

// The axis of a channel name such as "Zrotation"; none for any other word.
std::optional<std::uint8_t> ChannelAxis(std::string_view word, std::string_view suffix) {
  if (word.size() != suffix.size() + 1 || word.substr(1) != suffix) return std::nullopt;
  if (word[0] < 'X' || word[0] > 'Z') return std::nullopt;
  return static_cast<std::uint8_t>(word[0] - 'X');
}

std::int8_t OrderOfAxes(const std::array<std::optional<std::uint8_t>, 3> &axes) {
  if (!axes[0] || !axes[1] || !axes[2]) return kNoChannels;
  for (std::size_t code = 0; code < kChannelAxes.size(); ++code) {
    const auto &order = kChannelAxes[code];
    if (order[0] == *axes[0] && order[1] == *axes[1] && order[2] == *axes[2]) return static_cast<std::int8_t>(code);
  }
  return kNoChannels;
}

struct OpenNode {
  std::shared_ptr<SkeletonNode> node;
  bool endSite;
};

class SkeletonReader {
 public:
  explicit SkeletonReader(BvhLines &lines) : lines_(lines) {}

  std::shared_ptr<SkeletonNode> Read() {
    std::string_view line;
    if (!lines_.Next(line) || FirstWord(line) != kHierarchy) Raise(Msg::BvhNotHierarchy);
    if (!lines_.Next(line)) Raise(Msg::BvhNotHierarchy);
    BvhWords words(line);
    if (words.Next() != kRoot) Raise(Msg::BvhNotHierarchy);
    auto root = std::make_shared<SkeletonNode>();
    root->name = NameWord(words);
    Open(root, false);
    while (!open_.empty()) ReadNodeLine();
    return root;
  }

 private:
  // A joint without a name could not be told apart from its siblings.
  static std::string NameWord(BvhWords &words) {
    const std::string_view name = words.Next();
    if (name.empty()) Raise(Msg::BvhMalformed);
    return std::string(name);
  }

  void Open(std::shared_ptr<SkeletonNode> node, bool endSite) {
    if (open_.size() == kMaxSkeletonDepth) Raise(Msg::BvhTooDeep, kMaxSkeletonDepth);
    std::string_view line;
    if (!lines_.Next(line) || line.find(kOpenBrace) == std::string_view::npos) Raise(Msg::BvhMalformed);
    open_.push_back({std::move(node), endSite});
  }

  void OpenChild(std::string name, bool endSite) {
    SkeletonNode &parent = *open_.back().node;
    auto child = std::make_shared<SkeletonNode>();
    child->name = std::move(name);
    child->parentName = parent.name;
    parent.children.push_back(child);
    Open(std::move(child), endSite);
  }

  void ReadNodeLine() {
    std::string_view line;
    if (!lines_.Next(line)) Raise(Msg::BvhMalformed);  // the file ends inside a joint
    BvhWords words(line);
    const std::string_view keyword = words.Next();
    OpenNode &current = open_.back();
    if (keyword == kOffset) {
      ReadOffset(words, *current.node);
    } else if (keyword == kChannels && !current.endSite) {
      ReadChannels(words, *current.node);
    } else if (keyword == kJoint && !current.endSite) {
      OpenChild(NameWord(words), false);
    } else if (keyword == kEnd) {
      if (words.Next() != kSite) Raise(Msg::BvhMalformed);
      OpenChild(current.node->name + std::string(kEndSiteSuffix), true);
    } else if (keyword == kCloseBrace) {
      open_.pop_back();
    }
    // Any other line inside a joint is not ours to judge.
  }

  static void ReadOffset(BvhWords &words, SkeletonNode &node) {
    for (double &value : node.offset) {
      if (!ReadNumber(words.Next(), value)) Raise(Msg::BvhMalformed);
    }
    if (!words.Next().empty()) Raise(Msg::BvhMalformed);
  }

  static void ReadChannels(BvhWords &words, SkeletonNode &node) {
    const std::string_view count = words.Next();
    if (count == kPositionAndRotation) {
      node.positionOrder = FindChannelOrder(words.Rest(), kPositionSuffix);
    } else if (count != kRotationOnly) {
      Raise(Msg::BvhMalformed);
    }
    node.rotationOrder = FindChannelOrder(words.Rest(), kRotationSuffix);
  }

  BvhLines &lines_;
  std::vector<OpenNode> open_;  // the joints whose closing brace is still to come, innermost last
};

}  // namespace

bool HasBvhHeader(std::string_view text) {
  BvhLines lines(text);
  std::string_view line;
  return lines.Next(line) && FirstWord(line) == kHierarchy && lines.Next(line) && FirstWord(line) == kRoot;
}

std::shared_ptr<SkeletonNode> ReadSkeleton(BvhLines &lines) { return SkeletonReader(lines).Read(); }

std::int8_t FindChannelOrder(std::string_view words, std::string_view suffix) {
  // The lowest code found anywhere on the line wins, wherever it stands.
  std::int8_t found = kNoChannels;
  std::array<std::optional<std::uint8_t>, 3> window;
  BvhWords reader(words);
  for (std::string_view word = reader.Next(); !word.empty(); word = reader.Next()) {
    window = {window[1], window[2], ChannelAxis(word, suffix)};
    const std::int8_t code = OrderOfAxes(window);
    if (code != kNoChannels && (found == kNoChannels || code < found)) found = code;
  }
  return found;
}

}  // namespace ns_sensor
