// Per-thread values and their cleanup when a thread ends.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "platform/thread_slot.hpp"

namespace palvex::platform {
namespace {

std::atomic<int> g_cleanedUp{0};
std::atomic<int> g_cleanedUpSum{0};

void CountCleanup(void *value) {
  ++g_cleanedUp;
  g_cleanedUpSum += *static_cast<int *>(value);
  delete static_cast<int *>(value);
}

TEST(ThreadSlot, EachThreadSeesOnlyItsOwnValue) {
  ThreadSlot slot([](void *) {});
  int mine = 1;
  EXPECT_EQ(slot.Get(), nullptr);
  slot.Set(&mine);
  void *seenElsewhere = &mine;
  std::thread([&] { seenElsewhere = slot.Get(); }).join();
  EXPECT_EQ(seenElsewhere, nullptr);
  EXPECT_EQ(slot.Get(), &mine);
  slot.Set(nullptr);
}

TEST(ThreadSlot, EndingThreadsCleanUpTheirValuesOnce) {
  g_cleanedUp = 0;
  g_cleanedUpSum = 0;
  ThreadSlot slot(CountCleanup);
  std::vector<std::thread> threads;
  for (int i = 1; i <= 8; ++i) {
    // Odd threads set a value; even ones never do and have nothing to clean up.
    threads.emplace_back([&slot, i] {
      if (i % 2 == 1) slot.Set(new int(i));
    });
  }
  for (std::thread &thread : threads) thread.join();
  EXPECT_EQ(g_cleanedUp.load(), 4);
  EXPECT_EQ(g_cleanedUpSum.load(), 1 + 3 + 5 + 7);
}

}  // namespace
}  // namespace palvex::platform
