#include "qta/pools/apr_pool.h"

#include <atomic>
#include <cstdint>
#include <new>
#include <stdexcept>

#include "qta/utils/format.h"

namespace qta {
namespace {

std::atomic<std::uint32_t> poolSerial{0};

}  // namespace

APRPool::APRPool(apr_pool_t* parent, const char* name) {
  if (parent != nullptr && name == nullptr) {
    pool_ = parent;
    return;
  }
  create(parent, name, true);
}

APRPool::APRPool(const char* name) { create(nullptr, name, true); }

APRPool::APRPool(APRPool& parent, const char* name) {
  if (parent.pool_ == nullptr) {
    throw std::invalid_argument("APRPool: the parent's pool is already destroyed");
  }
  create(parent.pool_, name, name != nullptr);
}

APRPool::~APRPool() {
  if (!owned_ || pool_ == nullptr) return;
  if (parent_ != nullptr) apr_pool_cleanup_kill(parent_, this, &APRPool::forget);
  apr_pool_destroy(pool_);
}

void APRPool::create(apr_pool_t* parent, const char* name, bool tagged) {
  // The tag is built first: APR keeps only the pointer, so it must not move
  // once the pool has it, and a failure here must not leave a pool behind.
  if (tagged) {
    tag_ = formatString("%u-%s", poolSerial.fetch_add(1), name != nullptr ? name : "<no name>");
  }
  if (apr_pool_create_ex(&pool_, parent, nullptr, nullptr) != APR_SUCCESS) {
    pool_ = nullptr;
    throw std::bad_alloc();
  }
  owned_ = true;
  if (tagged) apr_pool_tag(pool_, tag_.c_str());
  // APR destroys a child pool whenever its parent is cleared or destroyed,
  // before the parent's cleanups run; this one tells the object, so that its
  // destructor does not destroy the pool a second time. A root pool's parent
  // is APR's global pool, which lives until the last APRInitializer is gone.
  if (parent != nullptr) {
    parent_ = parent;
    apr_pool_cleanup_register(parent_, this, &APRPool::forget, apr_pool_cleanup_null);
  }
}

apr_status_t APRPool::forget(void* self) noexcept {
  static_cast<APRPool*>(self)->pool_ = nullptr;
  return APR_SUCCESS;
}

}  // namespace qta
