// A test-only gate in front of the library's direct C allocations (RapidJSON's allocator),
// so a test build that makes operator new fail at the N-th call can make these fail in the
// same count. Interposing malloc itself would fight the sanitizers' own allocator.
//
// Unset, the check is one relaxed atomic load. Built without PALVEX_FAULT_INJECTION the
// gate is a constant "allow" and setting it does nothing.
#pragma once

#if PALVEX_FAULT_INJECTION
#include <atomic>
#endif

namespace palvex::platform {

// Asked before each gated allocation; true refuses it.
using AllocationGate = bool (*)() noexcept;

#if PALVEX_FAULT_INJECTION
namespace detail {
inline std::atomic<AllocationGate> allocationGate{nullptr};
}  // namespace detail

// Installs the gate (null removes it). Shared by all threads.
inline void SetAllocationGate(AllocationGate gate) noexcept {
  detail::allocationGate.store(gate, std::memory_order_relaxed);
}

// For allocators: true when this allocation must fail.
inline bool AllocationRefused() noexcept {
  const AllocationGate gate = detail::allocationGate.load(std::memory_order_relaxed);
  return gate != nullptr && gate();
}
#else
inline void SetAllocationGate(AllocationGate) noexcept {}
inline constexpr bool AllocationRefused() noexcept { return false; }
#endif

}  // namespace palvex::platform
