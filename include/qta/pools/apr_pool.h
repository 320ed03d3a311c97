// qta/pools/apr_pool.h: an APR memory pool with a readable, unique tag.
//
// An APRPool either owns its APR pool (it created it and destroys it) or
// borrows one that someone else owns and leaves it alone. A tagged pool
// carries the tag "SERIAL-NAME" ("SERIAL-<no name>" without a name), SERIAL
// counting up from 0 across the process, which APR's pool debugging shows.
// Every APRPool is also an APRInitializer, so APR stays alive while it exists.
//
// Ownership: an owned pool dies with its APRPool, and APR destroys a child
// pool when its parent is cleared or destroyed. When the parent goes first,
// the child APRPool notices: handle() turns null and its destructor has
// nothing left to destroy. Clearing an APRPool's own pool keeps its handle.
//
// Threads: APR pools are not thread-safe, so one APRPool (and the pools
// under it) belongs to one thread at a time. Different APRPools may be created
// and destroyed on different threads at once; their tags stay unique.
#ifndef QTA_POOLS_APR_POOL_H_
#define QTA_POOLS_APR_POOL_H_

#include <apr_pools.h>

#include <string>

#include "qta/export.h"
#include "qta/pools/apr_initializer.h"

namespace qta {

class QTA_EXPORT APRPool : public APRInitializer {
 public:
  // With a null `name` and a non-null `parent`, borrows `parent`: no new
  // pool, no tag. Otherwise creates a pool under `parent` (a root pool when
  // `parent` is null), owns it and tags it. Throws std::bad_alloc when APR
  // cannot create the pool.
  APRPool(apr_pool_t* parent, const char* name);
  // A new root pool, owned and tagged.
  explicit APRPool(const char* name);
  // A new pool under `parent`'s pool, owned; tagged only when `name` is not
  // null. Throws std::invalid_argument when `parent`'s pool is already gone.
  APRPool(APRPool& parent, const char* name);
  // Destroys the pool when owned and still alive; never throws.
  ~APRPool() override;

  APRPool(const APRPool&) = delete;
  APRPool& operator=(const APRPool&) = delete;

  // The APR pool for APR calls; null once a parent pool took an owned pool
  // down with it.
  apr_pool_t* handle() const noexcept { return pool_; }
  // The tag handed to APR; empty for a borrowed or untagged pool.
  const std::string& tag() const noexcept { return tag_; }

 private:
  // Creates an owned pool under `parent` (root when null) and tags it when
  // `tagged`, with "<no name>" standing in for a null `name`.
  void create(apr_pool_t* parent, const char* name, bool tagged);
  static apr_status_t forget(void* self) noexcept;

  apr_pool_t* pool_ = nullptr;
  bool owned_ = false;
  std::string tag_;
  // The parent that reports the pool's destruction; null for root and
  // borrowed pools.
  apr_pool_t* parent_ = nullptr;
};

}  // namespace qta

#endif  // QTA_POOLS_APR_POOL_H_
