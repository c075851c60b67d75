/**
 * @file records.h
 * The values that the library hands to the host's callbacks.
 *
 * The library never hands the host memory to free. It calls a host function once
 * per value; every pointer it passes (strings, the structures below) points to
 * library memory that is valid only during that call, so the host copies what it
 * keeps. Every string is UTF-8 and NUL-terminated; where a length is passed too it
 * counts the bytes before the NUL.
 *
 * Output records belong to the host. The library sees them only as opaque handles
 * (`PX_FileInfo *` and so on) that it passes back to the host's callbacks, so the
 * host defines these structures itself, with whatever containers it likes. The C++
 * helper in palvex/host.hpp defines all of them with standard containers.
 */
#ifndef PALVEX_RECORDS_H
#define PALVEX_RECORDS_H

#include <stdint.h>

#include "palvex/export.h"

PALVEX_EXTERN_C_BEGIN

/** Opaque value that the host passes into an operation and gets back with each error report. */
typedef void *PX_ErrorContext;

/* ---- Host-defined output records (complete them in the host) ------------------------------ */

/** Children of a group: a list of data paths. Filled through callback entry 0. */
typedef struct PX_GroupChildren PX_GroupChildren;
/** Node type, display name and match name of one node. Filled through entry 4. */
typedef struct PX_GroupChildInfo PX_GroupChildInfo;
/** Everything about a static data node. Filled through entry 2. */
typedef struct PX_StaticDataInfo PX_StaticDataInfo;
/** Everything about a dynamic data node. Filled through entry 3. */
typedef struct PX_DynamicDataInfo PX_DynamicDataInfo;
/** Samples of one sample set between two times. Request read through entry 9, samples through entry 5. */
typedef struct DynamicDataSampleSet DynamicDataSampleSet;
/** File-level information. Filled through entry 6. */
typedef struct PX_FileInfo PX_FileInfo;
/** The video synchronisation list. One call of entry 7 per list entry. */
typedef struct PX_VideoSyncTimeList PX_VideoSyncTimeList;
/** A block of samples of one sample set. Request read through entry 9, samples through entry 5. */
typedef struct PX_DynamicSampleInfo PX_DynamicSampleInfo;
/** The supported input formats. One call of entry 8 per format. */
typedef struct PX_SupportedFormatList PX_SupportedFormatList;
/** Any host string that receives a text through entry 10. */
typedef struct PX_HostString PX_HostString;

/* ---- Library records copied through the service table -------------------------------------- */

/** Number-string properties of a data type (pattern and range). Copy with PX_ServiceTable::copyNumberStringProperties. */
typedef struct PX_NumberStringProperties PX_NumberStringProperties;
/** Number-array properties of a data type. Copy with PX_ServiceTable::copyNumberArrayProperties. */
typedef struct PX_NumberArrayProperties PX_NumberArrayProperties;
/** Padded-string properties of a data type. Copy with PX_ServiceTable::copyPaddedStringProperties. */
typedef struct PX_PaddedStringProperties PX_PaddedStringProperties;

/* ---- Codes --------------------------------------------------------------------------------- */

/** Node type codes of the data outline. */
enum PX_NodeType {
  PX_NODE_GROUP = 0,   /**< objectType "dataGroup" */
  PX_NODE_DYNAMIC = 1, /**< objectType beginning with "dataDynamic" */
  PX_NODE_STATIC = 2,  /**< objectType beginning with "dataStatic" */
  PX_NODE_OTHER = 3    /**< anything else */
};

/** The "type" of a node's "dataType". */
enum PX_DataTypeKind {
  PX_TYPE_UNKNOWN = 0,             /**< absent or not one of the names below */
  PX_TYPE_NUMBER = 1,              /**< "number" (static) */
  PX_TYPE_STRING = 2,              /**< "string" (static) */
  PX_TYPE_BOOLEAN = 3,             /**< "boolean" (static) */
  PX_TYPE_NUMBER_ARRAY = 4,        /**< "numberArray" (static) */
  PX_TYPE_NUMBER_STRING = 5,       /**< "numberString" */
  PX_TYPE_PADDED_STRING = 6,       /**< "paddedString" */
  PX_TYPE_NUMBER_STRING_ARRAY = 7  /**< "numberStringArray" (dynamic) */
};

/** Interpolation of a dynamic node. */
enum PX_Interpolation {
  PX_INTERPOLATION_NONE = 0,   /**< absent or unrecognised */
  PX_INTERPOLATION_LINEAR = 1, /**< "linear" */
  PX_INTERPOLATION_HOLD = 2    /**< "hold" */
};

/** How sample times are written in a file. */
enum PX_TimeKind {
  PX_TIME_UTC = 0,      /**< UTC strings, YYYY-MM-DDTHH:MM:SS[.fraction] with Z or an offset */
  PX_TIME_TIMECODE = 1, /**< SMPTE timecode strings, HH:MM:SS:FF or HH:MM:SS:FFF */
  PX_TIME_NONE = 2      /**< the file has no time information */
};

/** Kind of one video sync entry. */
enum PX_SyncKind {
  PX_SYNC_TIME_STRING = 0,  /**< the entry names a time string */
  PX_SYNC_FRAME_NUMBER = 1, /**< the entry names a frame number */
  PX_SYNC_NEITHER = 2       /**< the entry names neither */
};

/** Flags of a delivered sample (entry 5). */
enum PX_SampleFlags {
  PX_SAMPLE_REVERSED = 1 /**< the samples of this delivery come in descending time order */
};

/* ---- Values passed to callbacks ------------------------------------------------------------ */

/**
 * A time as the file writes it and as an exact number of seconds.
 * Seconds are counted from the file's time origin: 00:00:00:00 for timecode files; for
 * UTC files the earliest first-sample time of all sample sets of the file.
 */
typedef struct PX_Time {
  uint32_t numerator;   /**< seconds = numerator / denominator */
  uint32_t denominator; /**< 0 when the text could not be turned into seconds */
  const char *text;     /**< the time text as it stands in the file */
  uint32_t textLength;  /**< bytes of text */
} PX_Time;

/** First and last sample time of a sample set. */
typedef struct PX_TimeRange {
  PX_Time first; /**< time of the first sample */
  PX_Time last;  /**< time of the last sample */
} PX_TimeRange;

/**
 * A node's data type. The property records are library records: copy them into host
 * records with the service table while the callback runs. A pointer is null when the
 * data type has no such properties.
 */
typedef struct PX_DataType {
  uint32_t kind; /**< PX_DataTypeKind */
  const PX_NumberStringProperties *numberString; /**< "numberStringProperties", or null */
  const PX_NumberArrayProperties *numberArray;   /**< "numberArrayProperties", or null */
  const PX_PaddedStringProperties *paddedString; /**< "paddedStringProperties", or null */
} PX_DataType;

/** The "value" of a static node. */
typedef struct PX_StaticValue {
  uint32_t kind;        /**< PX_DataTypeKind of the value */
  uint32_t boolean;     /**< PX_TYPE_BOOLEAN: 0 or 1 */
  double number;        /**< PX_TYPE_NUMBER and PX_TYPE_NUMBER_STRING */
  const char *text;     /**< PX_TYPE_STRING and PX_TYPE_PADDED_STRING: the text; else empty */
  uint32_t textLength;  /**< bytes of text */
  uint32_t numberCount; /**< PX_TYPE_NUMBER_ARRAY: the number of elements */
  const double *numbers; /**< PX_TYPE_NUMBER_ARRAY: the elements */
} PX_StaticValue;

/** The value of one sample. */
typedef struct PX_SampleValue {
  uint32_t kind;         /**< PX_TYPE_NUMBER_STRING, PX_TYPE_PADDED_STRING or PX_TYPE_NUMBER_STRING_ARRAY */
  uint32_t numberCount;  /**< 1 for a number string, the array size for an array, 0 for a padded string */
  const double *numbers; /**< the value as numbers */
  const char *text;      /**< the value as text; array elements are joined by "," */
  uint32_t textLength;   /**< bytes of text */
} PX_SampleValue;

/**
 * What a host record asks of a sample query (entry 9). The library fills every field
 * with its default, then lets the host change the fields marked "host".
 */
typedef struct PX_SampleRequest {
  uint32_t structSize;     /**< library: sizeof(PX_SampleRequest) of the library; fields may be added later */
  uint32_t setSampleCount; /**< library: number of samples in the whole sample set */
  uint32_t skip;           /**< host: selected samples to pass over before delivering (default 0) */
  uint32_t limit;          /**< host: deliver at most this many samples; 0 means all (default 0) */
} PX_SampleRequest;

/** File-level details delivered with the file info (entry 6). */
typedef struct PX_FileDetails {
  uint32_t schemaVersion;   /**< 1 or 2 */
  uint32_t timeKind;        /**< PX_TimeKind */
  uint32_t dropFrame;       /**< timecode: 1 when drop frame */
  uint32_t utcPrecision;    /**< UTC: number of fraction digits */
  uint32_t utcIsGmt;        /**< UTC: 1 when the times end in "Z" */
  uint32_t converted;       /**< 1 when the input was converted to MGJSON when it was opened */
  const char *version;      /**< the file's "version" text, or empty */
  uint32_t versionLength;   /**< bytes of version */
  const char *creator;      /**< the file's "creator" text, or empty */
  uint32_t creatorLength;   /**< bytes of creator */
} PX_FileDetails;

PALVEX_EXTERN_C_END

#endif /* PALVEX_RECORDS_H */
