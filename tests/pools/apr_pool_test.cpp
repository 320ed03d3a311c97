#include "qta/pools/apr_pool.h"

#include <apr_strings.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>

namespace qta {
namespace {

// A cleanup that counts how often APR destroyed (or cleared) a pool.
apr_status_t countOne(void* counter) {
  ++*static_cast<int*>(counter);
  return APR_SUCCESS;
}

// Allocation works: APR is up and the pool is live.
void expectUsable(const APRPool& pool) {
  ASSERT_NE(pool.handle(), nullptr);
  EXPECT_STREQ(apr_pstrdup(pool.handle(), "payload"), "payload");
}

// Each pool is the only user, so every round starts and terminates APR; a
// second user joins, and the child goes down with its parent, cleared on odd
// rounds (which keeps the parent) and destroyed on even ones.
TEST(APRInitializer, SurvivesManyStartsAndStopsInARow) {
  for (int round = 0; round < 500; ++round) {
    auto pool = std::make_unique<APRPool>("round");
    APRInitializer second;
    APRPool child(*pool, "child");
    EXPECT_EQ(APRInitializer::users(), 3u);
    if (round % 2 == 1) {
      apr_pool_clear(pool->handle());
      expectUsable(*pool);
    } else {
      pool.reset();
    }
    EXPECT_EQ(child.handle(), nullptr);
  }
  EXPECT_EQ(APRInitializer::users(), 0u);
}

// Each way of making a pool; an owned one takes its child down with it, a
// borrowed one leaves the pool to its owner.
TEST(APRPool, OwnedPoolsGoWithTheirObjectsBorrowedOnesStay) {
  int rootDestroyed = 0;
  APRPool root("root");
  apr_pool_cleanup_register(root.handle(), &rootDestroyed, countOne, apr_pool_cleanup_null);
  for (int form = 0; form < 4; ++form) {
    std::unique_ptr<APRPool> pool =
        form == 0   ? std::make_unique<APRPool>(root.handle(), "by-handle")
        : form == 1 ? std::make_unique<APRPool>(root, "by-object")
        : form == 2 ? std::make_unique<APRPool>(root, nullptr)
                    : std::make_unique<APRPool>(root.handle(), nullptr);  // borrowed
    EXPECT_EQ(pool->handle() == root.handle(), form == 3) << form;
    if (form == 3) {
      EXPECT_EQ(pool->tag(), "");
      continue;  // destroyed here, it must leave the root alive
    }
    EXPECT_EQ(apr_pool_parent_get(pool->handle()), root.handle()) << form;
    APRPool child(*pool, nullptr);
    int childDestroyed = 0;
    apr_pool_cleanup_register(child.handle(), &childDestroyed, countOne, apr_pool_cleanup_null);
    pool.reset();
    EXPECT_EQ(childDestroyed, 1) << form;
    EXPECT_EQ(child.handle(), nullptr) << form;
    EXPECT_THROW(APRPool(child, "orphan"), std::invalid_argument);
  }
  EXPECT_EQ(rootDestroyed, 0);
}

// The tags of a named pool, an unnamed one, one by handle, and an untagged
// and a tagged child.
std::string tagsOfNewPools() {
  APRPool a("a"), unnamed(nullptr), b(nullptr, "b"), untagged(a, nullptr), c(a, "c");
  return a.tag() + "|" + unnamed.tag() + "|" + b.tag() + "|" + untagged.tag() + "|" + c.tag();
}

// The serial counts every tagged pool the process made, so the first tags are
// checked in a fresh copy of the test program.
TEST(APRPoolDeathTest, FirstTagsOfAProcessCountFromZero) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(std::exit(tagsOfNewPools() == "0-a|1-<no name>|2-b||3-c" ? 0 : 1),
              testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace qta
