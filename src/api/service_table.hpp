// The service table handed to the host by the first CreatePalvex_1.
#pragma once

#include "palvex/callbacks.h"

namespace ns_sensor {

const PX_ServiceTable &ServiceTable();

// Writes the table's address into *location, once per process (the first call that
// passes a location).
void HandOutServiceTableOnce(const PX_ServiceTable **location);

}  // namespace ns_sensor
