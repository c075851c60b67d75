// An MGJSON file opened through the manager for the length of a command, and closed
// again, as any host does it.
#pragma once

#include <string>

#include "palvex/host.hpp"

namespace palvex::cli {

class OpenedFile {
 public:
  // Opens path; on failure handler() is null and the report is in errors.
  OpenedFile(IPalvex *manager, const std::string &path, palvex::host::ErrorLog &errors);
  // Closes the file; a failure to close lands in the same error log.
  ~OpenedFile();
  OpenedFile(const OpenedFile &) = delete;
  OpenedFile &operator=(const OpenedFile &) = delete;

  ISensorFileHandler *handler() const { return handler_; }

 private:
  IPalvex *manager_;
  palvex::host::ErrorLog &errors_;
  ISensorFileHandler *handler_ = nullptr;
};

}  // namespace palvex::cli
