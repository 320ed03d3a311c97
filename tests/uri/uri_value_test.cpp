#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "qta/uri/uri.h"
#include "uri/describe.h"

namespace {

using qtatest::describe;

TEST(URIValue, SettersChangeOnlyTheirOwnCopy) {
  const qta::URI original("http://u@h/a?q#f");
  qta::URI copy = original;
  copy.setScheme("HTTPS");
  EXPECT_FALSE(copy.setHost("a b"));
  EXPECT_TRUE(copy.setHost("[fe80::1%eth0]"));
  copy.setPort(0);
  copy.setPath(qta::URI("/x/y/").path());
  copy.setUserInfo("me:p%41 s");
  copy.setQuery("a%3db c");
  copy.setFragment("%2a[x]");
  EXPECT_EQ(original.toString(), "http://u@h/a?q#f");
  EXPECT_EQ(copy.toString(), "https://me:pA%20s@[fe80::1%25eth0]/x/y/?a%3Db%20c#*[x]");

  qta::URI moved = std::move(copy);
  EXPECT_EQ(describe(copy), describe(qta::URI()));  // NOLINT(bugprone-use-after-move)
  copy = moved;
  moved.setPort(8443);
  EXPECT_EQ(copy.port(), 443u);
  EXPECT_EQ(describe(qta::URI("https", "Host", 0)), "https||Host|443|||");
}

// Run under ThreadSanitizer: a URI writes its shared data in place only after
// every other holder's last use of it.
TEST(ConcurrentURI, CopiesSetAndDroppedOnSeveralThreads) {
  constexpr int kThreads = 4;
  qta::URI owner("http://h/a?q=start");
  for (int round = 0; round < 100; ++round) {
    // Relaxed on purpose: only the URI's own count may order the copies'
    // reads before the owner's write.
    std::atomic<int> dropped{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
      threads.emplace_back([copy = owner, t, &dropped]() mutable {
        EXPECT_EQ(copy.toString().rfind("http://h/a?q=", 0), 0u);
        if (t % 2 == 0) copy.setQuery("t=" + std::to_string(t));
        EXPECT_EQ(copy.query()[0], t % 2 == 0 ? 't' : 'q');
        copy = qta::URI();
        copy.setScheme("ftp");  // every empty URI shares one value: it must be copied first
        EXPECT_EQ(qta::URI().scheme(), "");
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
