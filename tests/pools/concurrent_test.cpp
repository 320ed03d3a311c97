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
  ASSERT_EQ(APRInitializer::users(), 0u);
  constexpr int kThreads = 4;
  constexpr int kRounds = 200;
  std::vector<std::vector<std::string>> tags(kThreads);
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&tags, t] {
      for (int round = 0; round < kRounds; ++round) {
        APRPool root("root");
        APRPool child(root, "child");
        apr_palloc(child.handle(), 64);
        tags[t].push_back(root.tag());
        tags[t].push_back(child.tag());
      }
    });
  }
  for (std::thread& thread : threads) thread.join();

  std::set<std::string> distinct;
  for (const auto& list : tags) distinct.insert(list.begin(), list.end());
  EXPECT_EQ(distinct.size(), static_cast<size_t>(kThreads * kRounds * 2));
  EXPECT_EQ(APRInitializer::users(), 0u);
}

}  // namespace
}  // namespace qta
