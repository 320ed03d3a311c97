#include "qta/pools/apr_pool.h"

#include <apr_strings.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>

namespace qta {
namespace {

// Counts how often APR destroyed (or cleared) the pool it is registered on.
struct DestructionProbe {
  int count = 0;

  void watch(apr_pool_t* pool) {
    apr_pool_cleanup_register(pool, this, &DestructionProbe::note, apr_pool_cleanup_null);
  }
  static apr_status_t note(void* self) {
    ++static_cast<DestructionProbe*>(self)->count;
    return APR_SUCCESS;
  }
};

// Allocation works: APR is up and the pool is live.
void expectUsable(const APRPool& pool) {
  ASSERT_NE(pool.handle(), nullptr);
  const char* copy = apr_pstrdup(pool.handle(), "payload");
  EXPECT_STREQ(copy, "payload");
}

TEST(APRInitializer, StartsWithTheFirstUserAndStopsAfterTheLast) {
  ASSERT_EQ(APRInitializer::users(), 0u);
  for (int round = 0; round < 2; ++round) {
    {
      APRInitializer first;
      APRPool pool("pool");
      EXPECT_EQ(APRInitializer::users(), 2u);
      expectUsable(pool);
    }
    EXPECT_EQ(APRInitializer::users(), 0u);
  }
}

TEST(APRInitializer, SurvivesManyStartsAndStopsInARow) {
  // Each pool is the only user, so every round starts and terminates APR;
  // every other round a child goes down with its parent.
  for (int round = 0; round < 500; ++round) {
    APRPool pool("round");
    expectUsable(pool);
    if (round % 2 == 0) {
      APRPool child(pool, "child");
      apr_palloc(child.handle(), 100000);
    }
  }
  EXPECT_EQ(APRInitializer::users(), 0u);
}

TEST(APRPool, OwnedPoolsAreDestroyedWithTheirObjects) {
  APRPool root("root");
  DestructionProbe rootChild, namedChild, anonymousChild;
  {
    APRPool byHandle(root.handle(), "by-handle");
    APRPool byObject(root, "by-object");
    APRPool anonymous(root, nullptr);
    rootChild.watch(byHandle.handle());
    namedChild.watch(byObject.handle());
    anonymousChild.watch(anonymous.handle());
    for (const APRPool* pool : {&byHandle, &byObject, &anonymous}) {
      EXPECT_NE(pool->handle(), root.handle());
      EXPECT_EQ(apr_pool_parent_get(pool->handle()), root.handle());
    }
  }
  EXPECT_EQ(rootChild.count, 1);
  EXPECT_EQ(namedChild.count, 1);
  EXPECT_EQ(anonymousChild.count, 1);
}

TEST(APRPool, BorrowedPoolIsLeftToItsOwner) {
  auto owner = std::make_unique<APRPool>("owner");
  DestructionProbe probe;
  probe.watch(owner->handle());
  {
    APRPool borrowed(owner->handle(), nullptr);
    EXPECT_EQ(borrowed.handle(), owner->handle());
    EXPECT_EQ(borrowed.tag(), "");
  }
  EXPECT_EQ(probe.count, 0);
  expectUsable(*owner);
  owner.reset();
  EXPECT_EQ(probe.count, 1);
}

TEST(APRPool, ChildGoesDownWithItsParent) {
  auto parent = std::make_unique<APRPool>("parent");
  auto child = std::make_unique<APRPool>(*parent, "child");
  auto grandchild = std::make_unique<APRPool>(*child, nullptr);
  DestructionProbe probe;
  probe.watch(grandchild->handle());

  parent.reset();
  EXPECT_EQ(probe.count, 1);
  EXPECT_EQ(child->handle(), nullptr);
  EXPECT_EQ(grandchild->handle(), nullptr);
  EXPECT_THROW(APRPool(*child, "orphan"), std::invalid_argument);
  child.reset();
  grandchild.reset();
  EXPECT_EQ(APRInitializer::users(), 0u);
}

TEST(APRPool, ClearingTheParentTakesTheChildButKeepsTheParent) {
  APRPool parent("parent");
  APRPool child(parent, "child");
  apr_pool_clear(parent.handle());
  EXPECT_EQ(child.handle(), nullptr);
  expectUsable(parent);

  // Clearing a pool's own contents keeps it.
  APRPool second(parent, "second");
  apr_pool_clear(second.handle());
  expectUsable(second);
}

// The first tagged pools of a process: run in a fresh copy of the test
// program, since the serial counts every tagged pool the process made.
TEST(APRPoolDeathTest, FirstTagsOfAProcessCountFromZero) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        APRPool a("a");
        APRPool unnamed(nullptr);
        APRPool b(nullptr, "b");
        APRPool untagged(a, nullptr);
        APRPool c(a, "c");
        const std::string tags =
            a.tag() + "|" + unnamed.tag() + "|" + b.tag() + "|" + untagged.tag() + "|" + c.tag();
        std::fprintf(stderr, "tags %s\n", tags.c_str());
        std::exit(tags == "0-a|1-<no name>|2-b||3-c" ? 0 : 1);
      },
      testing::ExitedWithCode(0), "tags 0-a\\|1-<no name>\\|2-b\\|\\|3-c");
}

}  // namespace
}  // namespace qta
