// The data outline of a written file: groups, static nodes and dynamic nodes with their
// data types, keys in the order the file format's own files use. A large document has
// millions of nodes, so each node is written through a pointer into an output block after
// one room check for its whole text (its bound), the way sample sets are written.
#include <algorithm>
#include <cstring>

#include "plugin_model/writer_parts.hpp"
#include "plugin_model/number_text.hpp"

namespace PX_PLUGIN {
namespace {

using ns_sensor::Msg;

// Room for every fixed text of one node, one group's opening or one array element
// (the longest, a static number node's, is 249 bytes), with margin.
constexpr std::size_t kFrameBytes = 1024;
// Numbers in one node besides its array elements: a pattern's two, a range's four, and a
// value or count.
constexpr std::size_t kNumbersPerNode = 8;
constexpr std::size_t kNumbersPerRange = 4;
// A block's room beyond its bound: any node without long texts or arrays fits.
constexpr std::size_t kOutlineSlack = 0x10000;

constexpr std::size_t kNumberBytes = kLongestJsonNumberText;

// The view of its kind that a dynamic node must have (2016 otherwise).
template <class Kind>
const Kind &KindView(IMgjsonDynamicData_I &node) {
  const auto *view = dynamic_cast<const Kind *>(&node);
  if (view == nullptr) RaisePluginError(Msg::NodeKindMismatch);
  return *view;
}

char *PutBoolean(char *out, bool value) { return Put(out, value ? "true" : "false"); }

// "text"
char *PutQuoted(char *out, std::string_view text) {
  *out++ = '"';
  out = Put(out, text);
  *out++ = '"';
  return out;
}

std::size_t NamesBytes(NameView names) { return names.matchName.size() + names.displayName.size(); }

// {"objectType":"...","matchName":"...","displayName":"..."
char *PutNames(char *out, std::string_view objectType, NameView names) {
  out = Put(out, "{\"objectType\":\"");
  out = Put(out, objectType);
  out = Put(out, "\",\"matchName\":\"");
  out = Put(out, names.matchName);
  out = Put(out, "\",\"displayName\":\"");
  out = Put(out, names.displayName);
  *out++ = '"';
  return out;
}

// ---- Property objects ------------------------------------------------------------------------

char *PutPattern(char *out, const NumberPattern &pattern) {
  out = Put(out, "\"pattern\":{\"isSigned\":");
  out = PutBoolean(out, pattern.isSigned);
  out = Put(out, ",\"digitsDecimal\":");
  out = WriteJsonNumber(out, pattern.digitsDecimal);
  out = Put(out, ",\"digitsInteger\":");
  out = WriteJsonNumber(out, pattern.digitsInteger);
  *out++ = '}';
  return out;
}

char *PutRange(char *out, const NumberRange &range) {
  out = Put(out, "{\"occurring\":{\"min\":");
  out = WriteJsonNumber(out, range.occurring.min);
  out = Put(out, ",\"max\":");
  out = WriteJsonNumber(out, range.occurring.max);
  out = Put(out, "},\"legal\":{\"min\":");
  out = WriteJsonNumber(out, range.legal.min);
  out = Put(out, ",\"max\":");
  out = WriteJsonNumber(out, range.legal.max);
  return Put(out, "}}");
}

char *PutNumberStringProperties(char *out, const NumberPattern &pattern, const NumberRange &range) {
  out = Put(out, "\"numberStringProperties\":{");
  out = PutPattern(out, pattern);
  out = Put(out, ",\"range\":");
  out = PutRange(out, range);
  *out++ = '}';
  return out;
}

char *PutPaddedStringProperties(char *out, const PaddedStringProperties &properties) {
  out = Put(out, "\"paddedStringProperties\":{\"maxDigitsInStrLength\":");
  out = WriteJsonNumber(out, properties.maxDigitsInLength);
  out = Put(out, ",\"maxLen\":");
  out = WriteJsonNumber(out, properties.maxLength);
  out = Put(out, ",\"eventMarkerB\":");
  out = PutBoolean(out, properties.eventMarker);
  *out++ = '}';
  return out;
}

// "numberArrayProperties":{...}, one piece per element: an array may be of any length.
void PutNumberArrayProperties(OutputBlock &block, const NumberArrayProperties &properties) {
  block.Piece(kFrameBytes + kNumbersPerNode * kNumberBytes, [&](char *out) {
    out = Put(out, "\"numberArrayProperties\":{");
    out = PutPattern(out, properties.pattern);
    return Put(out, ",\"arrayRanges\":{\"ranges\":[");
  });
  for (std::size_t i = 0; i < properties.ranges.size(); ++i) {
    block.Piece(kFrameBytes + kNumbersPerRange * kNumberBytes, [&](char *out) {
      if (i != 0) *out++ = ',';
      return PutRange(out, properties.ranges[i]);
    });
  }
  block.Piece(kFrameBytes + kNumberBytes, [&](char *out) {
    out = Put(out, "]},\"arraySize\":");
    out = WriteJsonNumber(out, static_cast<double>(properties.ranges.size()));
    return Put(out, ",\"arrayDisplayNames\":[");
  });
  for (std::size_t i = 0; i < properties.displayNames.size(); ++i) {
    const std::string &name = properties.displayNames[i];
    block.Piece(kFrameBytes + name.size(), [&](char *out) {
      if (i != 0) *out++ = ',';
      return PutQuoted(out, name);
    });
  }
  block.Piece(kFrameBytes, [&](char *out) {
    *out++ = ']';
    // Written only when true, as files of this format do.
    if (properties.isPoint) out = Put(out, ",\"isPoint\":true");
    *out++ = '}';
    return out;
  });
}

// ---- Nodes -----------------------------------------------------------------------------------

// ,"dataType":{"type":"kind"
char *OpenDataType(char *out, std::string_view kindWord) {
  out = Put(out, ",\"dataType\":{\"type\":\"");
  out = Put(out, kindWord);
  *out++ = '"';
  return out;
}

std::size_t NodeBound(NameView names, std::size_t textBytes) {
  return kFrameBytes + NamesBytes(names) + textBytes + kNumbersPerNode * kNumberBytes;
}

void PutStaticNumber(OutputBlock &block, const IMgjsonStaticDataNum_I &number) {
  const NameView names = number.Names();
  block.Piece(NodeBound(names, 0), [&](char *out) {
    out = PutNames(out, "dataStatic", names);
    out = Put(OpenDataType(out, "number"), ",");
    out = PutNumberStringProperties(out, number.Pattern(), number.Range());
    out = Put(out, "},\"value\":");
    out = WriteJsonNumber(out, number.Value());
    *out++ = '}';
    return out;
  });
}

void PutStaticString(OutputBlock &block, const IMgjsonStaticDataString_I &string) {
  const NameView names = string.Names();
  const std::string &value = string.Value();
  block.Piece(NodeBound(names, value.size()), [&](char *out) {
    out = PutNames(out, "dataStatic", names);
    out = Put(OpenDataType(out, "string"), ",");
    out = PutPaddedStringProperties(out, string.Properties());
    out = Put(out, "},\"value\":");
    out = PutQuoted(out, value);
    *out++ = '}';
    return out;
  });
}

void PutStaticBoolean(OutputBlock &block, const IMgjsonStaticDataBool_I &boolean) {
  const NameView names = boolean.Names();
  block.Piece(NodeBound(names, 0), [&](char *out) {
    out = PutNames(out, "dataStatic", names);
    out = OpenDataType(out, "boolean");
    out = Put(out, "},\"value\":");
    out = PutBoolean(out, boolean.Value());
    *out++ = '}';
    return out;
  });
}

void PutStaticNumberArray(OutputBlock &block, const IMgjsonStaticDataNumArr_I &array) {
  const NameView names = array.Names();
  block.Piece(NodeBound(names, 0), [&](char *out) {
    out = PutNames(out, "dataStatic", names);
    return Put(OpenDataType(out, "numberArray"), ",");
  });
  PutNumberArrayProperties(block, array.Properties());
  block.Piece(kFrameBytes, [&](char *out) { return Put(out, "},\"value\":["); });
  const std::vector<double> &values = array.Values();
  for (std::size_t i = 0; i < values.size(); ++i) {
    block.Piece(1 + kNumberBytes, [&](char *out) {
      if (i != 0) *out++ = ',';
      return WriteJsonNumber(out, values[i]);
    });
  }
  block.Piece(2, [&](char *out) { return Put(out, "]}"); });
}

std::string_view InterpolationWord(std::uint32_t interpolation) {
  switch (interpolation) {
    case PX_INTERPOLATION_LINEAR: return "linear";
    case PX_INTERPOLATION_HOLD: return "hold";
    default: RaisePluginError(Msg::UnknownKind);
  }
}

// "dataType":{...} of a dynamic node, then the node's closing brace.
void PutDynamicDataType(OutputBlock &block, IMgjsonDynamicData_I &node) {
  switch (node.GetKind()) {
    case PX_DYNAMIC_NUMBER: {
      const auto &number = KindView<IMgjsonDynamicDataNum_I>(node);
      block.Piece(kFrameBytes + kNumbersPerNode * kNumberBytes, [&](char *out) {
        out = Put(OpenDataType(out, "numberString"), ",");
        out = PutNumberStringProperties(out, number.Pattern(), number.Range());
        return Put(out, "}}");
      });
      break;
    }
    case PX_DYNAMIC_STRING: {
      const auto &string = KindView<IMgjsonDynamicDataString_I>(node);
      block.Piece(kFrameBytes + kNumbersPerNode * kNumberBytes, [&](char *out) {
        out = Put(OpenDataType(out, "paddedString"), ",");
        out = PutPaddedStringProperties(out, string.Properties());
        return Put(out, "}}");
      });
      break;
    }
    case PX_DYNAMIC_NUMBER_ARRAY: {
      const auto &array = KindView<IMgjsonDynamicDataNumArr_I>(node);
      block.Piece(kFrameBytes, [&](char *out) { return Put(OpenDataType(out, "numberStringArray"), ","); });
      PutNumberArrayProperties(block, array.Properties());
      block.Piece(2, [&](char *out) { return Put(out, "}}"); });
      break;
    }
    default:
      RaisePluginError(Msg::UnknownKind);
  }
}

void PutDynamicNode(OutputBlock &block, IMgjsonDynamicData_I &node) {
  const NameView names = node.Names();
  const std::string &id = node.SampleSetId();
  const std::string_view interpolation = InterpolationWord(node.Interpolation());
  const auto &duration = node.ExpectedMaxInterSampleDuration();
  const std::size_t textBytes = id.size() + (duration ? duration->size() : 0);
  block.Piece(NodeBound(names, textBytes), [&](char *out) {
    out = PutNames(out, "dataDynamic", names);
    out = Put(out, ",\"sampleSetID\":");
    out = PutQuoted(out, id);
    out = Put(out, ",\"interpolation\":");
    out = PutQuoted(out, interpolation);
    out = Put(out, ",\"hasExpectedFrequencyB\":");
    out = PutBoolean(out, node.HasExpectedFrequency());
    out = Put(out, ",\"sampleCount\":");
    out = WriteJsonNumber(out, static_cast<double>(node.SampleCount()));
    if (duration) {
      out = Put(out, ",\"expectedMaxInterSampleDuration\":");
      out = PutQuoted(out, *duration);
    }
    return out;
  });
  PutDynamicDataType(block, node);
}

// Whether a child has something to write. Asked before a child is written, so that the
// outline can go to the file while it is made, with nothing to take back.
bool HasContent(const GroupChild &child);

bool HasContent(const IMgjsonGroup_I &group) {
  const auto &children = group.Children();
  return std::any_of(children.begin(), children.end(), [](const GroupChild &c) { return HasContent(c); });
}

bool HasContent(const GroupChild &child) {
  switch (child.ChildKind()) {
    // A number array without elements is the one static node the file cannot hold.
    case GroupChild::Kind::StaticNumberArray: return !child.StaticNumberArray()->Values().empty();
    case GroupChild::Kind::Dynamic: return OutlineShowsDynamicNode(*child.DynamicNode());
    case GroupChild::Kind::Group: return HasContent(*child.Group());
    default: return true;
  }
}

void PutChild(OutputBlock &block, const GroupChild &child);

// The children that have something to write, separated by commas.
void PutChildren(OutputBlock &block, const std::vector<GroupChild> &children) {
  bool first = true;
  for (const GroupChild &child : children) {
    if (!HasContent(child)) continue;
    if (!first) block.Piece(1, [](char *out) { return Put(out, ","); });
    first = false;
    PutChild(block, child);
  }
}

// Only groups with something to write get here: the file cannot hold an empty group.
void PutGroup(OutputBlock &block, const IMgjsonGroup_I &group) {
  const NameView names = group.Names();
  block.Piece(kFrameBytes + NamesBytes(names), [&](char *out) {
    out = PutNames(out, "dataGroup", names);
    return Put(out, ",\"children\":[");
  });
  PutChildren(block, group.Children());
  block.Piece(2, [](char *out) { return Put(out, "]}"); });
}

void PutChild(OutputBlock &block, const GroupChild &child) {
  switch (child.ChildKind()) {
    case GroupChild::Kind::StaticNumber: return PutStaticNumber(block, *child.StaticNumber());
    case GroupChild::Kind::StaticString: return PutStaticString(block, *child.StaticString());
    case GroupChild::Kind::StaticBoolean: return PutStaticBoolean(block, *child.StaticBoolean());
    case GroupChild::Kind::StaticNumberArray: return PutStaticNumberArray(block, *child.StaticNumberArray());
    case GroupChild::Kind::Dynamic: return PutDynamicNode(block, *child.DynamicNode());
    case GroupChild::Kind::Group: return PutGroup(block, *child.Group());
  }
  RaisePluginError(Msg::RequiredNodeMissing);
}

}  // namespace

void AppendDataOutline(WriterOutput &output, const IMgjsonRoot_I &root) {
  if (!HasContent(root)) RaisePluginError(Msg::RootWithoutChildren);
  OutputBlock block(output, kOutlineSlack);
  block.Piece(kFrameBytes, [](char *out) { return Put(out, "\"dataOutline\":["); });
  PutChildren(block, root.Children());
  block.Piece(1, [](char *out) { return Put(out, "]"); });
  // What follows the outline joins its last text on its way to the file.
  block.HandOnToPending();
}

}  // namespace PX_PLUGIN
