#include "heap_meter.hpp"

#include <malloc.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>

extern "C" {
void *__libc_malloc(std::size_t);
void *__libc_calloc(std::size_t, std::size_t);
void *__libc_realloc(void *, std::size_t);
void __libc_free(void *);
void *__libc_memalign(std::size_t, std::size_t);
}

namespace palvex::bench {
namespace {

std::atomic<std::size_t> g_inUse{0};
std::atomic<std::size_t> g_peak{0};

void Add(void *pointer) {
  if (!pointer) return;
  const std::size_t now = g_inUse.fetch_add(malloc_usable_size(pointer)) + malloc_usable_size(pointer);
  std::size_t peak = g_peak.load();
  while (now > peak && !g_peak.compare_exchange_weak(peak, now)) {
  }
}

void Remove(void *pointer) {
  if (pointer) g_inUse.fetch_sub(malloc_usable_size(pointer));
}

}  // namespace

std::size_t HeapInUse() { return g_inUse.load(); }
std::size_t HeapPeak() { return g_peak.load(); }
void ResetHeapPeak() { g_peak.store(g_inUse.load()); }

}  // namespace palvex::bench

using palvex::bench::Add;
using palvex::bench::Remove;

extern "C" {

void *malloc(std::size_t size) {
  void *pointer = __libc_malloc(size);
  Add(pointer);
  return pointer;
}

void *calloc(std::size_t count, std::size_t size) {
  void *pointer = __libc_calloc(count, size);
  Add(pointer);
  return pointer;
}

void *realloc(void *old, std::size_t size) {
  Remove(old);
  void *pointer = __libc_realloc(old, size);
  Add(pointer ? pointer : (size ? old : nullptr));
  return pointer;
}

void free(void *pointer) {
  Remove(pointer);
  __libc_free(pointer);
}

void *memalign(std::size_t alignment, std::size_t size) {
  void *pointer = __libc_memalign(alignment, size);
  Add(pointer);
  return pointer;
}

void *aligned_alloc(std::size_t alignment, std::size_t size) { return memalign(alignment, size); }

int posix_memalign(void **out, std::size_t alignment, std::size_t size) {
  void *pointer = memalign(alignment, size);
  if (!pointer) return ENOMEM;
  *out = pointer;
  return 0;
}

}  // extern "C"
