// The guard around every client-form operation and exported function: no exception
// leaves it; every failure becomes one report through entry 11.
#pragma once

#include <exception>
#include <new>
#include <utility>

#include "api/px_exception.hpp"
#include "palvex/records.h"

namespace ns_sensor {

// Reports the exception in flight; call only from a catch block.
void ReportCurrentException(PX_ErrorContext context) noexcept;

template <class Body>
void RunGuarded(PX_ErrorContext context, Body &&body) noexcept {
  try {
    std::forward<Body>(body)();
  } catch (...) {
    ReportCurrentException(context);
  }
}

// As RunGuarded, for operations that return a value: failed returns `failed`.
template <class Result, class Body>
Result RunGuardedReturning(PX_ErrorContext context, Result failed, Body &&body) noexcept {
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    ReportCurrentException(context);
    return failed;
  }
}

}  // namespace ns_sensor
