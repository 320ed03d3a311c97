#include <gtest/gtest.h>

#include <set>
#include <string>
#include <thread>
#include <vector>

#include "qta/pools/apr_pool.h"

namespace qta {
namespace {

// Threads race to be APR's first user, build pool trees and tear them down;
// APR starts and stops under them and no two tags repeat.
TEST(ConcurrentAPRPool, ThreadsShareTheRuntimeAndTheSerial) {
  constexpr int kThreads = 4, kRounds = 200;
  std::vector<std::vector<std::string>> tags(kThreads);
  std::vector<std::thread> threads;
  for (auto& list : tags) {
    threads.emplace_back([&list] {
      for (int round = 0; round < kRounds; ++round) {
        APRPool root("root"), child(root, "child");
        apr_palloc(child.handle(), 64);
        list.insert(list.end(), {root.tag(), child.tag()});
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  std::set<std::string> distinct;
  for (const auto& list : tags) distinct.insert(list.begin(), list.end());
  EXPECT_EQ(distinct.size(), size_t{kThreads * kRounds * 2});
  EXPECT_EQ(APRInitializer::users(), 0u);
}

}  // namespace
}  // namespace qta
