#include "plugin_model/sample_record.hpp"

#include <cstring>

#include "plugin_model/plugin_status.hpp"

namespace PX_PLUGIN {
namespace {

constexpr unsigned kBitsPerByte = 8;
constexpr unsigned kByteMask = 0xFF;

}  // namespace

char *WriteRecord(char *out, std::string_view time, std::string_view value) {
  std::memcpy(out, time.data(), time.size());
  out += time.size();
  *out++ = static_cast<char>(value.size() & kByteMask);
  *out++ = static_cast<char>((value.size() >> kBitsPerByte) & kByteMask);
  std::memcpy(out, value.data(), value.size());
  return out + value.size();
}

bool RecordReader::Next(std::string_view &time, std::string_view &value) {
  if (rest_.empty()) return false;
  if (rest_.size() < timeLength_ + kRecordLengthBytes) RaisePluginError(ns_sensor::Msg::SampleSetUnreadable);
  const auto low = static_cast<unsigned char>(rest_[timeLength_]);
  const auto high = static_cast<unsigned char>(rest_[timeLength_ + 1]);
  const std::size_t valueLength = low | (std::size_t{high} << kBitsPerByte);
  const std::size_t recordLength = timeLength_ + kRecordLengthBytes + valueLength;
  if (rest_.size() < recordLength) RaisePluginError(ns_sensor::Msg::SampleSetUnreadable);
  time = rest_.substr(0, timeLength_);
  value = rest_.substr(timeLength_ + kRecordLengthBytes, valueLength);
  rest_.remove_prefix(recordLength);
  return true;
}

}  // namespace PX_PLUGIN
