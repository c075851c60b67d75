#include "converters/json_document.hpp"

#include <charconv>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "converters/json_iterators.hpp"
#include "palvex/plugin_helpers.hpp"
#include "plugin_model/group_impl.hpp"

namespace ns_sensor {
namespace {

using namespace PX_PLUGIN;

constexpr std::string_view kTopArrayName = "dataOutline";
constexpr std::string_view kMatchNameStem = "matchName";
// A JSON number says nothing of its pattern or ranges: digit counts of -1, unsigned, and
// a range from the largest double down to its negative, as the delimited converters write.
constexpr std::uint32_t kUnsigned = 0;
constexpr std::int32_t kUnknownDigits = -1;
constexpr double kRangeMin = std::numeric_limits<double>::max();
constexpr double kRangeMax = -std::numeric_limits<double>::max();

class MatchNames {
 public:
  explicit MatchNames(std::uint32_t &counter) : counter_(counter) {}

  const std::string &Next() {
    char digits[16];
    const auto written = std::to_chars(digits, digits + sizeof digits, counter_++);
    name_.assign(kMatchNameStem).append(digits, written.ptr);
    return name_;
  }
  void Skip(std::uint64_t count) { counter_ = static_cast<std::uint32_t>(counter_ + count); }

 private:
  std::uint32_t &counter_;
  std::string name_;
};

// One container being walked: its elements and the group they go into (none for the
// top container, whose elements go into the root).
struct Level {
  std::shared_ptr<JsonIterator> elements;
  Ref<IMgjsonGroup_v1> group;
  bool addedSomething = false;
};

bool IsContainer(JsonKind kind) { return kind == JsonKind::Array || kind == JsonKind::Object; }

// A container that would make a group nested deeper than groups may nest. If anything
// convertible is inside, the group would have to be added and cannot be: the document
// cannot be converted. Otherwise its groups are made and dropped again, which here
// leaves only their match names used. Returns the number of those groups.
std::uint64_t GroupsOfTooDeepContainer(const JsonValue &container) {
  std::uint64_t groups = 0;
  std::vector<const JsonValue *> pending{&container};
  auto visit = [&](const JsonValue &value) {
    const JsonKind kind = KindOf(value);
    if (kind == JsonKind::Null) return;
    if (!IsContainer(kind)) Raise(Msg::ConversionFailure);
    if (kind == JsonKind::Array ? !value.Empty() : !value.ObjectEmpty()) pending.push_back(&value);
  };
  while (!pending.empty()) {
    const JsonValue &next = *pending.back();
    pending.pop_back();
    ++groups;
    if (next.IsArray()) {
      for (const JsonValue &element : next.GetArray()) visit(element);
    } else {
      for (const JsonMember &member : next.GetObject()) visit(member.value);
    }
  }
  return groups;
}

class OutlineBuilder {
 public:
  OutlineBuilder(IMgjsonRoot_v1 *root, std::uint32_t &matchNames) : root_(root), matchNames_(matchNames) {}

  bool Build(std::shared_ptr<JsonIterator> topElements) {
    levels_.push_back({std::move(topElements), {}, false});
    while (true) {
      Level &level = levels_.back();
      if (level.elements->HasMore()) {
        AddCurrentElement(level);
        continue;
      }
      if (levels_.size() == 1) return level.addedSomething;
      FinishGroup();
    }
  }

 private:
  IMgjsonGroup_v1 *Target(const Level &level) const {
    return level.group ? level.group.get() : static_cast<IMgjsonGroup_v1 *>(root_);
  }

  // Adds the element the level stands on and moves on, or opens a new level for it.
  void AddCurrentElement(Level &level) {
    const JsonIterator &element = *level.elements;
    const JsonKind kind = element.Kind();
    if (kind == JsonKind::Null) {
      level.elements->Advance();
      return;
    }
    if (IsContainer(kind)) {
      OpenGroup(level, kind);
      return;
    }
    const StaticNode node = MakeNode(element, kind);
    Call(Target(level), &IMgjsonGroup_v1::AddStaticChild, node.views().node);
    level.addedSomething = true;
    level.elements->Advance();
  }

  StaticNode MakeNode(const JsonIterator &element, JsonKind kind) {
    const std::string displayName = element.Name();
    const std::string &matchName = matchNames_.Next();
    if (kind == JsonKind::String) return CreateStaticString(root_, displayName, matchName, element.StringValue());
    if (kind == JsonKind::Boolean) return CreateStaticBoolean(root_, displayName, matchName, element.BooleanValue());
    StaticNode node = CreateStaticNumber(root_, displayName, matchName, element.NumberValue());
    Call(node.views().number, &IMgjsonStaticDataNum_v1::SetPattern, kUnsigned, kUnknownDigits, kUnknownDigits);
    Call(node.views().number, &IMgjsonStaticDataNum_v1::SetRanges, kRangeMin, kRangeMax, kRangeMin, kRangeMax);
    return node;
  }

  void OpenGroup(Level &level, JsonKind kind) {
    JsonIterator &element = *level.elements;
    if (element.Count() == 0) {
      element.Advance();  // an empty container makes no group and takes no name
      return;
    }
    // The group would sit at the depth of the new level: the root's frame is level 0.
    if (levels_.size() > kMaxGroupNesting) {
      matchNames_.Skip(GroupsOfTooDeepContainer(element.Current()));
      element.Advance();
      return;
    }
    Ref<IMgjsonGroup_v1> group = CreateGroup(root_, element.Name(), matchNames_.Next());
    std::shared_ptr<JsonIterator> children =
        kind == JsonKind::Object ? element.ObjectIterator() : element.ArrayIterator();
    levels_.push_back({std::move(children), std::move(group), false});  // `level` is stale now
  }

  // The group of the innermost level is complete: it joins its parent if it holds
  // something, else it is dropped; the parent moves on.
  void FinishGroup() {
    Level done = std::move(levels_.back());
    levels_.pop_back();
    Level &parent = levels_.back();
    if (done.addedSomething) {
      Call(Target(parent), &IMgjsonGroup_v1::AddGroupChild, done.group.get());
      parent.addedSomething = true;
    }
    parent.elements->Advance();
  }

  IMgjsonRoot_v1 *root_;
  MatchNames matchNames_;
  std::vector<Level> levels_;
};

}  // namespace

bool BuildJsonOutline(const JsonValue &top, JsonTopValue kind, IMgjsonRoot_v1 *root, std::uint32_t &matchNames) {
  const bool isArray = kind == JsonTopValue::Array;
  if (isArray ? !top.IsArray() : !top.IsObject()) Raise(Msg::ConversionFailure);
  std::shared_ptr<JsonIterator> elements;
  if (isArray) {
    elements = std::make_shared<JsonArrayIterator>(std::string(kTopArrayName), top);
  } else {
    elements = std::make_shared<JsonObjectIterator>(top);
  }
  return OutlineBuilder(root, matchNames).Build(std::move(elements));
}

}  // namespace ns_sensor
