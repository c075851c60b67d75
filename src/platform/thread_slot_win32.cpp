// Thread slots on Windows: fiber-local storage, whose callback the system runs for a
// thread's value when the thread ends, independently of the C++ runtime.
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <new>

#include "platform/thread_slot.hpp"

namespace palvex::platform {

ThreadSlot::ThreadSlot(Cleanup cleanup) {
  const DWORD index = ::FlsAlloc(cleanup);
  if (index == FLS_OUT_OF_INDEXES) throw std::bad_alloc();
  index_ = index;
}

// Freeing the index runs the cleanup for every value still set, so a library unloaded
// by its host leaves neither values nor a callback into its released code behind.
ThreadSlot::~ThreadSlot() { ::FlsFree(index_); }

void *ThreadSlot::Get() const noexcept { return ::FlsGetValue(index_); }

void ThreadSlot::Set(void *value) {
  if (!::FlsSetValue(index_, value)) throw std::bad_alloc();
}

}  // namespace palvex::platform
