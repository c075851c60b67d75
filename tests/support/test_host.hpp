// The callback table of the tests: the host helper's, with hooks in the format, path item,
// sample and sync entry deliveries so a test can watch a host function or make it fail. Every test stores this one table, because the
// first table stored stays for the whole process.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "palvex/host.hpp"

namespace palvex::testing {

// Runs before each format is delivered; a test may make it throw.
inline std::function<void()> &FormatDeliveryHook() {
  thread_local std::function<void()> hook;
  return hook;
}

// Runs before each path item (entry 0), sample (entry 5) and sync entry (entry 7) is
// delivered, with the entry's number; a test may record the call or make it throw.
inline std::function<void(int entry)> &HandlerDeliveryHook() {
  thread_local std::function<void(int entry)> hook;
  return hook;
}

// Every call of entry 0, as "name@index/count/last".
inline std::vector<std::string> &PathItemCalls() {
  thread_local std::vector<std::string> calls;
  return calls;
}

inline void RunHandlerDeliveryHook(int entry) {
  if (HandlerDeliveryHook()) HandlerDeliveryHook()(entry);
}

inline const PX_ClientCallbacks *TestCallbacks() {
  static const PX_GroupChildrenFunctions groupChildren = {
      [](PX_GroupChildren *children, const char *name, uint32_t index, uint32_t count, uint32_t last) {
        RunHandlerDeliveryHook(0);
        PathItemCalls().push_back(std::string(name) + "@" + std::to_string(index) + "/" + std::to_string(count) +
                                  "/" + std::to_string(last));
        palvex::host::detail::AddPathItem(children, name, index, count, last);
      }};
  static const PX_ClientCallbacks table = [] {
    PX_ClientCallbacks copy = *palvex::host::Callbacks();
    copy.addSupportedFormat = [](PX_SupportedFormatList *list, const char *extension, const char *name) {
      if (FormatDeliveryHook()) FormatDeliveryHook()();
      palvex::host::detail::AddSupportedFormat(list, extension, name);
    };
    copy.groupChildren = &groupChildren;
    copy.addSample = [](void *record, uint32_t position, uint32_t count, const PX_Time *time,
                        const PX_SampleValue *value, uint8_t flags) {
      RunHandlerDeliveryHook(5);
      palvex::host::detail::AddSampleToRecord(record, position, count, time, value, flags);
    };
    copy.addVideoSyncEntry = [](PX_VideoSyncTimeList *list, const char *fileName, uint32_t fileNameLength,
                                uint32_t syncKind, const char *timeString, uint32_t timeStringLength,
                                int32_t frameNumber) {
      RunHandlerDeliveryHook(7);
      palvex::host::detail::AddVideoSyncEntry(list, fileName, fileNameLength, syncKind, timeString,
                                              timeStringLength, frameNumber);
    };
    return copy;
  }();
  return &table;
}

}  // namespace palvex::testing
