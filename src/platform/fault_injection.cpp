#include "platform/fault_injection.hpp"

#include <array>
#include <mutex>

namespace palvex::platform {

#if PALVEX_FAULT_INJECTION

namespace {

struct ArmedFault {
  ErrorKind error = ErrorKind::None;
  std::uint32_t skip = 0;
  std::uint32_t remaining = 0;
  std::uint32_t triggered = 0;
};

std::mutex faultMutex;
std::array<ArmedFault, kFaultPointCount> faults;

bool AnyRemaining() {
  for (const ArmedFault &fault : faults) {
    if (fault.remaining > 0) return true;
  }
  return false;
}

}  // namespace

namespace detail {

std::atomic<bool> anyFaultArmed{false};

std::optional<ErrorKind> TakeArmedFault(FaultPoint point) noexcept {
  std::lock_guard lock(faultMutex);
  ArmedFault &fault = faults[static_cast<std::size_t>(point)];
  if (fault.remaining == 0) return std::nullopt;
  if (fault.skip > 0) {
    --fault.skip;
    return std::nullopt;
  }
  --fault.remaining;
  ++fault.triggered;
  if (!AnyRemaining()) anyFaultArmed.store(false, std::memory_order_relaxed);
  return fault.error;
}

}  // namespace detail

bool FaultInjectionAvailable() noexcept { return true; }

void ArmFault(FaultPoint point, ErrorKind error, std::uint32_t count, std::uint32_t skip) {
  std::lock_guard lock(faultMutex);
  faults[static_cast<std::size_t>(point)] = ArmedFault{error, skip, count, 0};
  detail::anyFaultArmed.store(AnyRemaining(), std::memory_order_relaxed);
}

void DisarmAllFaults() noexcept {
  std::lock_guard lock(faultMutex);
  faults.fill(ArmedFault{});
  detail::anyFaultArmed.store(false, std::memory_order_relaxed);
}

std::uint32_t FaultsTriggered(FaultPoint point) noexcept {
  std::lock_guard lock(faultMutex);
  return faults[static_cast<std::size_t>(point)].triggered;
}

#else

bool FaultInjectionAvailable() noexcept { return false; }
void ArmFault(FaultPoint, ErrorKind, std::uint32_t, std::uint32_t) {}
void DisarmAllFaults() noexcept {}
std::uint32_t FaultsTriggered(FaultPoint) noexcept { return 0; }

#endif

}  // namespace palvex::platform
