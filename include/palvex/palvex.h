/**
 * @file palvex.h
 * The five exported functions of the Palvex library. Include this file from C or C++.
 *
 * A host starts with CreatePalvex_1 (or GetSupportedFormats_1), works through the
 * IPalvex manager it gets (palvex/interfaces.hpp, C++), and ends with DestroyPalvex_1.
 * None of these functions returns a status: every failure is reported through entry 11
 * of the callback table, with the error context passed in.
 */
#ifndef PALVEX_PALVEX_H
#define PALVEX_PALVEX_H

#include <stdint.h>

#include "palvex/callbacks.h"
#include "palvex/export.h"
#include "palvex/records.h"

#ifdef __cplusplus
class IPalvex;
#else
/** The manager; its operations are C++ virtual functions (palvex/interfaces.hpp). */
typedef struct IPalvex IPalvex;
#endif

PALVEX_EXTERN_C_BEGIN

/**
 * Obtains the manager, one object per process shared through a use count.
 *
 * The first call in the process that gets this far stores callbackTable for the life of
 * the process; later tables are ignored. The first call also writes the address of the
 * service table into *serviceTableOut (when serviceTableOut is not null); later calls
 * leave it untouched. When the use count goes from 0 to 1 the message dictionary of
 * localeName is loaded and the converter framework is set up with the two configuration
 * strings; later callers share the same manager and their strings are ignored.
 *
 * @param manager          receives the manager; null is reported as code 1
 * @param converterConfig1 folder that holds converter plug-ins (may be null or empty: none)
 * @param converterConfig2 comma-separated plug-in module extensions (null: "mgx")
 * @param localeName       dictionary locale such as "de_DE"; null or empty means "en_US".
 *                         A locale without a dictionary is no error: messages stay English.
 * @param errorContext     handed back with any error report
 * @param callbackTable    the host's callback table
 * @param serviceTableOut  location that receives the service table (first call only)
 */
PALVEX_API void CreatePalvex_1(IPalvex **manager, const char *converterConfig1,
                               const char *converterConfig2, const char *localeName,
                               PX_ErrorContext errorContext, const PX_ClientCallbacks *callbackTable,
                               const PX_ServiceTable **serviceTableOut);

/**
 * Releases one use of the manager and sets *manager to null. The last release tears the
 * converter framework down, marks the dictionary unloaded and destroys the manager.
 * A null manager or *manager is reported as code 1.
 */
PALVEX_API void DestroyPalvex_1(IPalvex **manager, PX_ErrorContext errorContext);

/**
 * Delivers the supported input formats through entry 8, in ascending byte order of the
 * extension. Stores callbackTable once, exactly as CreatePalvex_1 does, so it may be the
 * first call a host makes.
 */
PALVEX_API void GetSupportedFormats_1(PX_SupportedFormatList *hostList, PX_ErrorContext errorContext,
                                      const PX_ClientCallbacks *callbackTable);

/**
 * Builds the localised text of a message literal ("$$$/PXError/...=Default text ^1.") with
 * up to four string parameters (null counts as empty) and delivers it through entry 10.
 * It reports nothing; before a callback table is stored it does nothing at all.
 */
PALVEX_API void GetLocalizedErrorMsg_1(const char *key, const char *param1, const char *param2,
                                       const char *param3, const char *param4,
                                       PX_HostString *hostString);

/**
 * Reports the calling thread's last library error through reportFunction (not through the
 * callback table): code 0 and an empty message when the thread has none. A non-zero reset
 * clears the thread's slot afterwards.
 */
PALVEX_API void GetLastException_1(PX_ErrorContext errorContext, PX_ReportErrorFn reportFunction,
                                   int32_t reset);

PALVEX_EXTERN_C_END

#endif /* PALVEX_PALVEX_H */
