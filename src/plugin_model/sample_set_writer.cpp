// The sample set of one dynamic node: its samples read back from the node's storage in
// the order of adding and written into a block of text of their own. This runs for every
// sample a converter writes, so each sample is written through a pointer after one room
// check, and a full block goes to the file straight from where it was written.
#include <algorithm>
#include <charconv>
#include <cstring>
#include <memory>

#include "plugin_model/writer_parts.hpp"
#include "plugin_model/writer_text.hpp"

namespace PX_PLUGIN {
namespace {

using ns_sensor::Msg;

constexpr std::string_view kSampleStart = "{\"time\":\"";
constexpr std::string_view kStringValueStart = "\",\"value\":\"";
constexpr std::string_view kStringValueEnd = "\"}";
constexpr std::string_view kArrayValueStart = "\",\"value\":[\"";
constexpr std::string_view kArraySeparator = "\",\"";
constexpr std::string_view kArrayValueEnd = "\"]}";
constexpr std::string_view kPaddedValueStart = "\",\"value\":{\"length\":\"";
constexpr std::string_view kPaddedStr = "\",\"str\":\"";
constexpr std::string_view kPaddedValueEnd = "\"}}";

// Room in a block beyond the bound at which it is handed on: an ordinary sample (up to
// a value text of kLargestSampleValueText bytes, whose commas an array triples) always
// fits. Only a sample widened to an outlandish pattern is larger; it gets a block of its
// own.
constexpr std::size_t kBlockSlack = 4 * (kLargestSampleValueText + 1);
// Decimal digits of the longest length a string sample can state.
constexpr std::size_t kMostLengthDigits = 20;

// The length of a stored (escaped) text before escaping: each escape is two bytes for one.
std::size_t UnescapedLength(std::string_view escaped) {
  std::size_t length = 0;
  for (std::size_t i = 0; i < escaped.size(); ++i, ++length) {
    if (escaped[i] == '\\') ++i;
  }
  return length;
}

// How the value of each sample of a node is written.
struct ValueForm {
  std::uint32_t kind = PX_DYNAMIC_NUMBER;
  NumberPattern pattern;           // numbers
  std::uint32_t lengthDigits = 0;  // strings
};

ValueForm FormOf(IMgjsonDynamicData_I &node) {
  ValueForm form;
  form.kind = node.GetKind();
  switch (form.kind) {
    case PX_DYNAMIC_NUMBER: {
      const auto *number = dynamic_cast<const IMgjsonDynamicDataNum_I *>(&node);
      if (number == nullptr) RaisePluginError(Msg::NodeKindMismatch);
      form.pattern = number->Pattern();
      break;
    }
    case PX_DYNAMIC_STRING: {
      const auto *string = dynamic_cast<const IMgjsonDynamicDataString_I *>(&node);
      if (string == nullptr) RaisePluginError(Msg::NodeKindMismatch);
      form.lengthDigits = string->Properties().maxDigitsInLength;
      break;
    }
    case PX_DYNAMIC_NUMBER_ARRAY:
      if (dynamic_cast<const IMgjsonDynamicDataNumArr_I *>(&node) == nullptr) RaisePluginError(Msg::NodeKindMismatch);
      break;
    default:
      RaisePluginError(Msg::UnknownKind);
  }
  return form;
}

// The most bytes a sample takes (with the comma before it).
std::size_t SampleSizeBound(const ValueForm &form, std::string_view time, std::string_view value) {
  const std::size_t common = 1 + kSampleStart.size() + time.size();
  switch (form.kind) {
    case PX_DYNAMIC_NUMBER:
      return common + kStringValueStart.size() +
             WidenedSizeBound(value.size(), form.pattern.digitsInteger, form.pattern.digitsDecimal) +
             kStringValueEnd.size();
    case PX_DYNAMIC_NUMBER_ARRAY:
      return common + kArrayValueStart.size() + value.size() * kArraySeparator.size() + kArrayValueEnd.size();
    default:
      return common + kPaddedValueStart.size() + std::max<std::size_t>(form.lengthDigits, kMostLengthDigits) +
             kPaddedStr.size() + value.size() + kPaddedValueEnd.size();
  }
}

char *WriteLength(char *out, std::size_t length, std::uint32_t digits) {
  char text[kMostLengthDigits];
  const auto end = std::to_chars(text, text + sizeof text, length).ptr;
  const auto size = static_cast<std::size_t>(end - text);
  if (digits > size) out = std::fill_n(out, digits - size, '0');
  return std::copy(text, end, out);
}

char *WriteSample(char *out, const ValueForm &form, std::string_view time, std::string_view value) {
  out = Put(out, kSampleStart);
  out = Put(out, time);
  switch (form.kind) {
    case PX_DYNAMIC_NUMBER:
      out = Put(out, kStringValueStart);
      out = WriteWidened(out, value, form.pattern.isSigned, form.pattern.digitsInteger, form.pattern.digitsDecimal);
      return Put(out, kStringValueEnd);
    case PX_DYNAMIC_NUMBER_ARRAY:
      // The stored text joins the elements with ","; each becomes a string of its own.
      out = Put(out, kArrayValueStart);
      for (const char c : value) {
        if (c == ',') {
          out = Put(out, kArraySeparator);
        } else {
          *out++ = c;
        }
      }
      return Put(out, kArrayValueEnd);
    default:
      out = Put(out, kPaddedValueStart);
      out = WriteLength(out, UnescapedLength(value), form.lengthDigits);
      out = Put(out, kPaddedStr);
      out = Put(out, value);
      return Put(out, kPaddedValueEnd);
  }
}

}  // namespace

void AppendSampleSet(WriterOutput &output, IMgjsonDynamicData_I &node) {
  const ValueForm form = FormOf(node);
  OutputBlock block(output, kBlockSlack);
  std::string head = "{";
  writer_text::StringPair(head, "sampleSetID", node.SampleSetId());
  head += ',';
  writer_text::Key(head, "samples");
  head += '[';
  block.Piece(head.size(), [&](char *out) { return Put(out, head); });

  std::uint64_t count = 0;
  std::string_view time;
  std::string_view value;
  ISampleSink &samples = node.Samples();
  while (samples.Next(time, value)) {
    const std::size_t bound = SampleSizeBound(form, time, value);
    block.Piece(bound, [&](char *out) {
      if (count != 0) *out++ = ',';
      return WriteSample(out, form, time, value);
    });
    ++count;
  }
  // The outline states the count; a storage that gives back another one cannot be trusted.
  if (count != node.SampleCount()) RaisePluginError(Msg::SampleSetUnreadable);
  block.Piece(2, [](char *out) { return Put(out, "]}"); });
  block.HandOn();
}

}  // namespace PX_PLUGIN
