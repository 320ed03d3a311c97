// Runs a check on both code paths of the text codecs: the portable kernels
// and the AVX2 ones (where the processor has them).
#ifndef QTA_TESTS_TEXT_CODE_PATHS_H_
#define QTA_TESTS_TEXT_CODE_PATHS_H_

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

}  // namespace qtatest

#endif  // QTA_TESTS_TEXT_CODE_PATHS_H_
