// A test-only seam that makes calls of the native file backend fail on demand, so tests
// can produce what a real system rarely gives on request: a full disk, a refused open
// (tests run as root, where permission bits refuse nothing), a failing read or rename,
// a temporary directory that has gone.
//
// Backends call TakeFault(point) at the start of each operation; when it returns a kind,
// the operation records it as the thread's last error and fails with it, touching
// nothing. Unarmed, the check is one relaxed atomic load. Built without
// PALVEX_FAULT_INJECTION, TakeFault is a constant "no fault" and arming does nothing.
// None of this is reachable through the library's exported functions.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "platform/native_file.hpp"

#if PALVEX_FAULT_INJECTION
#include <atomic>
#endif

namespace palvex::platform {

// One point per backend operation of native_file.hpp.
enum class FaultPoint : std::uint8_t {
  CheckPath,
  OpenFile,
  CloseFile,
  ReadFile,
  WriteFile,
  SeekFile,
  SetEndOfFile,
  FileSize,
  QueryPathKind,
  DeleteFile,
  MovePath,
  OpenFolderSearch,
  NextFolderEntry,
  CloseFolderSearch,
  TempDirectory,
  CreateUniqueTempFile,
  MapWholeFile,
  UnmapWholeFile,
};
inline constexpr std::size_t kFaultPointCount = 18;

// True when this build carries the seam (tests of injected faults skip otherwise).
bool FaultInjectionAvailable() noexcept;

// Makes calls at the point fail with error: the first `skip` calls from now pass, the
// `count` calls after them fail, later calls pass again. Re-arming a point replaces its
// previous setting. Shared by all threads.
void ArmFault(FaultPoint point, ErrorKind error, std::uint32_t count = 1, std::uint32_t skip = 0);

// Clears every armed point and its count of failures.
void DisarmAllFaults() noexcept;

// How many failures the point has produced since it was armed (0 after DisarmAllFaults).
std::uint32_t FaultsTriggered(FaultPoint point) noexcept;

#if PALVEX_FAULT_INJECTION
namespace detail {
extern std::atomic<bool> anyFaultArmed;
std::optional<ErrorKind> TakeArmedFault(FaultPoint point) noexcept;
}  // namespace detail

// For backends: the kind this call must fail with, if any.
inline std::optional<ErrorKind> TakeFault(FaultPoint point) noexcept {
  if (!detail::anyFaultArmed.load(std::memory_order_relaxed)) return std::nullopt;
  return detail::TakeArmedFault(point);
}
#else
inline constexpr std::optional<ErrorKind> TakeFault(FaultPoint) noexcept { return std::nullopt; }
#endif

// Arms a point for the lifetime of a scope and clears every point when it ends, so a
// failing test cannot leave a fault armed for the next one.
class ScopedFault {
 public:
  ScopedFault(FaultPoint point, ErrorKind error, std::uint32_t count = 1, std::uint32_t skip = 0) {
    ArmFault(point, error, count, skip);
  }
  ~ScopedFault() { DisarmAllFaults(); }
  ScopedFault(const ScopedFault &) = delete;
  ScopedFault &operator=(const ScopedFault &) = delete;
};

}  // namespace palvex::platform
