// qta/pools/apr_initializer.h: keeps the APR runtime alive while it has users.
//
// APRInitializer is a guard: the first one constructed in the process
// initialises APR (and caps the free-memory cache of APR's global allocator at
// 131072 bytes), the last one destroyed terminates it. Hold one (or an
// APRPool, which is one) for as long as the code calls APR. It owns nothing
// but its share of the process-wide user count.
//
// Threads: guards may be constructed and destroyed on any number of threads
// at once; the user count and the start-up and shutdown steps are serialised
// inside, so even two racing first users are safe.
#ifndef QTA_POOLS_APR_INITIALIZER_H_
#define QTA_POOLS_APR_INITIALIZER_H_

#include <cstdint>

#include "qta/export.h"

namespace qta {

class QTA_EXPORT APRInitializer {
 public:
  // Initialises APR when there is no user yet; aborts the process when APR
  // cannot start, since nothing that needs it could run.
  APRInitializer();
  // Terminates APR when this was the last user.
  virtual ~APRInitializer();

  // A copy would be a new user that the count did not see.
  APRInitializer(const APRInitializer&) = delete;
  APRInitializer& operator=(const APRInitializer&) = delete;

  // The number of guards alive in the process (APR runs while it is above 0).
  static std::uint32_t users() noexcept;
};

}  // namespace qta

#endif  // QTA_POOLS_APR_INITIALIZER_H_
