// The manager's table of open files: one handler per input path, shared by every open of
// that path and destroyed by the close that balances the first open. The table takes the
// process-wide mutex itself, from the look-up to the end of each open and close.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "file_access/sensor_file_handler.hpp"

namespace ns_sensor {

class OpenFileTable {
 public:
  using HandlerFactory = std::function<std::unique_ptr<SensorFileHandlerImpl>()>;

  OpenFileTable() = default;
  // Destroys the handlers still open. Runs while the manager is destroyed, which holds the
  // process-wide mutex already.
  ~OpenFileTable();
  OpenFileTable(const OpenFileTable &) = delete;
  OpenFileTable &operator=(const OpenFileTable &) = delete;

  using OpenHandlerUse = std::function<void(const SensorFileHandlerImpl &)>;

  // The handler of path: the open one with its count raised, else a new one from create,
  // which runs under the mutex and whose failure leaves the table as it was. A path open
  // 65535 times is refused with MemoryNotAvailable (34) rather than wrapping its count.
  // whenOpen, if given, runs under the mutex with a handler that was open already, before
  // its count is raised; its failure leaves the count as it was.
  ISensorFileHandler *Open(const std::string &path, const HandlerFactory &create,
                           const OpenHandlerUse &whenOpen = {});

  // Counts one close of *handler; the last one destroys the handler and nulls *handler,
  // earlier ones leave both alone. Raises NoFileOpened (26) when nothing is open and
  // InvalidFileHandler (27) for a handler this table did not hand out. The handler is
  // found by its address, never dereferenced before: a stale pointer is refused, not used.
  void Close(ISensorFileHandler **handler);

  // Open paths and the count of each (for tests and diagnostics).
  std::map<std::string, std::uint16_t> OpenCounts() const;

 private:
  struct Entry {
    std::unique_ptr<SensorFileHandlerImpl> handler;
    std::uint16_t openCount = 0;
  };
  // Ordered by byte-wise comparison of the path.
  std::map<std::string, Entry> entries_;
};

}  // namespace ns_sensor
