// The sample set of one dynamic node: its samples read back from the node's storage in
// the order of adding and appended to the output's pending text one by one. This runs
// for every sample a converter writes, so each sample is appended in place, without
// texts of its own.
#include <new>

#include "plugin_model/writer_parts.hpp"
#include "plugin_model/writer_text.hpp"

namespace PX_PLUGIN {
namespace {

using namespace writer_text;
using ns_sensor::Msg;

// Room kept in the pending text beyond its bound: the largest sample (a value text of
// kLargestSampleValueText bytes with its time and keys) fits without a new allocation.
constexpr std::size_t kPendingSlack = 2 * (kLargestSampleValueText + 1);

constexpr std::string_view kSampleStart = "{\"time\":\"";
constexpr std::string_view kStringValueStart = "\",\"value\":\"";
constexpr std::string_view kStringValueEnd = "\"}";
constexpr std::string_view kArrayValueStart = "\",\"value\":[\"";
constexpr std::string_view kArrayValueEnd = "\"]}";
constexpr std::string_view kPaddedValueStart = "\",\"value\":{\"length\":\"";
constexpr std::string_view kPaddedStr = "\",\"str\":\"";
constexpr std::string_view kPaddedValueEnd = "\"}}";

// A number sample widened to the pattern: "+" when signed and not negative, zeros after
// the sign up to digitsInteger digits, a point and zeros up to digitsDecimal decimals.
// The same as WidenToPattern, appended in place.
void AppendWidened(std::string &out, std::string_view text, const NumberPattern &pattern) {
  const bool negative = !text.empty() && text.front() == '-';
  const std::string_view body = text.substr(negative ? 1 : 0);
  const std::size_t point = body.find('.');
  const std::size_t integer = point == std::string_view::npos ? body.size() : point;
  const std::size_t decimal = point == std::string_view::npos ? 0 : body.size() - point - 1;
  const auto wantInteger = static_cast<std::size_t>(std::max(pattern.digitsInteger, 0));
  const auto wantDecimal = static_cast<std::size_t>(std::max(pattern.digitsDecimal, 0));
  if (negative) {
    out += '-';
  } else if (pattern.isSigned) {
    out += '+';
  }
  if (wantInteger > integer) out.append(wantInteger - integer, '0');
  out += body;
  if (point == std::string_view::npos && wantDecimal != 0) out += '.';
  if (wantDecimal > decimal) out.append(wantDecimal - decimal, '0');
}

// The length of a stored (escaped) text before escaping: each escape is two bytes for one.
std::size_t UnescapedLength(std::string_view escaped) {
  std::size_t length = 0;
  for (std::size_t i = 0; i < escaped.size(); ++i, ++length) {
    if (escaped[i] == '\\') ++i;
  }
  return length;
}

void AppendPaddedLength(std::string &out, std::size_t length, std::uint32_t digits) {
  const std::string text = std::to_string(length);
  if (digits > text.size()) out.append(digits - text.size(), '0');
  out += text;
}

// How the value of each sample of a node is written.
struct ValueForm {
  std::uint32_t kind = PX_DYNAMIC_NUMBER;
  NumberPattern pattern;               // numbers
  std::uint32_t lengthDigits = 0;      // strings
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

void AppendSample(std::string &out, const ValueForm &form, std::string_view time, std::string_view value) {
  out += kSampleStart;
  out += time;
  switch (form.kind) {
    case PX_DYNAMIC_NUMBER:
      out += kStringValueStart;
      AppendWidened(out, value, form.pattern);
      out += kStringValueEnd;
      break;
    case PX_DYNAMIC_NUMBER_ARRAY:
      // The stored text joins the elements with ","; each becomes a string of its own.
      out += kArrayValueStart;
      for (const char c : value) {
        if (c == ',') {
          out += "\",\"";
        } else {
          out += c;
        }
      }
      out += kArrayValueEnd;
      break;
    default:
      out += kPaddedValueStart;
      AppendPaddedLength(out, UnescapedLength(value), form.lengthDigits);
      out += kPaddedStr;
      out += value;
      out += kPaddedValueEnd;
      break;
  }
}

}  // namespace

void AppendSampleSet(WriterOutput &output, IMgjsonDynamicData_I &node) {
  const ValueForm form = FormOf(node);
  std::string &out = output.Pending();
  out.reserve(kPendingTextBound + kPendingSlack);
  out += '{';
  StringPair(out, "sampleSetID", node.SampleSetId());
  out += ',';
  Key(out, "samples");
  out += '[';
  std::uint64_t count = 0;
  std::string_view time;
  std::string_view value;
  ISampleSink &samples = node.Samples();
  while (samples.Next(time, value)) {
    const std::size_t before = out.size();
    try {
      if (count != 0) out += ',';
      AppendSample(out, form, time, value);
    } catch (const std::bad_alloc &) {
      // Make room by writing what is pending, then try once more.
      out.resize(before);
      output.Flush();
      if (count != 0) out += ',';
      AppendSample(out, form, time, value);
    }
    ++count;
    output.FlushIfFull();
  }
  // The outline states the count; a storage that gives back another one cannot be trusted.
  if (count != node.SampleCount()) RaisePluginError(Msg::SampleSetUnreadable);
  out += "]}";
}

}  // namespace PX_PLUGIN
