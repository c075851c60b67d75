// The one manager of the process: created with the first use, destroyed with the last.
#pragma once

#include <cstdint>
#include <mutex>

class IPalvex;

namespace ns_sensor {

// The process-wide mutex: manager creation and release, and the open-file table.
std::mutex &GlobalMutex();

// Takes one use of the manager, creating it (and loading the dictionary of locale) when
// the count goes from 0 to 1.
IPalvex *AcquireManager(const char *converterConfig1, const char *converterConfig2,
                        const char *locale);

// Gives one use back; the last one destroys the manager and unloads the dictionary.
void ReleaseManager();

// Current use count (for tests and diagnostics).
std::uint16_t ManagerUseCount();

}  // namespace ns_sensor
