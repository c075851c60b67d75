/**
 * @file callbacks.h
 * The client callback table that the host supplies, and the service table that the
 * library gives back.
 *
 * Every result and every error reaches the host through these functions. Each receives
 * first the opaque host handle that the host passed into the operation being served
 * (its output record, its string, or its error context). The library calls them on the
 * caller's thread, during the operation. A C++ host function may throw: the library
 * stops the delivery there and reports the failure through entry 11 (what the host had
 * received stays with it).
 */
#ifndef PALVEX_CALLBACKS_H
#define PALVEX_CALLBACKS_H

#include <stdint.h>

#include "palvex/records.h"

PALVEX_EXTERN_C_BEGIN

/* ---- Entry 0: group children ---------------------------------------------------------------- */

/**
 * Adds one item of a data path to a PX_GroupChildren.
 * The first child's path arrives whole: each item in turn, the last with lastItem 1.
 * Every further child arrives as its final item only, with lastItem 1; the host builds
 * its path from the first child's parent items.
 * @param children  the host record passed to the query
 * @param name      match name of the item (empty for the root item "dataOutline" only if unnamed)
 * @param index     position of the item among its siblings; 0xFFFFFFFF for the root item
 * @param pathCount number of children (paths) in the whole result
 * @param lastItem  1 when this is the last item of a path, else 0
 */
typedef void (*PX_AddPathItemFn)(PX_GroupChildren *children, const char *name, uint32_t index,
                                 uint32_t pathCount, uint32_t lastItem);

/** The table that entry 0 points to. */
typedef struct PX_GroupChildrenFunctions {
  PX_AddPathItemFn addPathItem; /**< the only function so far */
} PX_GroupChildrenFunctions;

/* ---- Entry 1: host functions that the service table calls ----------------------------------- */

/** Receives the seven fields of a PX_NumberStringProperties record (pattern, then range). */
typedef void (*PX_SetNumberStringPropertiesFn)(void *hostRecord, const uint32_t *isSigned,
                                               const uint32_t *digitsInteger,
                                               const uint32_t *digitsDecimal,
                                               const double *occurringMin, const double *occurringMax,
                                               const double *legalMin, const double *legalMax);
/** Receives the three fields of a PX_PaddedStringProperties record. */
typedef void (*PX_SetPaddedStringPropertiesFn)(void *hostRecord, const uint32_t *maxLen,
                                               const uint32_t *maxDigitsInStrLength,
                                               const uint32_t *eventMarker);
/** Receives the leading fields of a PX_NumberArrayProperties record (pattern, size, point flag). */
typedef void (*PX_SetNumberArrayPropertiesFn)(void *hostRecord, const uint32_t *isSigned,
                                              const uint32_t *digitsInteger,
                                              const uint32_t *digitsDecimal,
                                              const uint32_t *arraySize, const uint32_t *isPoint);
/** Receives one of the "arrayDisplayNames" of a PX_NumberArrayProperties record, in order. */
typedef void (*PX_AddArrayDisplayNameFn)(void *hostRecord, const char *name, uint32_t length);
/** Receives one element of the "arrayRanges" "ranges" of a PX_NumberArrayProperties record, in order. */
typedef void (*PX_AddArrayRangeFn)(void *hostRecord, const double *occurringMin,
                                   const double *occurringMax, const double *legalMin,
                                   const double *legalMax);

/** The table that entry 1 points to. */
typedef struct PX_HostRecordFunctions {
  PX_SetNumberStringPropertiesFn setNumberStringProperties; /**< function 0 */
  PX_SetPaddedStringPropertiesFn setPaddedStringProperties; /**< function 1 */
  PX_SetNumberArrayPropertiesFn setNumberArrayProperties;   /**< function 2 */
  PX_AddArrayDisplayNameFn addArrayDisplayName;             /**< function 3 */
  PX_AddArrayRangeFn addArrayRange;                         /**< function 4 */
} PX_HostRecordFunctions;

/* ---- Entries 2 to 11 ------------------------------------------------------------------------ */

/** Entry 2: fills a PX_StaticDataInfo. */
typedef void (*PX_SetStaticDataInfoFn)(PX_StaticDataInfo *info, const char *displayName,
                                       uint32_t displayNameLength, const char *matchName,
                                       uint32_t matchNameLength, const PX_DataType *dataType,
                                       const PX_StaticValue *value);

/**
 * Entry 3: fills a PX_DynamicDataInfo.
 * @param interpolation       PX_Interpolation
 * @param hasExpectedFrequency 1 when "hasExpectedFrequencyB" is true
 * @param sampleCount         "sampleCount"
 * @param maxInterSampleDuration "expectedMaxInterSampleDuration" as text, empty when absent
 * @param times               first and last sample time; both denominators are 0 when the
 *                            sample set has no samples in the file
 */
typedef void (*PX_SetDynamicDataInfoFn)(PX_DynamicDataInfo *info, const char *displayName,
                                        uint32_t displayNameLength, const char *matchName,
                                        uint32_t matchNameLength, const char *sampleSetId,
                                        uint32_t sampleSetIdLength, const PX_DataType *dataType,
                                        uint32_t interpolation, uint32_t hasExpectedFrequency,
                                        uint32_t sampleCount, const char *maxInterSampleDuration,
                                        uint32_t maxInterSampleDurationLength,
                                        const PX_TimeRange *times);

/** Entry 4: fills a PX_GroupChildInfo. @param nodeType PX_NodeType */
typedef void (*PX_SetGroupChildInfoFn)(PX_GroupChildInfo *info, uint32_t nodeType,
                                       const char *displayName, uint32_t displayNameLength,
                                       const char *matchName, uint32_t matchNameLength);

/**
 * Entry 5: delivers one sample to a DynamicDataSampleSet or PX_DynamicSampleInfo.
 * @param record   the host record passed to the query
 * @param position position of this sample in the delivery, from 0
 * @param count    number of samples in the whole delivery
 * @param time     the sample's time
 * @param value    the sample's value
 * @param flags    PX_SampleFlags
 */
typedef void (*PX_AddSampleFn)(void *record, uint32_t position, uint32_t count,
                               const PX_Time *time, const PX_SampleValue *value, uint8_t flags);

/**
 * Entry 6: fills a PX_FileInfo.
 * @param frameRateValue timecode frame rate numerator (0 for UTC files)
 * @param frameRateScale timecode frame rate denominator (1 for UTC files)
 * @param inputPath      the path the file was opened with
 * @param mgjsonPath     the MGJSON file that is read (differs from inputPath after a conversion)
 * @param details        the rest of the file-level information
 */
typedef void (*PX_SetFileInfoFn)(PX_FileInfo *info, uint32_t frameRateValue,
                                 uint32_t frameRateScale, const char *inputPath,
                                 uint32_t inputPathLength, const char *mgjsonPath,
                                 uint32_t mgjsonPathLength, const PX_FileDetails *details);

/**
 * Entry 7: adds one entry to a PX_VideoSyncTimeList.
 * @param syncKind    PX_SyncKind
 * @param timeString  the entry's "timeString" (empty unless syncKind is PX_SYNC_TIME_STRING)
 * @param frameNumber the entry's "frameNumber" (0 unless syncKind is PX_SYNC_FRAME_NUMBER)
 */
typedef void (*PX_AddVideoSyncEntryFn)(PX_VideoSyncTimeList *list, const char *fileName,
                                       uint32_t fileNameLength, uint32_t syncKind,
                                       const char *timeString, uint32_t timeStringLength,
                                       int32_t frameNumber);

/** Entry 8: adds one format to a PX_SupportedFormatList; extension without the dot. */
typedef void (*PX_AddSupportedFormatFn)(PX_SupportedFormatList *list, const char *extension,
                                        const char *name);

/**
 * Entry 9: lets the host record of a sample query say what it wants. The library has
 * filled request with defaults; the host changes the fields it owns.
 */
typedef void (*PX_ReadSampleRequestFn)(void *record, PX_SampleRequest *request);

/** Entry 10: sets a host string. */
typedef void (*PX_SetStringFn)(PX_HostString *string, const char *text, uint32_t length);

/**
 * Entry 11: reports an error.
 * @param errorContext the context the host passed into the failing operation
 * @param code         error code (see docs/errors.md)
 * @param message      the finished, localised message
 * @param detail1      for MGJSON syntax errors (code 32 and the scanner's other faults) the
 *                     byte offset of the fault from the start of the file; for plug-in
 *                     errors the plug-in's first detail value; -1 when not set
 * @param detail2      the plug-in's second detail value; -1 when not set
 */
typedef void (*PX_ReportErrorFn)(PX_ErrorContext errorContext, uint32_t code, const char *message,
                                 int64_t detail1, int64_t detail2);

/** The client callback table: twelve pointer-sized entries, owned by the host. */
typedef struct PX_ClientCallbacks {
  const PX_GroupChildrenFunctions *groupChildren; /**< entry 0 */
  const PX_HostRecordFunctions *hostRecords;      /**< entry 1 */
  PX_SetStaticDataInfoFn setStaticDataInfo;       /**< entry 2 */
  PX_SetDynamicDataInfoFn setDynamicDataInfo;     /**< entry 3 */
  PX_SetGroupChildInfoFn setGroupChildInfo;       /**< entry 4 */
  PX_AddSampleFn addSample;                       /**< entry 5 */
  PX_SetFileInfoFn setFileInfo;                   /**< entry 6 */
  PX_AddVideoSyncEntryFn addVideoSyncEntry;       /**< entry 7 */
  PX_AddSupportedFormatFn addSupportedFormat;     /**< entry 8 */
  PX_ReadSampleRequestFn readSampleRequest;       /**< entry 9 */
  PX_SetStringFn setString;                       /**< entry 10 */
  PX_ReportErrorFn reportError;                   /**< entry 11 */
} PX_ClientCallbacks;

/* ---- The service table ---------------------------------------------------------------------- */

/**
 * Library functions that copy a library record into a host record through the functions
 * of entry 1. Call them while the callback that handed you the library record runs.
 */
typedef struct PX_ServiceTable {
  /** Calls entry 1 function 0 with the record's seven fields. */
  void (*copyNumberStringProperties)(const PX_NumberStringProperties *record, void *hostRecord);
  /** Calls entry 1 function 2, then function 3 per display name, then function 4 per range. */
  void (*copyNumberArrayProperties)(const PX_NumberArrayProperties *record, void *hostRecord);
  /** Calls entry 1 function 1 with the record's three fields. */
  void (*copyPaddedStringProperties)(const PX_PaddedStringProperties *record, void *hostRecord);
} PX_ServiceTable;

PALVEX_EXTERN_C_END

#endif /* PALVEX_CALLBACKS_H */
