#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "qta/thread/counting_rw_lock.h"

namespace qta {
namespace {

using namespace std::chrono_literals;

// Starts `count` threads that take the lock shared and hold it until
// `release` is set.
std::vector<std::thread> sharedHolders(CountingRWLock& lock, int count,
                                       const std::atomic<bool>& release) {
  std::vector<std::thread> holders;
  for (int i = 0; i < count; ++i) {
    holders.emplace_back([&] {
      lock.lockShared();
      while (!release.load()) std::this_thread::sleep_for(1ms);
      lock.unlock();
    });
  }
  return holders;
}

void waitForCount(const CountingRWLock& lock, int32_t count) {
  while (lock.count() != count) std::this_thread::sleep_for(1ms);
}

TEST(ConcurrentCountingRWLock, AtMostMaxSharedPlusOneShareTheLock) {
  CountingRWLock lock(2);
  std::atomic<bool> release{false};
  std::vector<std::thread> holders = sharedHolders(lock, 4, release);
  waitForCount(lock, 3);
  std::this_thread::sleep_for(20ms);
  EXPECT_EQ(lock.count(), 3);  // the fourth waits
  release = true;
  for (std::thread& holder : holders) holder.join();
  EXPECT_EQ(lock.count(), 0);
}

TEST(ConcurrentCountingRWLock, ExclusiveHolderWaitsForSharedOnesAndShutsThemOut) {
  CountingRWLock lock;
  std::atomic<bool> release{false};
  std::vector<std::thread> holders = sharedHolders(lock, 2, release);
  waitForCount(lock, 2);
  std::atomic<bool> exclusive{false};
  std::thread writer([&] {
    lock.lockExclusive();
    exclusive = true;
  });
  std::this_thread::sleep_for(20ms);
  EXPECT_FALSE(exclusive.load());
  release = true;
  for (std::thread& holder : holders) holder.join();
  writer.join();
  EXPECT_EQ(lock.count(), -1);

  std::atomic<bool> reading{false};
  std::thread reader([&] {
    lock.lockShared();
    reading = true;
    lock.unlock();
  });
  std::this_thread::sleep_for(20ms);
  EXPECT_FALSE(reading.load());
  lock.unlock();  // ends the exclusive hold
  reader.join();
  EXPECT_TRUE(reading.load());
  EXPECT_EQ(lock.count(), 0);
  lock.unlock();  // never below 0
  EXPECT_EQ(lock.count(), 0);
}

}  // namespace
}  // namespace qta
