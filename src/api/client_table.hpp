// The host's callback table, stored once per process.
#pragma once

#include <cstdint>
#include <string_view>

#include "palvex/callbacks.h"

namespace ns_sensor {

// Stores table if no table was stored before. A null table is not stored, so a host that
// passes none does not lock out the one that does.
void SetClientTableOnce(const PX_ClientCallbacks *table);

// The stored table, or null.
const PX_ClientCallbacks *ClientTable();

// The stored table; raises ClientAPIsNotSet (code 21) when there is none.
const PX_ClientCallbacks &RequireClientTable();

// Calls entry 11 of the stored table; never throws, does nothing without a table.
void ReportToHost(PX_ErrorContext context, std::uint32_t code, std::string_view message,
                  std::int64_t detail1, std::int64_t detail2) noexcept;

}  // namespace ns_sensor
