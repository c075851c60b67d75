#include "timed_stream.hpp"

namespace palvex_plugins {

using namespace PX_PLUGIN;

TimeLine::TimeLine(IMgjsonRoot_v1 *root, std::uint32_t precision, bool gmt)
    : precision_(precision > kMaxFractionDigits ? kMaxFractionDigits : precision), gmt_(gmt) {
  Call(root, &IMgjsonRoot_v1::SetUtcInfo, precision_, gmt_ ? 1u : 0u);
}

std::string_view TimeLine::Text(const Instant &instant) {
  if (text_.empty() || instant != textInstant_) {
    text_ = FormatTime(instant, precision_, gmt_);
    textInstant_ = instant;
  }
  return text_;
}

TimedStream::TimedStream(IMgjsonRoot_v1 *root, std::uint32_t kind, std::string_view displayName,
                         std::string_view matchName, std::initializer_list<std::string_view> components)
    : node_(CreateDynamicData(root, kind, displayName, matchName)) {
  if (kind != PX_DYNAMIC_NUMBER_ARRAY) return;
  for (const std::string_view component : components) {
    Call(node_.views().numberArray, &IMgjsonDynamicDataNumArr_v1::AddComponent, component.data(),
         TextLength(component));
  }
}

void TimedStream::SetInterpolation(std::uint32_t interpolation) {
  Call(node_.views().node, &IMgjsonDynamicData_v1::SetInterpolation, interpolation);
}

void TimedStream::Step(const Instant &at) {
  if (samples_ > 0 && at < last_) ++backwardSteps_;
  last_ = at;
  ++samples_;
}

void TimedStream::Add(TimeLine &times, const Instant &at, double value) {
  const std::string_view base = times.Text(at);
  Call(node_.views().number, &IMgjsonDynamicDataNum_v1::AddSampleAtUtc, base.data(), TextLength(base), 0u, 1u,
       value);
  Step(at);
}

void TimedStream::AddText(TimeLine &times, const Instant &at, std::string_view text) {
  const std::string_view base = times.Text(at);
  Call(node_.views().string, &IMgjsonDynamicDataString_v1::AddSampleAtUtc, base.data(), TextLength(base), 0u, 1u,
       text.data(), TextLength(text));
  Step(at);
}

void TimedStream::AddArray(TimeLine &times, const Instant &at, const double *values, std::uint32_t count) {
  const std::string_view base = times.Text(at);
  Call(node_.views().numberArray, &IMgjsonDynamicDataNumArr_v1::AddSampleAtUtc, base.data(), TextLength(base), 0u,
       1u, values, count);
  Step(at);
}

void TimedStream::AttachTo(IMgjsonGroup_v1 *group) {
  if (samples_ == 0) return;
  Call(group, &IMgjsonGroup_v1::AddDynamicChild, node_.views().node);
}

}  // namespace palvex_plugins
