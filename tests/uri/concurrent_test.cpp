// Copies of one URI read, set and dropped on several threads at once. Run
// under ThreadSanitizer, this shows that a URI writes its data in place only
// after every other holder's last use of it.
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "qta/uri/uri.h"

namespace {

constexpr int kRounds = 100;
constexpr int kThreads = 4;

TEST(ConcurrentURI, CopiesSetAndDroppedOnSeveralThreads) {
  qta::URI owner("http://h/a?q=start");
  for (int round = 0; round < kRounds; ++round) {
    // Relaxed on purpose: the owner learns that the copies are gone without
    // any ordering from this counter, so only the URI's own count can order
    // their reads before its write.
    std::atomic<int> dropped{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
      threads.emplace_back([shared = owner, t, &dropped]() mutable {
        qta::URI copy = std::move(shared);
        EXPECT_EQ(copy.toString().rfind("http://h/a?q=", 0), 0u);
        if (t % 2 == 0) {
          copy.setQuery("t=" + std::to_string(t));
          EXPECT_EQ(copy.query(), "t=" + std::to_string(t));
        }
        copy = qta::URI();
        dropped.fetch_add(1, std::memory_order_relaxed);
      });
    }
    while (dropped.load(std::memory_order_relaxed) < kThreads) std::this_thread::yield();
    owner.setQuery("q=" + std::to_string(round));
    EXPECT_EQ(owner.toString(), "http://h/a?q=" + std::to_string(round));
    for (std::thread& thread : threads) thread.join();
  }
}

}  // namespace
