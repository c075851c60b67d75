// One pointer per thread, with a cleanup that runs for the thread's value when the
// thread ends. The library keeps per-thread state (the last exception of each thread)
// here instead of in a thread_local object: the Windows toolchain emulates thread-local
// storage and releases a thread's storage before the destructors of its thread_local
// objects have run, so those destructors would work on freed memory.
#pragma once

namespace palvex::platform {

class ThreadSlot {
 public:
  // Runs once for each thread whose value is not null when that thread ends, and for
  // every remaining value when the slot itself is destroyed (Windows) or not at all
  // (POSIX: values of threads still running when the slot goes are left as they are).
  using Cleanup = void (*)(void *value);

  // Raises std::bad_alloc when the system has no slot left.
  explicit ThreadSlot(Cleanup cleanup);
  ~ThreadSlot();
  ThreadSlot(const ThreadSlot &) = delete;
  ThreadSlot &operator=(const ThreadSlot &) = delete;

  // The calling thread's value; null until the thread sets one.
  void *Get() const noexcept;

  // Sets the calling thread's value. Raises std::bad_alloc when the system cannot
  // store it.
  void Set(void *value);

 private:
  unsigned long index_;  // the system's slot number (a TLS key or an FLS index)
};

}  // namespace palvex::platform
