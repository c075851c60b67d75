// RapidJSON as the library uses it. Include this header before any RapidJSON header, in
// every file: RapidJSON's assertions must raise the library's AssertionFailure (code 19)
// instead of aborting, a failed allocation must raise std::bad_alloc (memory exhaustion,
// code 34) instead of writing through a null pointer, and every file must see the same
// definition of RAPIDJSON_ASSERT.
#pragma once

#include <cstdlib>
#include <new>

#include "api/px_exception.hpp"
#include "platform/allocation_gate.hpp"

#ifdef RAPIDJSON_ASSERT
#error "rapidjson_config.hpp must be included before any RapidJSON header"
#endif

namespace ns_sensor {

[[noreturn]] inline void RaiseRapidJsonAssertion() { Raise(Msg::AssertionFailure, "RapidJSON"); }

}  // namespace ns_sensor

// An expression, so it also serves where RapidJSON uses it inside one.
#define RAPIDJSON_ASSERT(condition) \
  ((condition) ? static_cast<void>(0) : ::ns_sensor::RaiseRapidJsonAssertion())

#include <rapidjson/allocators.h>
#include <rapidjson/document.h>

namespace ns_sensor {

// RapidJSON's plain C allocator, except that running out of memory raises instead of
// handing a null pointer to code that does not check for it. The gate lets the
// allocation-failure tests refuse these allocations as they refuse operator new.
class RaisingCrtAllocator {
 public:
  static const bool kNeedFree = true;
  void *Malloc(std::size_t size) {
    if (size == 0) return nullptr;
    if (palvex::platform::AllocationRefused()) throw std::bad_alloc();
    return Checked(std::malloc(size));
  }
  void *Realloc(void *original, std::size_t /*originalSize*/, std::size_t newSize) {
    if (newSize == 0) {
      std::free(original);
      return nullptr;
    }
    if (palvex::platform::AllocationRefused()) throw std::bad_alloc();
    return Checked(std::realloc(original, newSize));
  }
  static void Free(void *pointer) { std::free(pointer); }

 private:
  static void *Checked(void *pointer) {
    if (pointer == nullptr) throw std::bad_alloc();
    return pointer;
  }
};

// The document model of everything the library reads: values in a memory pool that is
// released as a whole with its document.
using JsonAllocator = rapidjson::MemoryPoolAllocator<RaisingCrtAllocator>;
using JsonDocument = rapidjson::GenericDocument<rapidjson::UTF8<>, JsonAllocator, RaisingCrtAllocator>;
using JsonValue = rapidjson::GenericValue<rapidjson::UTF8<>, JsonAllocator>;
using JsonMember = rapidjson::GenericMember<rapidjson::UTF8<>, JsonAllocator>;

}  // namespace ns_sensor
