// The data outline of a written file: groups, static nodes and dynamic nodes with their
// data types, keys in the order the file format's own files use.
#include <algorithm>

#include "plugin_model/writer_parts.hpp"
#include "plugin_model/writer_text.hpp"

namespace PX_PLUGIN {
namespace {

using namespace writer_text;
using ns_sensor::Msg;

// The view of its kind that a node must have (2016 otherwise).
template <class Kind, class Node>
const Kind &KindView(Node &node) {
  const auto *view = dynamic_cast<const Kind *>(&node);
  if (view == nullptr) RaisePluginError(Msg::NodeKindMismatch);
  return *view;
}

void AppendNames(std::string &out, std::string_view objectType, NameView names) {
  StringPair(out, "objectType", objectType);
  out += ',';
  StringPair(out, "matchName", names.matchName);
  out += ',';
  StringPair(out, "displayName", names.displayName);
}

// ---- Property objects ------------------------------------------------------------------------

void AppendPattern(std::string &out, const NumberPattern &pattern) {
  Key(out, "pattern");
  out += '{';
  BooleanPair(out, "isSigned", pattern.isSigned);
  out += ',';
  NumberPair(out, "digitsDecimal", pattern.digitsDecimal);
  out += ',';
  NumberPair(out, "digitsInteger", pattern.digitsInteger);
  out += '}';
}

void AppendMinMax(std::string &out, const MinMax &range) {
  out += '{';
  NumberPair(out, "min", range.min);
  out += ',';
  NumberPair(out, "max", range.max);
  out += '}';
}

void AppendRange(std::string &out, const NumberRange &range) {
  out += '{';
  Key(out, "occurring");
  AppendMinMax(out, range.occurring);
  out += ',';
  Key(out, "legal");
  AppendMinMax(out, range.legal);
  out += '}';
}

void AppendNumberStringProperties(std::string &out, const NumberPattern &pattern, const NumberRange &range) {
  Key(out, "numberStringProperties");
  out += '{';
  AppendPattern(out, pattern);
  out += ',';
  Key(out, "range");
  AppendRange(out, range);
  out += '}';
}

void AppendPaddedStringProperties(std::string &out, const PaddedStringProperties &properties) {
  Key(out, "paddedStringProperties");
  out += '{';
  NumberPair(out, "maxDigitsInStrLength", properties.maxDigitsInLength);
  out += ',';
  NumberPair(out, "maxLen", properties.maxLength);
  out += ',';
  BooleanPair(out, "eventMarkerB", properties.eventMarker);
  out += '}';
}

void AppendNumberArrayProperties(std::string &out, const NumberArrayProperties &properties) {
  Key(out, "numberArrayProperties");
  out += '{';
  AppendPattern(out, properties.pattern);
  out += ',';
  Key(out, "arrayRanges");
  out += '{';
  Key(out, "ranges");
  out += '[';
  for (std::size_t i = 0; i < properties.ranges.size(); ++i) {
    if (i != 0) out += ',';
    AppendRange(out, properties.ranges[i]);
  }
  out += "]},";
  NumberPair(out, "arraySize", static_cast<double>(properties.ranges.size()));
  out += ',';
  TextArrayPair(out, "arrayDisplayNames", properties.displayNames);
  // Written only when true, as files of this format do.
  if (properties.isPoint) {
    out += ',';
    BooleanPair(out, "isPoint", true);
  }
  out += '}';
}

// ---- Nodes -----------------------------------------------------------------------------------

// "dataType":{"type":"kind",
void OpenDataType(std::string &out, std::string_view kindWord) {
  Key(out, "dataType");
  out += '{';
  StringPair(out, "type", kindWord);
}

// Appends {static node}; a number array has elements (HasContent).
void AppendStaticNode(std::string &out, IMgjsonStaticData_v1 &node) {
  switch (node.GetKind()) {
    case PX_STATIC_NUMBER: {
      const auto &number = KindView<IMgjsonStaticDataNum_I>(node);
      out += '{';
      AppendNames(out, "dataStatic", number.Names());
      out += ',';
      OpenDataType(out, "number");
      out += ',';
      AppendNumberStringProperties(out, number.Pattern(), number.Range());
      out += "},";
      NumberPair(out, "value", number.Value());
      break;
    }
    case PX_STATIC_STRING: {
      const auto &string = KindView<IMgjsonStaticDataString_I>(node);
      out += '{';
      AppendNames(out, "dataStatic", string.Names());
      out += ',';
      OpenDataType(out, "string");
      out += ',';
      AppendPaddedStringProperties(out, string.Properties());
      out += "},";
      StringPair(out, "value", string.Value());
      break;
    }
    case PX_STATIC_NUMBER_ARRAY: {
      const auto &array = KindView<IMgjsonStaticDataNumArr_I>(node);
      out += '{';
      AppendNames(out, "dataStatic", array.Names());
      out += ',';
      OpenDataType(out, "numberArray");
      out += ',';
      AppendNumberArrayProperties(out, array.Properties());
      out += "},";
      Key(out, "value");
      out += '[';
      for (std::size_t i = 0; i < array.Values().size(); ++i) {
        if (i != 0) out += ',';
        out += JsonNumberText(array.Values()[i]);
      }
      out += ']';
      break;
    }
    case PX_STATIC_BOOLEAN: {
      const auto &boolean = KindView<IMgjsonStaticDataBool_I>(node);
      out += '{';
      AppendNames(out, "dataStatic", boolean.Names());
      out += ',';
      OpenDataType(out, "boolean");
      out += "},";
      BooleanPair(out, "value", boolean.Value());
      break;
    }
    default:
      RaisePluginError(Msg::UnknownKind);
  }
  out += '}';
}

std::string_view InterpolationWord(std::uint32_t interpolation) {
  switch (interpolation) {
    case PX_INTERPOLATION_LINEAR: return "linear";
    case PX_INTERPOLATION_HOLD: return "hold";
    default: RaisePluginError(Msg::UnknownKind);
  }
}

void AppendDynamicDataType(std::string &out, IMgjsonDynamicData_I &node) {
  switch (node.GetKind()) {
    case PX_DYNAMIC_NUMBER: {
      const auto &number = KindView<IMgjsonDynamicDataNum_I>(node);
      OpenDataType(out, "numberString");
      out += ',';
      AppendNumberStringProperties(out, number.Pattern(), number.Range());
      break;
    }
    case PX_DYNAMIC_STRING:
      OpenDataType(out, "paddedString");
      out += ',';
      AppendPaddedStringProperties(out, KindView<IMgjsonDynamicDataString_I>(node).Properties());
      break;
    case PX_DYNAMIC_NUMBER_ARRAY:
      OpenDataType(out, "numberStringArray");
      out += ',';
      AppendNumberArrayProperties(out, KindView<IMgjsonDynamicDataNumArr_I>(node).Properties());
      break;
    default:
      RaisePluginError(Msg::UnknownKind);
  }
  out += '}';
}

void AppendDynamicNode(std::string &out, IMgjsonDynamicData_I &node) {
  out += '{';
  AppendNames(out, "dataDynamic", node.Names());
  out += ',';
  StringPair(out, "sampleSetID", node.SampleSetId());
  out += ',';
  StringPair(out, "interpolation", InterpolationWord(node.Interpolation()));
  out += ',';
  BooleanPair(out, "hasExpectedFrequencyB", node.HasExpectedFrequency());
  out += ',';
  NumberPair(out, "sampleCount", static_cast<double>(node.SampleCount()));
  out += ',';
  if (const auto &duration = node.ExpectedMaxInterSampleDuration()) {
    StringPair(out, "expectedMaxInterSampleDuration", *duration);
    out += ',';
  }
  AppendDynamicDataType(out, node);
  out += '}';
}

// Whether a child has something to write. Asked before a child is written, so that the
// outline can go to the file while it is made, with nothing to take back.
bool HasContent(const GroupChild &child);

bool HasContent(const IMgjsonGroup_I &group) {
  const auto &children = group.Children();
  return std::any_of(children.begin(), children.end(), [](const GroupChild &c) { return HasContent(c); });
}

bool HasContent(const GroupChild &child) {
  if (child.StaticNode()) {
    // A number array without elements is the one static node the file cannot hold.
    if (child.StaticNode()->GetKind() != PX_STATIC_NUMBER_ARRAY) return true;
    return !KindView<IMgjsonStaticDataNumArr_I>(*child.StaticNode()).Values().empty();
  }
  if (child.DynamicNode()) return OutlineShowsDynamicNode(*child.DynamicNode());
  if (child.Group()) return HasContent(*child.Group());
  RaisePluginError(Msg::RequiredNodeMissing);
}

void AppendChild(WriterOutput &output, const GroupChild &child);

// Appends the children that have something to write, separated by commas, handing the
// text to the file whenever it has grown past the output's bound.
void AppendChildren(WriterOutput &output, const std::vector<GroupChild> &children) {
  bool first = true;
  for (const GroupChild &child : children) {
    if (!HasContent(child)) continue;
    if (!first) output.Pending() += ',';
    first = false;
    AppendChild(output, child);
    output.FlushIfFull();
  }
}

// Only groups with something to write get here: the file cannot hold an empty group.
void AppendGroup(WriterOutput &output, const IMgjsonGroup_I &group) {
  std::string &out = output.Pending();
  out += '{';
  AppendNames(out, "dataGroup", group.Names());
  out += ',';
  Key(out, "children");
  out += '[';
  AppendChildren(output, group.Children());
  output.Pending() += "]}";
}

void AppendChild(WriterOutput &output, const GroupChild &child) {
  if (child.StaticNode()) {
    AppendStaticNode(output.Pending(), *child.StaticNode());
  } else if (child.DynamicNode()) {
    AppendDynamicNode(output.Pending(), *child.DynamicNode());
  } else {
    AppendGroup(output, *child.Group());
  }
}

}  // namespace

void AppendDataOutline(WriterOutput &output, const IMgjsonRoot_I &root) {
  if (!HasContent(root)) RaisePluginError(Msg::RootWithoutChildren);
  Key(output.Pending(), "dataOutline");
  output.Pending() += '[';
  AppendChildren(output, root.Children());
  output.Pending() += ']';
}

}  // namespace PX_PLUGIN
