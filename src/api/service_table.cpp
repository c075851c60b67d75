#include "api/service_table.hpp"

#include <atomic>
#include <mutex>

#include "api/client_table.hpp"
#include "file_access/property_records.hpp"

namespace ns_sensor {
namespace {

// Service functions are called by the host from inside its own callbacks; they have no
// error context, so they deliver what they can and stay silent otherwise.
const PX_HostRecordFunctions *HostRecordFunctions() {
  const PX_ClientCallbacks *table = ClientTable();
  return table ? table->hostRecords : nullptr;
}

void CopyNumberString(const PX_NumberStringProperties *record, void *host) {
  const PX_HostRecordFunctions *functions = HostRecordFunctions();
  if (!record || !functions || !functions->setNumberStringProperties) return;
  functions->setNumberStringProperties(host, &record->isSigned, &record->digitsInteger,
                                       &record->digitsDecimal, &record->occurringMin,
                                       &record->occurringMax, &record->legalMin, &record->legalMax);
}

void CopyNumberArray(const PX_NumberArrayProperties *record, void *host) {
  const PX_HostRecordFunctions *functions = HostRecordFunctions();
  if (!record || !functions) return;
  if (functions->setNumberArrayProperties) {
    functions->setNumberArrayProperties(host, &record->isSigned, &record->digitsInteger,
                                        &record->digitsDecimal, &record->arraySize,
                                        &record->isPoint);
  }
  if (functions->addArrayDisplayName) {
    for (const std::string &name : record->displayNames) {
      functions->addArrayDisplayName(host, name.c_str(), static_cast<std::uint32_t>(name.size()));
    }
  }
  if (functions->addArrayRange) {
    for (const PX_ArrayRange &range : record->ranges) {
      functions->addArrayRange(host, &range.occurringMin, &range.occurringMax, &range.legalMin,
                               &range.legalMax);
    }
  }
}

void CopyPaddedString(const PX_PaddedStringProperties *record, void *host) {
  const PX_HostRecordFunctions *functions = HostRecordFunctions();
  if (!record || !functions || !functions->setPaddedStringProperties) return;
  functions->setPaddedStringProperties(host, &record->maxLen, &record->maxDigitsInStrLength,
                                       &record->eventMarker);
}

constexpr PX_ServiceTable kServiceTable = {CopyNumberString, CopyNumberArray, CopyPaddedString};

std::atomic<bool> g_handedOut{false};

}  // namespace

const PX_ServiceTable &ServiceTable() { return kServiceTable; }

void HandOutServiceTableOnce(const PX_ServiceTable **location) {
  if (location == nullptr) return;
  bool expected = false;
  if (g_handedOut.compare_exchange_strong(expected, true)) *location = &kServiceTable;
}

}  // namespace ns_sensor
