// Counting the handles a Windows process holds. The system's own count
// (GetProcessHandleCount) is not kept by every implementation of the API, so the handle
// values are probed instead: the system hands out the lowest free values, multiples of
// four, so a range far beyond what a test program holds sees every one.
#include <cstddef>
#include <cstdint>

#include "platform/file_test_support.hpp"

#include <windows.h>

namespace palvex::testing {

std::size_t OpenHandleCount() {
  constexpr std::uintptr_t kHandleStep = 4;
  constexpr std::uintptr_t kProbedValues = 0x1000;
  std::size_t count = 0;
  for (std::uintptr_t value = kHandleStep; value < kProbedValues; value += kHandleStep) {
    DWORD flags = 0;
    if (GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags)) ++count;
  }
  return count;
}

}  // namespace palvex::testing
