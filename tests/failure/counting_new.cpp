// The program's own global operator new and delete, which count allocations and fail the
// armed one. Memory comes from malloc, so the sanitizers still see every block.
#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

#include "failure/allocation_failure.hpp"
#include "platform/allocation_gate.hpp"

namespace palvex::failure {
namespace {

std::atomic<bool> armed{false};
std::atomic<bool> failed{false};
std::atomic<std::uint64_t> remaining{0};
thread_local int countedDepth = 0;

// True for the one allocation that must fail.
bool TakeFailure() noexcept {
  if (!armed.load(std::memory_order_relaxed) || countedDepth == 0) return false;
  if (remaining.fetch_sub(1, std::memory_order_relaxed) != 1) return false;
  armed.store(false, std::memory_order_relaxed);
  failed.store(true, std::memory_order_relaxed);
  return true;
}

void *Allocate(std::size_t size, std::size_t alignment) noexcept {
  if (TakeFailure()) return nullptr;
  if (size == 0) size = 1;
  if (alignment <= alignof(std::max_align_t)) return std::malloc(size);
  return std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
}

void *AllocateOrThrow(std::size_t size, std::size_t alignment) {
  void *block = Allocate(size, alignment);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

}  // namespace

void FailAllocation(std::uint64_t n) noexcept {
  failed.store(false, std::memory_order_relaxed);
  remaining.store(n, std::memory_order_relaxed);
  armed.store(n > 0, std::memory_order_relaxed);
  palvex::platform::SetAllocationGate(&TakeFailure);
}

bool StopFailing() noexcept {
  armed.store(false, std::memory_order_relaxed);
  palvex::platform::SetAllocationGate(nullptr);
  return failed.load(std::memory_order_relaxed);
}

CountedScope::CountedScope() noexcept { ++countedDepth; }
CountedScope::~CountedScope() { --countedDepth; }

}  // namespace palvex::failure

using palvex::failure::Allocate;
using palvex::failure::AllocateOrThrow;

void *operator new(std::size_t size) { return AllocateOrThrow(size, 0); }
void *operator new[](std::size_t size) { return AllocateOrThrow(size, 0); }
void *operator new(std::size_t size, const std::nothrow_t &) noexcept { return Allocate(size, 0); }
void *operator new[](std::size_t size, const std::nothrow_t &) noexcept { return Allocate(size, 0); }
void *operator new(std::size_t size, std::align_val_t align) { return AllocateOrThrow(size, std::size_t(align)); }
void *operator new[](std::size_t size, std::align_val_t align) { return AllocateOrThrow(size, std::size_t(align)); }
void *operator new(std::size_t size, std::align_val_t align, const std::nothrow_t &) noexcept {
  return Allocate(size, std::size_t(align));
}
void *operator new[](std::size_t size, std::align_val_t align, const std::nothrow_t &) noexcept {
  return Allocate(size, std::size_t(align));
}

void operator delete(void *block) noexcept { std::free(block); }
void operator delete[](void *block) noexcept { std::free(block); }
void operator delete(void *block, std::size_t) noexcept { std::free(block); }
void operator delete[](void *block, std::size_t) noexcept { std::free(block); }
void operator delete(void *block, const std::nothrow_t &) noexcept { std::free(block); }
void operator delete[](void *block, const std::nothrow_t &) noexcept { std::free(block); }
void operator delete(void *block, std::align_val_t) noexcept { std::free(block); }
void operator delete[](void *block, std::align_val_t) noexcept { std::free(block); }
void operator delete(void *block, std::size_t, std::align_val_t) noexcept { std::free(block); }
void operator delete[](void *block, std::size_t, std::align_val_t) noexcept { std::free(block); }
void operator delete(void *block, std::align_val_t, const std::nothrow_t &) noexcept { std::free(block); }
void operator delete[](void *block, std::align_val_t, const std::nothrow_t &) noexcept { std::free(block); }
