/**
 * @file host.hpp
 * A header-only helper for C++ hosts: it defines the host output records with standard
 * containers, a callback table that fills them, an error log to pass as error context,
 * and a Library object that creates and destroys the manager.
 *
 * @code
 *   palvex::host::Library library("de_DE");
 *   PX_SupportedFormatList formats;
 *   palvex::host::ErrorLog errors;
 *   GetSupportedFormats_1(&formats, &errors, palvex::host::Callbacks());
 *   for (auto &f : formats.formats) std::cout << f.extension << '\t' << f.name << '\n';
 * @endcode
 *
 * Include it in one host only once per program; it completes the record types of
 * palvex/records.h for the whole program.
 */
#ifndef PALVEX_HOST_HPP
#define PALVEX_HOST_HPP

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "palvex/interfaces.hpp"
#include "palvex/palvex.h"

namespace palvex::host {

/** One error report (entry 11). */
struct Error {
  uint32_t code = 0;       ///< error code
  std::string message;     ///< finished, localised message
  int64_t detail1 = -1;    ///< detail value, -1 when not set
  int64_t detail2 = -1;    ///< second detail value, -1 when not set
};

/** Pass a pointer to an ErrorLog as the error context; every report is appended. */
struct ErrorLog {
  std::vector<Error> errors;  ///< reports in the order received
  bool empty() const { return errors.empty(); }
  void clear() { errors.clear(); }
};

/** A copy of the number-string properties (pattern and range). */
struct NumberStringProperties {
  uint32_t isSigned = 0, digitsInteger = 0, digitsDecimal = 0;  ///< "pattern"
  double occurringMin = 0, occurringMax = 0;                    ///< "range" "occurring"
  double legalMin = 0, legalMax = 0;                            ///< "range" "legal"
};
/** A copy of the padded-string properties. */
struct PaddedStringProperties {
  uint32_t maxLen = 0, maxDigitsInStrLength = 0, eventMarker = 0;  ///< as in the file
};
/** One range of a number array. */
struct ArrayRange {
  double occurringMin = 0, occurringMax = 0, legalMin = 0, legalMax = 0;  ///< as in the file
};
/** A copy of the number-array properties. */
struct NumberArrayProperties {
  uint32_t isSigned = 0, digitsInteger = 0, digitsDecimal = 0;  ///< "pattern"
  uint32_t arraySize = 0, isPoint = 0;                          ///< "arraySize", "isPoint"
  std::vector<std::string> displayNames;                        ///< "arrayDisplayNames"
  std::vector<ArrayRange> ranges;                               ///< "arrayRanges" "ranges"
};
/** A copy of a node's data type. */
struct DataType {
  uint32_t kind = PX_TYPE_UNKNOWN;  ///< PX_DataTypeKind
  bool hasNumberString = false;     ///< numberString holds a copy
  bool hasNumberArray = false;      ///< numberArray holds a copy
  bool hasPaddedString = false;     ///< paddedString holds a copy
  NumberStringProperties numberString;  ///< "numberStringProperties"
  NumberArrayProperties numberArray;    ///< "numberArrayProperties"
  PaddedStringProperties paddedString;  ///< "paddedStringProperties"
};
/** A copy of a PX_Time. */
struct Time {
  uint32_t numerator = 0, denominator = 0;  ///< seconds as a fraction; denominator 0: unknown
  std::string text;                         ///< as written in the file
};
/** One path item of a group-children result. */
struct PathItem {
  std::string name;   ///< match name
  uint32_t index = 0; ///< position among the siblings
};
/** One delivered sample. */
struct Sample {
  Time time;                     ///< its time
  uint32_t kind = 0;             ///< PX_DataTypeKind of the value
  std::vector<double> numbers;   ///< the value as numbers
  std::string text;              ///< the value as text
};
/** One video sync entry. */
struct VideoSyncEntry {
  std::string fileName;          ///< "fileName"
  uint32_t kind = PX_SYNC_NEITHER;  ///< PX_SyncKind
  std::string timeString;        ///< "timeString"
  int32_t frameNumber = 0;       ///< "frameNumber"
};
/** One supported format. */
struct Format {
  std::string extension;  ///< without the dot
  std::string name;       ///< human-readable
};

/**
 * What the two sample queries fill. Both host records are this structure, so entries 5
 * and 9 can serve either (a standard-layout derived class shares its base's address).
 */
struct SampleRecord {
  uint32_t skip = 0;            ///< request: samples to pass over
  uint32_t limit = 0;           ///< request: at most this many, 0 for all
  uint32_t setSampleCount = 0;  ///< the whole set's sample count
  bool reversed = false;        ///< delivered in descending time order
  std::vector<Sample> samples;  ///< the samples
};

/** The service table from the first CreatePalvex_1 of this program. */
inline const PX_ServiceTable *&ServiceTable() {
  static const PX_ServiceTable *table = nullptr;
  return table;
}

}  // namespace palvex::host

/** Host record: children of a group, each child as its whole data path. */
struct PX_GroupChildren {
  std::vector<std::vector<palvex::host::PathItem>> paths;  ///< one path per child
  std::vector<palvex::host::PathItem> pending_;            ///< the first path while it arrives
};
/** Host record: type and names of one node. */
struct PX_GroupChildInfo {
  uint32_t nodeType = PX_NODE_OTHER;  ///< PX_NodeType
  std::string displayName;            ///< "displayName"
  std::string matchName;              ///< "matchName"
};
/** Host record: a static node. */
struct PX_StaticDataInfo {
  std::string displayName, matchName;   ///< names
  palvex::host::DataType dataType;      ///< its data type
  uint32_t valueKind = PX_TYPE_UNKNOWN; ///< PX_DataTypeKind of the value
  bool boolean = false;                 ///< boolean value
  double number = 0;                    ///< number value
  std::string text;                     ///< string value
  std::vector<double> numbers;          ///< number array value
};
/** Host record: a dynamic node. */
struct PX_DynamicDataInfo {
  std::string displayName, matchName, sampleSetId;  ///< names and "sampleSetID"
  palvex::host::DataType dataType;                  ///< its data type
  uint32_t interpolation = PX_INTERPOLATION_NONE;   ///< PX_Interpolation
  bool hasExpectedFrequency = false;                ///< "hasExpectedFrequencyB"
  uint32_t sampleCount = 0;                         ///< "sampleCount"
  std::string maxInterSampleDuration;               ///< "expectedMaxInterSampleDuration"
  palvex::host::Time firstSampleTime, lastSampleTime;  ///< time range of the samples
};
/** Host record: samples between two times. Set skip and limit before the query to page. */
struct DynamicDataSampleSet : palvex::host::SampleRecord {};
/** Host record: a block of samples. Set skip and limit before the query to page. */
struct PX_DynamicSampleInfo : palvex::host::SampleRecord {};
/** Host record: file-level information. */
struct PX_FileInfo {
  uint32_t frameRateValue = 0, frameRateScale = 1;  ///< timecode frame rate
  std::string inputPath, mgjsonPath;                ///< opened path, MGJSON path read
  uint32_t schemaVersion = 0;                       ///< 1 or 2
  uint32_t timeKind = PX_TIME_NONE;                 ///< PX_TimeKind
  bool dropFrame = false;                           ///< timecode drop frame
  uint32_t utcPrecision = 0;                        ///< UTC fraction digits
  bool utcIsGmt = false;                            ///< UTC times end in "Z"
  bool converted = false;                           ///< the input was converted
  std::string version, creator;                     ///< "version", "creator"
};
/** Host record: the video sync list. */
struct PX_VideoSyncTimeList {
  std::vector<palvex::host::VideoSyncEntry> entries;  ///< in file order
};
/** Host record: the supported formats. */
struct PX_SupportedFormatList {
  std::vector<palvex::host::Format> formats;  ///< in delivery order
};
/** Host record: a string. */
struct PX_HostString {
  std::string text;  ///< the delivered text
};

namespace palvex::host {
namespace detail {

inline std::string Text(const char *text, uint32_t length) {
  return text ? std::string(text, length) : std::string();
}
inline Time CopyTime(const PX_Time &time) {
  return Time{time.numerator, time.denominator, Text(time.text, time.textLength)};
}
inline void CopyDataType(const PX_DataType *in, DataType &out) {
  out = DataType{};
  if (!in) return;
  out.kind = in->kind;
  const PX_ServiceTable *service = ServiceTable();
  if (!service) return;
  if (in->numberString) {
    out.hasNumberString = true;
    service->copyNumberStringProperties(in->numberString, &out.numberString);
  }
  if (in->numberArray) {
    out.hasNumberArray = true;
    service->copyNumberArrayProperties(in->numberArray, &out.numberArray);
  }
  if (in->paddedString) {
    out.hasPaddedString = true;
    service->copyPaddedStringProperties(in->paddedString, &out.paddedString);
  }
}
inline void AddSample(SampleRecord &record, uint32_t position, uint32_t count, const PX_Time *time,
               const PX_SampleValue *value, uint8_t flags) {
  if (position == 0) record.samples.reserve(count);
  Sample sample;
  if (time) sample.time = CopyTime(*time);
  if (value) {
    sample.kind = value->kind;
    sample.numbers.assign(value->numbers, value->numbers + value->numberCount);
    sample.text = Text(value->text, value->textLength);
  }
  record.reversed = (flags & PX_SAMPLE_REVERSED) != 0;
  record.samples.push_back(std::move(sample));
}

inline void AddPathItem(PX_GroupChildren *children, const char *name, uint32_t index, uint32_t,
                        uint32_t lastItem) {
  PathItem item{name ? name : "", index};
  if (children->paths.empty()) {
    children->pending_.push_back(std::move(item));
    if (lastItem) children->paths.push_back(std::move(children->pending_));
    return;
  }
  // Every further child: the first child's parent items plus its own final item.
  std::vector<PathItem> path(children->paths.front().begin(), children->paths.front().end() - 1);
  path.push_back(std::move(item));
  children->paths.push_back(std::move(path));
}
inline void SetNumberString(void *host, const uint32_t *isSigned, const uint32_t *digitsInteger,
                            const uint32_t *digitsDecimal, const double *occurringMin,
                            const double *occurringMax, const double *legalMin, const double *legalMax) {
  *static_cast<NumberStringProperties *>(host) = NumberStringProperties{
      *isSigned, *digitsInteger, *digitsDecimal, *occurringMin, *occurringMax, *legalMin, *legalMax};
}
inline void SetPaddedString(void *host, const uint32_t *maxLen, const uint32_t *maxDigits,
                            const uint32_t *eventMarker) {
  *static_cast<PaddedStringProperties *>(host) = PaddedStringProperties{*maxLen, *maxDigits, *eventMarker};
}
inline void SetNumberArray(void *host, const uint32_t *isSigned, const uint32_t *digitsInteger,
                           const uint32_t *digitsDecimal, const uint32_t *arraySize, const uint32_t *isPoint) {
  auto &out = *static_cast<NumberArrayProperties *>(host);
  out.isSigned = *isSigned, out.digitsInteger = *digitsInteger, out.digitsDecimal = *digitsDecimal;
  out.arraySize = *arraySize, out.isPoint = *isPoint;
}
inline void AddArrayDisplayName(void *host, const char *name, uint32_t length) {
  static_cast<NumberArrayProperties *>(host)->displayNames.push_back(Text(name, length));
}
inline void AddArrayRange(void *host, const double *occurringMin, const double *occurringMax,
                          const double *legalMin, const double *legalMax) {
  static_cast<NumberArrayProperties *>(host)->ranges.push_back(
      ArrayRange{*occurringMin, *occurringMax, *legalMin, *legalMax});
}
inline void SetStaticDataInfo(PX_StaticDataInfo *info, const char *displayName, uint32_t displayNameLength,
                              const char *matchName, uint32_t matchNameLength, const PX_DataType *dataType,
                              const PX_StaticValue *value) {
  info->displayName = Text(displayName, displayNameLength);
  info->matchName = Text(matchName, matchNameLength);
  CopyDataType(dataType, info->dataType);
  if (value) {
    info->valueKind = value->kind;
    info->boolean = value->boolean != 0;
    info->number = value->number;
    info->text = Text(value->text, value->textLength);
    info->numbers.assign(value->numbers, value->numbers + value->numberCount);
  }
}
inline void SetDynamicDataInfo(PX_DynamicDataInfo *info, const char *displayName, uint32_t displayNameLength,
                               const char *matchName, uint32_t matchNameLength, const char *sampleSetId,
                               uint32_t sampleSetIdLength, const PX_DataType *dataType, uint32_t interpolation,
                               uint32_t hasExpectedFrequency, uint32_t sampleCount,
                               const char *maxInterSampleDuration, uint32_t maxInterSampleDurationLength,
                               const PX_TimeRange *times) {
  info->displayName = Text(displayName, displayNameLength);
  info->matchName = Text(matchName, matchNameLength);
  info->sampleSetId = Text(sampleSetId, sampleSetIdLength);
  CopyDataType(dataType, info->dataType);
  info->interpolation = interpolation;
  info->hasExpectedFrequency = hasExpectedFrequency != 0;
  info->sampleCount = sampleCount;
  info->maxInterSampleDuration = Text(maxInterSampleDuration, maxInterSampleDurationLength);
  if (times) {
    info->firstSampleTime = CopyTime(times->first);
    info->lastSampleTime = CopyTime(times->last);
  }
}
inline void SetGroupChildInfo(PX_GroupChildInfo *info, uint32_t nodeType, const char *displayName,
                              uint32_t displayNameLength, const char *matchName, uint32_t matchNameLength) {
  info->nodeType = nodeType;
  info->displayName = Text(displayName, displayNameLength);
  info->matchName = Text(matchName, matchNameLength);
}
inline void AddSampleToRecord(void *record, uint32_t position, uint32_t count, const PX_Time *time,
                              const PX_SampleValue *value, uint8_t flags) {
  AddSample(*static_cast<SampleRecord *>(record), position, count, time, value, flags);
}
inline void SetFileInfo(PX_FileInfo *info, uint32_t frameRateValue, uint32_t frameRateScale,
                        const char *inputPath, uint32_t inputPathLength, const char *mgjsonPath,
                        uint32_t mgjsonPathLength, const PX_FileDetails *details) {
  info->frameRateValue = frameRateValue;
  info->frameRateScale = frameRateScale;
  info->inputPath = Text(inputPath, inputPathLength);
  info->mgjsonPath = Text(mgjsonPath, mgjsonPathLength);
  if (details) {
    info->schemaVersion = details->schemaVersion;
    info->timeKind = details->timeKind;
    info->dropFrame = details->dropFrame != 0;
    info->utcPrecision = details->utcPrecision;
    info->utcIsGmt = details->utcIsGmt != 0;
    info->converted = details->converted != 0;
    info->version = Text(details->version, details->versionLength);
    info->creator = Text(details->creator, details->creatorLength);
  }
}
inline void AddVideoSyncEntry(PX_VideoSyncTimeList *list, const char *fileName, uint32_t fileNameLength,
                              uint32_t syncKind, const char *timeString, uint32_t timeStringLength,
                              int32_t frameNumber) {
  list->entries.push_back(VideoSyncEntry{Text(fileName, fileNameLength), syncKind,
                                         Text(timeString, timeStringLength), frameNumber});
}
inline void AddSupportedFormat(PX_SupportedFormatList *list, const char *extension, const char *name) {
  list->formats.push_back(Format{extension ? extension : "", name ? name : ""});
}
inline void ReadSampleRequest(void *record, PX_SampleRequest *request) {
  auto &samples = *static_cast<SampleRecord *>(record);
  samples.setSampleCount = request->setSampleCount;
  request->skip = samples.skip;
  request->limit = samples.limit;
}
inline void SetString(PX_HostString *string, const char *text, uint32_t length) {
  string->text = Text(text, length);
}
inline void ReportError(PX_ErrorContext context, uint32_t code, const char *message, int64_t detail1,
                        int64_t detail2) {
  if (context) {
    static_cast<ErrorLog *>(context)->errors.push_back(Error{code, message ? message : "", detail1, detail2});
  }
}

}  // namespace detail

/** The callback table that fills the records above. */
inline const PX_ClientCallbacks *Callbacks() {
  static const PX_GroupChildrenFunctions groupChildren = {detail::AddPathItem};
  static const PX_HostRecordFunctions hostRecords = {detail::SetNumberString, detail::SetPaddedString,
                                                     detail::SetNumberArray, detail::AddArrayDisplayName,
                                                     detail::AddArrayRange};
  static const PX_ClientCallbacks table = {
      &groupChildren,           &hostRecords,          detail::SetStaticDataInfo,
      detail::SetDynamicDataInfo, detail::SetGroupChildInfo, detail::AddSampleToRecord,
      detail::SetFileInfo,      detail::AddVideoSyncEntry, detail::AddSupportedFormat,
      detail::ReadSampleRequest, detail::SetString,    detail::ReportError};
  return &table;
}

/** Creates the manager for its lifetime; errors of creation and release land in errors(). */
class Library {
 public:
  explicit Library(const char *locale = nullptr, const char *pluginFolder = nullptr,
                   const char *moduleExtensions = nullptr) {
    const PX_ServiceTable *service = nullptr;
    CreatePalvex_1(&manager_, pluginFolder, moduleExtensions, locale, &errors_, Callbacks(), &service);
    if (service) ServiceTable() = service;
  }
  ~Library() {
    if (manager_) DestroyPalvex_1(&manager_, &errors_);
  }
  Library(const Library &) = delete;
  Library &operator=(const Library &) = delete;

  IPalvex *manager() const { return manager_; }  ///< null when creation failed
  ErrorLog &errors() { return errors_; }          ///< reports of creation and release

 private:
  IPalvex *manager_ = nullptr;
  ErrorLog errors_;
};

}  // namespace palvex::host

#endif  // PALVEX_HOST_HPP
