#include "api/client_table.hpp"

#include <atomic>
#include <mutex>
#include <string>

#include "api/px_exception.hpp"

namespace ns_sensor {
namespace {

std::once_flag g_tableStored;
std::atomic<const PX_ClientCallbacks *> g_table{nullptr};

}  // namespace

void SetClientTableOnce(const PX_ClientCallbacks *table) {
  if (table == nullptr) return;
  std::call_once(g_tableStored, [table] { g_table.store(table, std::memory_order_release); });
}

const PX_ClientCallbacks *ClientTable() { return g_table.load(std::memory_order_acquire); }

const PX_ClientCallbacks &RequireClientTable() {
  const PX_ClientCallbacks *table = ClientTable();
  if (table == nullptr) Raise(Msg::ClientApisNotSet);
  return *table;
}

void ReportToHost(PX_ErrorContext context, std::uint32_t code, std::string_view message,
                  std::int64_t detail1, std::int64_t detail2) noexcept {
  const PX_ClientCallbacks *table = ClientTable();
  if (table == nullptr || table->reportError == nullptr) return;
  try {
    const std::string text(message);
    table->reportError(context, code, text.c_str(), detail1, detail2);
  } catch (...) {
    // A report that fails has nowhere left to go.
  }
}

}  // namespace ns_sensor
