#include "file_access/data_path.hpp"

#include <span>

#include "api/px_exception.hpp"
#include "file_access/outline_node.hpp"
#include "mgjson_read/plain_digits.hpp"

namespace ns_sensor {
namespace {

constexpr char kOpeningBracket = '[';
constexpr char kClosingBracket = ']';
constexpr char kQuote = '"';
// Both bracket messages name the opening bracket, the missing closing one included.
constexpr std::string_view kBracketNamedInMessages = "[";

// The bracketed part between opening and closing (both inside text).
PX_PathItem ReadItem(std::string_view text, std::size_t opening, std::size_t closing) {
  const std::size_t content = opening + 1;
  if (text[content] == kQuote) {
    // The name runs to its own closing quote, past a "]" if need be, or to the end.
    const std::size_t nameStart = content + 1;
    const std::size_t nameEnd = text.find(kQuote, nameStart);
    const std::size_t nameLength =
        nameEnd == std::string_view::npos ? std::string_view::npos : nameEnd - nameStart;
    return {std::string(text.substr(nameStart, nameLength)), kNoIndex};
  }
  // The standard conversion, on the text between the brackets only.
  return {std::string(), StandardInteger(text.substr(content, closing - content))};
}

bool IsRootItem(const PX_PathItem &item) {
  return item.index == kNoIndex && (item.name.empty() || item.name == kRootMatchName);
}

std::size_t ElementCount(const JsonValue *list) {
  return list != nullptr && list->IsArray() ? list->Size() : 0;
}

// Position of the first element whose "matchName" is name, or -1.
std::int32_t FindByMatchName(const JsonValue &list, std::string_view name) {
  const std::size_t count = ElementCount(&list);
  for (std::size_t position = 0; position < count; ++position) {
    if (StringMember(list[static_cast<rapidjson::SizeType>(position)], kMatchNameMember) == name) {
      return static_cast<std::int32_t>(position);
    }
  }
  return kNoIndex;
}

// Walks items (the root item first) down the outline and returns the node selected last.
const JsonValue &Walk(const JsonValue &dataOutline, std::span<PX_PathItem> items) {
  if (items.empty() || !IsRootItem(items.front())) Raise(Msg::MissingRootInfo);
  items.front().name = kRootMatchName;

  const JsonValue *list = &dataOutline;
  const JsonValue *selected = &dataOutline;
  for (std::size_t at = 1; at < items.size(); ++at) {
    PX_PathItem &item = items[at];
    // Items after the root are numbered from 0 in messages.
    const auto itemNumber = static_cast<std::int64_t>(at - 1);
    const bool byPosition = item.index >= 0;
    if (!byPosition) {
      if (item.name.empty()) Raise(Msg::MissingBothIndexAndMatchName, itemNumber);
      item.index = FindByMatchName(*list, item.name);
      if (item.index < 0) Raise(Msg::MatchNameNotFound, Quoted(item.name));
    }
    const std::size_t count = ElementCount(list);
    if (static_cast<std::size_t>(item.index) >= count) {
      Raise(Msg::InvalidIndex, count, itemNumber, item.index);
    }
    selected = &(*list)[static_cast<rapidjson::SizeType>(item.index)];
    if (byPosition && !item.name.empty()) {
      const std::string_view found = StringMember(*selected, kMatchNameMember);
      if (found != item.name) {
        Raise(Msg::MatchNameNotMatching, Quoted(found), item.index, itemNumber, Quoted(item.name));
      }
    }
    list = ChildrenOf(*selected);
    if (list == nullptr && at + 1 < items.size()) {
      Raise(Msg::IntermediateNodeNotGroupNode, item.index);
    }
  }
  return *selected;
}

}  // namespace

PX_DataPath ParseDataPath(std::string_view text) {
  PX_DataPath path{PX_PathItem{std::string(kRootMatchName), kNoIndex}};
  if (text.empty()) Raise(Msg::EmptyDataPathString);

  std::size_t position = 0;
  while (position < text.size()) {
    const std::size_t opening = text.find(kOpeningBracket, position);
    if (opening == std::string_view::npos) {
      Raise(Msg::MissingOpeningBracket, Quoted(kBracketNamedInMessages), position);
    }
    const std::size_t closing = text.find(kClosingBracket, opening);
    if (closing == std::string_view::npos) {
      Raise(Msg::MissingClosingBracket, Quoted(kBracketNamedInMessages), opening);
    }
    path.push_back(ReadItem(text, opening, closing));
    position = closing + 1;
  }
  return path;
}

const JsonValue &ResolveDataPath(const JsonValue &dataOutline, PX_DataPath &path) {
  return Walk(dataOutline, path);
}

const JsonValue &GroupChildrenAt(const JsonValue &dataOutline, PX_DataPath &path) {
  const JsonValue &node = ResolveDataPath(dataOutline, path);
  if (&node == &dataOutline) {
    if (dataOutline.IsArray()) return dataOutline;
  } else if (const JsonValue *children = ChildrenOf(node)) {
    return *children;
  }
  Raise(Msg::LastNodeNotGroupNode);
}

PX_OutlineChild ChildAtPosition(const JsonValue &dataOutline, PX_DataPath &path) {
  if (path.empty()) Raise(Msg::MissingRootInfo);
  const JsonValue &parent = Walk(dataOutline, std::span(path).first(path.size() - 1));
  const JsonValue *children = &parent == &dataOutline ? &dataOutline : ChildrenOf(parent);
  const std::size_t count = ElementCount(children);
  // Taken as unsigned on purpose: a last item given by match name alone (-1) is out of range.
  const auto position = static_cast<std::uint32_t>(path.back().index);
  if (position >= count) {
    Raise(Msg::InvalidIndex, count, static_cast<std::int64_t>(path.size()), position);
  }
  const JsonValue &child = (*children)[position];
  return PX_OutlineChild{&child, NodeTypeOf(child), StringMember(child, kDisplayNameMember),
                         StringMember(child, kMatchNameMember)};
}

PX_OutlineChild DataNodeAt(const JsonValue &dataOutline, PX_DataPath &path,
                           PX_NodeType expected) {
  PX_OutlineChild child = ChildAtPosition(dataOutline, path);
  if (child.type != expected) {
    Raise(Msg::InvalidNodeType, NodeTypeName(expected), NodeTypeName(child.type));
  }
  return child;
}

}  // namespace ns_sensor
