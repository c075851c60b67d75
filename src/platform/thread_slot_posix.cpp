// Thread slots on POSIX systems: thread-specific data keys, whose destructor runs when
// a thread ends with a value set.
#include <pthread.h>

#include <new>

#include "platform/thread_slot.hpp"

namespace palvex::platform {

static_assert(sizeof(pthread_key_t) <= sizeof(unsigned long));

ThreadSlot::ThreadSlot(Cleanup cleanup) {
  pthread_key_t key;
  if (pthread_key_create(&key, cleanup) != 0) throw std::bad_alloc();
  index_ = static_cast<unsigned long>(key);
}

ThreadSlot::~ThreadSlot() { pthread_key_delete(static_cast<pthread_key_t>(index_)); }

void *ThreadSlot::Get() const noexcept { return pthread_getspecific(static_cast<pthread_key_t>(index_)); }

void ThreadSlot::Set(void *value) {
  if (pthread_setspecific(static_cast<pthread_key_t>(index_), value) != 0) throw std::bad_alloc();
}

}  // namespace palvex::platform
