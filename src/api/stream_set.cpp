#include "api/stream_set.hpp"

#include "api/px_exception.hpp"
#include "plugin_model/mgjson_stream.hpp"

namespace ns_sensor {

StreamSet::StreamSet() = default;

StreamSet::~StreamSet() = default;

IMgjsonStream *StreamSet::Add(const std::string &path, TemporaryFile convertedFile) {
  Entry entry{std::move(convertedFile), std::make_unique<MgjsonStreamImpl>(path)};
  IMgjsonStream *const handedOut = entry.stream.get();
  entries_.emplace(handedOut, std::move(entry));
  return handedOut;
}

void StreamSet::Release(IMgjsonStream **stream) {
  if (entries_.empty()) Raise(Msg::NoStreamCreated);
  const auto found = entries_.find(*stream);
  if (found == entries_.end()) Raise(Msg::InvalidStream);
  entries_.erase(found);
  *stream = nullptr;
}

}  // namespace ns_sensor
