// Statuses at the boundary of the object model, both ways. No exception may cross a `_v1`
// operation (converters are separately built modules with their own runtime), so each
// operation runs its body under RunWithStatus; inside the library, ThrowOnFailure (from
// palvex/plugin_helpers.hpp) turns a failed status back into PX_PluginException.
#pragma once

#include <cstdint>
#include <utility>

#include "api/messages.hpp"
#include "palvex/plugin_helpers.hpp"

namespace PX_PLUGIN {

// Throws the plug-in exception with the code of a message row. Object-model failures
// travel as codes; the converter framework turns them into messages.
[[noreturn]] void RaisePluginError(ns_sensor::Msg id, std::int64_t detail1 = -1,
                                   std::int64_t detail2 = -1);

// The status of the exception in flight, also written to error when given: a plug-in
// exception keeps its code and details, a library error with code c becomes c + 1000 with
// the same details, memory exhaustion 1034, anything else 1023. Only inside a catch block.
std::uint32_t StatusOfCurrentException(PX_PluginError *error) noexcept;

// Writes the success record {0, -1, -1} when error is given; returns 0.
std::uint32_t ReportSuccess(PX_PluginError *error) noexcept;

// Rethrows the exception in flight as the PX_PluginException of its status, so that code
// beneath the writer and the sample store reaches its callers in one form. Only inside a
// catch block.
[[noreturn]] void RethrowAsPluginException();

// Runs body; returns 0, or the status of what it threw.
template <class Body>
std::uint32_t RunWithStatus(PX_PluginError *error, Body &&body) noexcept {
  try {
    std::forward<Body>(body)();
    return ReportSuccess(error);
  } catch (...) {
    return StatusOfCurrentException(error);
  }
}

}  // namespace PX_PLUGIN
