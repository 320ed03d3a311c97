// The step of the abstract priority scale inside a scheduling policy's range.
#ifndef QTA_SRC_THREAD_PRIORITY_SCALE_H_
#define QTA_SRC_THREAD_PRIORITY_SCALE_H_

#include <cstdint>

namespace qta::detail {

// Step `step` of 0 (the policy's `min`) to 4 (its `max`), spread evenly and
// rounded toward zero: 1..99 gives 1, 25, 50, 74, 99.
constexpr int scaledPriority(int min, int max, int32_t step) {
  return min + ((max - min) * step) / 4;
}

}  // namespace qta::detail

#endif  // QTA_SRC_THREAD_PRIORITY_SCALE_H_
