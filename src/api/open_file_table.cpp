#include "api/open_file_table.hpp"

#include <algorithm>
#include <limits>
#include <mutex>

#include "api/manager_lifetime.hpp"
#include "api/px_exception.hpp"

namespace ns_sensor {

OpenFileTable::~OpenFileTable() = default;

ISensorFileHandler *OpenFileTable::Open(const std::string &path, const HandlerFactory &create,
                                        const OpenHandlerUse &whenOpen) {
  const std::lock_guard lock(GlobalMutex());
  const auto found = entries_.find(path);
  if (found != entries_.end()) {
    Entry &entry = found->second;
    if (entry.openCount == std::numeric_limits<std::uint16_t>::max()) Raise(Msg::MemoryNotAvailable);
    if (whenOpen) whenOpen(*entry.handler);
    ++entry.openCount;
    return entry.handler.get();
  }
  std::unique_ptr<SensorFileHandlerImpl> handler = create();
  ISensorFileHandler *const opened = handler.get();
  entries_.emplace(path, Entry{std::move(handler), 1});
  return opened;
}

void OpenFileTable::Close(ISensorFileHandler **handler) {
  const std::lock_guard lock(GlobalMutex());
  if (entries_.empty()) Raise(Msg::NoFileOpened);
  const auto found = std::find_if(entries_.begin(), entries_.end(), [handler](const auto &entry) {
    return static_cast<ISensorFileHandler *>(entry.second.handler.get()) == *handler;
  });
  if (found == entries_.end()) Raise(Msg::InvalidFileHandler);
  if (--found->second.openCount > 0) return;
  entries_.erase(found);
  *handler = nullptr;
}

std::map<std::string, std::uint16_t> OpenFileTable::OpenCounts() const {
  const std::lock_guard lock(GlobalMutex());
  std::map<std::string, std::uint16_t> counts;
  for (const auto &[path, entry] : entries_) counts.emplace(path, entry.openCount);
  return counts;
}

}  // namespace ns_sensor
