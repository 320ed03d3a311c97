// Runs a check on each code path of the text codecs: the portable kernels
// and the AVX2 ones (where the processor has them), or each kernel level.
#ifndef QTA_TESTS_TEXT_CODE_PATHS_H_
#define QTA_TESTS_TEXT_CODE_PATHS_H_

#include <cstddef>

#include "text/cpu_features.h"

namespace qtatest {

// Calls run(avx2) with the AVX2 kernels switched off, then on; leaves them on.
template <typename Run>
void onEachCodePath(Run run) {
  for (bool avx2 : {false, true}) {
    qta::text::detail::setAvx2Enabled(avx2);
    run(avx2);
  }
  qta::text::detail::setAvx2Enabled(true);
}

// Calls run(avx2) once, on the path `selector` picks (odd: AVX2); leaves the
// AVX2 kernels on. A fuzzer whose inputs vary reaches both paths at half the
// cost of running each input on both.
template <typename Run>
void onCodePathPickedBy(size_t selector, Run run) {
  const bool avx2 = selector % 2 == 1;
  qta::text::detail::setAvx2Enabled(avx2);
  run(avx2);
  qta::text::detail::setAvx2Enabled(true);
}

using qta::text::detail::VectorLevel;

// Calls run(level) at each kernel level (see cpu_features.h), lowest first;
// leaves every level on. Levels the processor lacks run the lower kernels.
template <typename Run>
void onEachVectorLevel(Run run) {
  for (VectorLevel level : {VectorLevel::kSse2, VectorLevel::kSsse3, VectorLevel::kAvx2}) {
    qta::text::detail::setVectorLevel(level);
    run(level);
  }
  qta::text::detail::setVectorLevel(VectorLevel::kAvx2);
}

// Calls run(level) once, at the level `selector` picks (its remainder by 3);
// leaves every level on.
template <typename Run>
void onVectorLevelPickedBy(size_t selector, Run run) {
  const auto level = static_cast<VectorLevel>(selector % 3);
  qta::text::detail::setVectorLevel(level);
  run(level);
  qta::text::detail::setVectorLevel(VectorLevel::kAvx2);
}

}  // namespace qtatest

#endif  // QTA_TESTS_TEXT_CODE_PATHS_H_
