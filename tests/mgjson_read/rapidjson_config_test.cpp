// RapidJSON's own checks raise the library's assertion failure instead of aborting, and
// a failed allocation raises memory exhaustion instead of handing out null.
#include "mgjson_read/rapidjson_config.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <new>

#include "mgjson_read/mgjson_test_support.hpp"

namespace ns_sensor {
namespace {

using testing::Capture;
using testing::Fault;

const Fault kAssertion{19, "Assertion failure:RapidJSON.", -1};

TEST(RapidJsonConfig, AssertionsRaise) {
  const JsonValue number(1.0);
  EXPECT_EQ(Capture([&] { (void)number.GetString(); }), kAssertion);
  JsonDocument array;
  array.SetArray();
  EXPECT_EQ(Capture([&] { (void)array[0]; }), kAssertion);
}

#if defined(__SANITIZE_ADDRESS__)
#define PALVEX_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define PALVEX_ADDRESS_SANITIZER 1
#endif
#endif

#ifndef PALVEX_ADDRESS_SANITIZER
// Address sanitizers report an impossible allocation instead of returning null.
TEST(RapidJsonConfig, AnImpossibleAllocationRaises) {
  JsonAllocator allocator;
  volatile std::size_t impossible = SIZE_MAX / 2;  // opaque, so the compiler does not object
  // Memory exhaustion, which the guard reports as code 34.
  EXPECT_THROW(allocator.Malloc(impossible), std::bad_alloc);
}
#endif

}  // namespace
}  // namespace ns_sensor
