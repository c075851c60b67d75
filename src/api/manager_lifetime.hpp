// The one manager of the process: created with the first use, destroyed with the last.
#pragma once

#include <cstdint>
#include <mutex>
#include <vector>

#include "api/px_exception.hpp"

class IPalvex;

namespace ns_sensor {

// The process-wide mutex: manager creation and release, and the open-file table.
std::mutex &GlobalMutex();

// Takes one use of the manager, creating it (and loading the dictionary of locale) when
// the count goes from 0 to 1. The first creation in the process also discovers the
// plug-ins of converterConfig1 (module extensions converterConfig2); what discovery could
// not use is added to pluginFailures, and the manager is created all the same.
IPalvex *AcquireManager(const char *converterConfig1, const char *converterConfig2, const char *locale,
                        std::vector<PX_Exception> &pluginFailures);

// Gives one use back; the last one destroys the manager, unloads the plug-in modules
// (their converters stay registered) and unloads the dictionary. A plug-in's failure to
// terminate is raised once all of that is done.
void ReleaseManager();

// Current use count (for tests and diagnostics).
std::uint16_t ManagerUseCount();

}  // namespace ns_sensor
