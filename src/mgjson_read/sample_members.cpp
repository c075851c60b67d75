#include "mgjson_read/sample_members.hpp"

#include "mgjson_read/compact_json.hpp"

namespace ns_sensor {
namespace {

constexpr std::string_view kTimeFirst = "{\"time\":\"";
constexpr std::string_view kValueNext = "\",\"value\":";

}  // namespace

SampleMembers ReadSampleMembers(const char *at, const char *end, std::size_t timeLength) {
  SampleMembers sample;
  const std::size_t left = static_cast<std::size_t>(end - at);
  const std::size_t valueAt = kTimeFirst.size() + timeLength + kValueNext.size();
  if (left > valueAt && std::string_view(at, kTimeFirst.size()) == kTimeFirst &&
      std::string_view(at + kTimeFirst.size() + timeLength, kValueNext.size()) == kValueNext) {
    const char *valueEnd = compact_json::SkipValue(at + valueAt, end);
    const std::string_view time(at + kTimeFirst.size() - 1, timeLength + 2);
    // A quote inside the time would mean the bytes are not laid out as they seem.
    if (valueEnd != nullptr && valueEnd != end && *valueEnd == '}' &&
        time.substr(1, timeLength).find('"') == std::string_view::npos) {
      sample.time = time;
      sample.value = std::string_view(at + valueAt, static_cast<std::size_t>(valueEnd - at - valueAt));
      sample.after = valueEnd + 1;
      return sample;
    }
  }
  compact_json::MemberReader members(at, end);
  std::string_view key;
  std::string_view member;
  while (members.Next(key, member)) {
    if (key == "time") {
      sample.time = member;
    } else if (key == "value") {
      sample.value = member;
    }
  }
  if (members.failed()) return SampleMembers{};
  sample.after = members.after();
  return sample;
}

}  // namespace ns_sensor
