// The five functions that leave the library.
#include <mutex>
#include <vector>

#include "api/client_table.hpp"
#include "api/guard.hpp"
#include "api/manager_lifetime.hpp"
#include "api/px_exception.hpp"
#include "api/service_table.hpp"
#include "converters/format_registry.hpp"
#include "palvex/interfaces.hpp"
#include "palvex/palvex.h"

using namespace ns_sensor;

extern "C" {

PALVEX_API void CreatePalvex_1(IPalvex **manager, const char *converterConfig1,
                               const char *converterConfig2, const char *localeName,
                               PX_ErrorContext errorContext, const PX_ClientCallbacks *callbackTable,
                               const PX_ServiceTable **serviceTableOut) {
  SetClientTableOnce(callbackTable);
  std::vector<PX_Exception> pluginFailures;
  RunGuarded(errorContext, [&] {
    if (manager == nullptr) Raise(Msg::InvalidPointer, Quoted("IPalvex"));
    *manager = AcquireManager(converterConfig1, converterConfig2, localeName, pluginFailures);
  });
  // Plug-ins that could not be used are told one report each; the manager works without them.
  for (const PX_Exception &failure : pluginFailures) {
    ReportToHost(errorContext, failure.code(), failure.what(), failure.detail1(), failure.detail2());
  }
  HandOutServiceTableOnce(serviceTableOut);
}

PALVEX_API void DestroyPalvex_1(IPalvex **manager, PX_ErrorContext errorContext) {
  RunGuarded(errorContext, [&] {
    if (manager == nullptr || *manager == nullptr) Raise(Msg::InvalidPointer, Quoted("IPalvex"));
    // Cleared first: the use is given back even when the release then reports a failure.
    *manager = nullptr;
    ReleaseManager();
  });
}

PALVEX_API void GetSupportedFormats_1(PX_SupportedFormatList *hostList, PX_ErrorContext errorContext,
                                      const PX_ClientCallbacks *callbackTable) {
  SetClientTableOnce(callbackTable);
  RunGuarded(errorContext, [&] {
    if (hostList == nullptr) Raise(Msg::InvalidPointer, Quoted("PX_SupportedFormatList"));
    const PX_ClientCallbacks &table = RequireClientTable();
    if (table.addSupportedFormat == nullptr) Raise(Msg::ClientApisNotSet);
    // The first manager creation adds the plug-ins' formats under the process-wide mutex,
    // possibly on another thread at this moment: copy the list under it, deliver without
    // it (a host function may call into the library).
    FormatMap formats;
    {
      const std::lock_guard lock(GlobalMutex());
      formats = SupportedFormats();
    }
    for (const auto &[extension, name] : formats) {
      table.addSupportedFormat(hostList, extension.c_str(), name.c_str());
    }
  });
}

PALVEX_API void GetLocalizedErrorMsg_1(const char *key, const char *param1, const char *param2,
                                       const char *param3, const char *param4,
                                       PX_HostString *hostString) {
  // No guard and no error report: without a table there is nobody to tell.
  try {
    const PX_ClientCallbacks *table = ClientTable();
    if (table == nullptr || table->setString == nullptr) return;
    const std::string text =
        BuildErrorMessage(key ? key : "", PX_MessageParam(param1), PX_MessageParam(param2),
                          PX_MessageParam(param3), PX_MessageParam(param4));
    table->setString(hostString, text.c_str(), static_cast<std::uint32_t>(text.size()));
  } catch (...) {
  }
}

PALVEX_API void GetLastException_1(PX_ErrorContext errorContext, PX_ReportErrorFn reportFunction,
                                   int32_t reset) {
  if (reportFunction == nullptr) return;
  try {
    const PX_Exception &last = LastException();
    const char *text = last.what();
    const bool cleared = last.code() == 0 && (text == nullptr || *text == '\0');
    // A raised exception always has a text; one without it reads as "Unknown exception".
    const char *message = cleared ? "" : ((text && *text) ? text : "Unknown exception");
    reportFunction(errorContext, last.code(), message, last.detail1(), last.detail2());
  } catch (...) {
  }
  if (reset != 0) ResetLastException();
}

}  // extern "C"
