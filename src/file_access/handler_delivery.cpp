// The handler's client forms: each runs its raising form inside the guard on a library
// record, then hands the record's values to the host through the callback table. A host
// function that fails stops the delivery where it is; what arrived stays with the host.
#include <limits>

#include "api/client_table.hpp"
#include "api/guard.hpp"
#include "api/px_exception.hpp"
#include "file_access/sensor_file_handler.hpp"

namespace ns_sensor {
namespace {

constexpr std::uint32_t kRootItemIndex = std::numeric_limits<std::uint32_t>::max();

// The stored table's entry; a table without it cannot be served (ClientAPIsNotSet).
template <class Function>
Function Entry(Function PX_ClientCallbacks::*entry) {
  const Function function = RequireClientTable().*entry;
  if (function == nullptr) Raise(Msg::ClientApisNotSet);
  return function;
}

std::uint32_t Length(const std::string &text) { return static_cast<std::uint32_t>(text.size()); }

// Entry 0: the first path whole, then each further path's final item only.
void DeliverPaths(const PX_GroupChildren &children, ::PX_GroupChildren *host) {
  if (children.children.empty()) return;
  const PX_GroupChildrenFunctions *functions = RequireClientTable().groupChildren;
  if (functions == nullptr || functions->addPathItem == nullptr) Raise(Msg::ClientApisNotSet);
  const auto count = static_cast<std::uint32_t>(children.children.size());
  for (const PX_PathItem &item : children.parent) {
    const std::uint32_t index = item.index < 0 ? kRootItemIndex : static_cast<std::uint32_t>(item.index);
    functions->addPathItem(host, item.name.c_str(), index, count, 0);
  }
  for (const PX_PathItem &item : children.children) {
    functions->addPathItem(host, item.name.c_str(), static_cast<std::uint32_t>(item.index), count, 1);
  }
}

// The data type as the host sees it; the property records stay the library's.
PX_DataType HostDataType(const PX_DataTypeInfo &type) {
  return PX_DataType{type.kind, type.numberString ? &*type.numberString : nullptr,
                     type.numberArray ? &*type.numberArray : nullptr,
                     type.paddedString ? &*type.paddedString : nullptr};
}

PX_Time HostTime(const PX_TimeValue &time) {
  return PX_Time{time.seconds.numerator, time.seconds.denominator, time.text.c_str(), Length(time.text)};
}

// Entry 9 through the record's hook, then entry 5 per sample.
void RunSampleQuery(void *host, std::string_view recordName, PX_SampleSelection &selection,
                    const std::function<void()> &query) {
  RequireRecord(host, recordName);
  const PX_ReadSampleRequestFn readRequest = Entry(&PX_ClientCallbacks::readSampleRequest);
  const PX_AddSampleFn addSample = Entry(&PX_ClientCallbacks::addSample);
  selection.readRequest = [host, readRequest](PX_SampleRequest &request) { readRequest(host, &request); };
  query();
  const std::uint8_t flags = selection.reversed ? PX_SAMPLE_REVERSED : 0;
  // The views point into the sample text, where they are not NUL-terminated: each is
  // copied into a buffer that is reused from sample to sample.
  std::string timeText;
  std::string valueText;
  SampleView sample;
  for (std::uint32_t position = 0; selection.Next(sample); ++position) {
    timeText.assign(sample.time);
    valueText.assign(sample.text);
    const PX_Time time{sample.seconds.numerator, sample.seconds.denominator, timeText.c_str(),
                       Length(timeText)};
    const PX_SampleValue value{sample.kind, static_cast<std::uint32_t>(sample.numbers.size()),
                               sample.numbers.data(), valueText.c_str(), Length(valueText)};
    addSample(host, position, selection.count, &time, &value, flags);
  }
}

}  // namespace

void ISensorFileHandler_I::GetRootChildren(::PX_GroupChildren *children, PX_ErrorContext errorContext) {
  RunGuarded(errorContext, [&] {
    RequireRecord(children, "PX_GroupChildren");
    RequireClientTable();
    PX_GroupChildren result;
    GetRootChildren(&result);
    DeliverPaths(result, children);
  });
}

void ISensorFileHandler_I::GetGroupChildren(const char *dataPath, ::PX_GroupChildren *children,
                                            PX_ErrorContext errorContext) {
  RunGuarded(errorContext, [&] {
    RequireRecord(children, "PX_GroupChildren");
    RequireClientTable();
    PX_GroupChildren result;
    GetGroupChildren(dataPath, &result);
    DeliverPaths(result, children);
  });
}

void ISensorFileHandler_I::GetGroupChildInfo(const char *dataPath, ::PX_GroupChildInfo *info,
                                             PX_ErrorContext errorContext) {
  RunGuarded(errorContext, [&] {
    RequireRecord(info, "PX_GroupChildInfo");
    const PX_SetGroupChildInfoFn deliver = Entry(&PX_ClientCallbacks::setGroupChildInfo);
    PX_GroupChildInfo result;
    GetGroupChildInfo(dataPath, &result);
    deliver(info, result.nodeType, result.displayName.c_str(), Length(result.displayName),
            result.matchName.c_str(), Length(result.matchName));
  });
}

void ISensorFileHandler_I::GetStaticDataInfo(const char *dataPath, ::PX_StaticDataInfo *info,
                                             PX_ErrorContext errorContext) {
  RunGuarded(errorContext, [&] {
    RequireRecord(info, "PX_StaticDataInfo");
    const PX_SetStaticDataInfoFn deliver = Entry(&PX_ClientCallbacks::setStaticDataInfo);
    PX_StaticDataInfo result;
    GetStaticDataInfo(dataPath, &result);
    const PX_DataType dataType = HostDataType(result.dataType);
    const PX_StaticValueInfo &value = result.value;
    const PX_StaticValue hostValue{value.kind,
                                   value.boolean ? 1u : 0u,
                                   value.number,
                                   value.text.c_str(),
                                   Length(value.text),
                                   static_cast<std::uint32_t>(value.numbers.size()),
                                   value.numbers.data()};
    deliver(info, result.displayName.c_str(), Length(result.displayName), result.matchName.c_str(),
            Length(result.matchName), &dataType, &hostValue);
  });
}

void ISensorFileHandler_I::GetDynamicDataInfo(const char *dataPath, ::PX_DynamicDataInfo *info,
                                              PX_ErrorContext errorContext) {
  RunGuarded(errorContext, [&] {
    RequireRecord(info, "PX_DynamicDataInfo");
    const PX_SetDynamicDataInfoFn deliver = Entry(&PX_ClientCallbacks::setDynamicDataInfo);
    PX_DynamicDataInfo result;
    GetDynamicDataInfo(dataPath, &result);
    const PX_DataType dataType = HostDataType(result.dataType);
    const PX_TimeRange times{HostTime(result.firstSampleTime), HostTime(result.lastSampleTime)};
    deliver(info, result.displayName.c_str(), Length(result.displayName), result.matchName.c_str(),
            Length(result.matchName), result.sampleSetId.c_str(), Length(result.sampleSetId), &dataType,
            result.interpolation, result.hasExpectedFrequency ? 1u : 0u, result.sampleCount,
            result.maxInterSampleDuration.c_str(), Length(result.maxInterSampleDuration), &times);
  });
}

void ISensorFileHandler_I::GetSampleSet(const char *sampleSetId, std::uint32_t startValue,
                                        std::uint32_t startScale, std::uint32_t endValue,
                                        std::uint32_t endScale, ::DynamicDataSampleSet *samples,
                                        PX_ErrorContext errorContext) {
  RunGuarded(errorContext, [&] {
    DynamicDataSampleSet result;
    RunSampleQuery(samples, "DynamicDataSampleSet", result, [&] {
      GetSampleSet(sampleSetId, startValue, startScale, endValue, endScale, &result);
    });
  });
}

void ISensorFileHandler_I::GetSampleSetWithNeighbours(const char *sampleSetId, std::uint32_t startValue,
                                                      std::uint32_t startScale, std::uint32_t endValue,
                                                      std::uint32_t endScale,
                                                      ::DynamicDataSampleSet *samples,
                                                      PX_ErrorContext errorContext) {
  RunGuarded(errorContext, [&] {
    DynamicDataSampleSet result;
    RunSampleQuery(samples, "DynamicDataSampleSet", result, [&] {
      GetSampleSetWithNeighbours(sampleSetId, startValue, startScale, endValue, endScale, &result);
    });
  });
}

void ISensorFileHandler_I::GetFileInfo(::PX_FileInfo *info, PX_ErrorContext errorContext) {
  RunGuarded(errorContext, [&] {
    RequireRecord(info, "PX_FileInfo");
    const PX_SetFileInfoFn deliver = Entry(&PX_ClientCallbacks::setFileInfo);
    PX_FileInfo result;
    GetFileInfo(&result);
    const PX_FileDetails details{result.schemaVersion,   result.timeKind,
                                 result.dropFrame ? 1u : 0u, result.utcPrecision,
                                 result.utcIsGmt ? 1u : 0u, result.converted ? 1u : 0u,
                                 result.version.c_str(), Length(result.version),
                                 result.creator.c_str(), Length(result.creator)};
    deliver(info, result.frameRateValue, result.frameRateScale, result.inputPath.c_str(),
            Length(result.inputPath), result.mgjsonPath.c_str(), Length(result.mgjsonPath), &details);
  });
}

void ISensorFileHandler_I::GetVideoSyncTimeList(::PX_VideoSyncTimeList *list,
                                                PX_ErrorContext errorContext) {
  RunGuarded(errorContext, [&] {
    RequireRecord(list, "PX_VideoSyncTimeList");
    const PX_AddVideoSyncEntryFn deliver = Entry(&PX_ClientCallbacks::addVideoSyncEntry);
    PX_VideoSyncTimeList result;
    GetVideoSyncTimeList(&result);
    for (const VideoSyncEntry &entry : result.entries) {
      deliver(list, entry.fileName.c_str(), Length(entry.fileName), entry.kind,
              entry.timeString.c_str(), Length(entry.timeString), entry.frameNumber);
    }
  });
}

void ISensorFileHandler_I::GetDynamicSampleInfo(const char *sampleSetId, std::uint32_t first,
                                                std::uint32_t second, std::uint32_t byIndex,
                                                ::PX_DynamicSampleInfo *info,
                                                PX_ErrorContext errorContext) {
  RunGuarded(errorContext, [&] {
    PX_DynamicSampleInfo result;
    RunSampleQuery(info, "PX_DynamicSampleInfo", result, [&] {
      GetDynamicSampleInfo(sampleSetId, first, second, byIndex, &result);
    });
  });
}

}  // namespace ns_sensor
