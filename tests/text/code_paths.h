// Runs a check on both code paths of the text codecs: the portable kernels
// and the AVX2 ones (where the processor has them).
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

}  // namespace qtatest

#endif  // QTA_TESTS_TEXT_CODE_PATHS_H_
