#include "qta/pools/apr_initializer.h"

#include <apr_general.h>
#include <apr_pools.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <mutex>

namespace qta {
namespace {

// Free memory the global allocator keeps for reuse before returning it to the
// system.
constexpr apr_size_t kGlobalFreeMemoryCap = 0x20000;

std::atomic<std::uint32_t> userCount{0};

// Start-up and shutdown of APR are not safe against each other, so the step
// from 0 users to 1 and back happens under this lock.
std::mutex& lifecycleMutex() {
  static std::mutex mutex;
  return mutex;
}

[[noreturn]] void abortStartUp(const char* step) {
  std::fprintf(stderr, "qta: APR start-up failed in %s\n", step);
  std::abort();
}

void startApr() {
  if (apr_initialize() != APR_SUCCESS) abortStartUp("apr_initialize");
  apr_pool_t* pool = nullptr;
  if (apr_pool_create_ex(&pool, nullptr, nullptr, nullptr) != APR_SUCCESS) {
    abortStartUp("apr_pool_create_ex");
  }
  apr_allocator_max_free_set(apr_pool_allocator_get(pool), kGlobalFreeMemoryCap);
  apr_pool_destroy(pool);
}

}  // namespace

APRInitializer::APRInitializer() {
  std::lock_guard<std::mutex> lock(lifecycleMutex());
  if (userCount.load() == 0) startApr();
  userCount.fetch_add(1);
}

APRInitializer::~APRInitializer() {
  std::lock_guard<std::mutex> lock(lifecycleMutex());
  if (userCount.fetch_sub(1) == 1) apr_terminate();
}

std::uint32_t APRInitializer::users() noexcept { return userCount.load(); }

}  // namespace qta
