// Runs a check on the code paths of the text codecs: the portable kernels and
// the AVX2 ones and up (where the processor has them), or on every
// instruction-set level the kernels have.
#ifndef QTA_TESTS_TEXT_CODE_PATHS_H_
#define QTA_TESTS_TEXT_CODE_PATHS_H_

#include <cstddef>
#include <iterator>

#include "text/cpu_features.h"

namespace qtatest {

// Calls run(avx2) with the AVX2 kernels (and those above) switched off, then
// on; leaves them on.
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

inline constexpr VectorLevel kVectorLevels[] = {VectorLevel::kSse2, VectorLevel::kSsse3,
                                                VectorLevel::kAvx2, VectorLevel::kAvx512};

inline const char* vectorLevelName(VectorLevel level) {
  switch (level) {
    case VectorLevel::kSse2:
      return "SSE2";
    case VectorLevel::kSsse3:
      return "SSSE3";
    case VectorLevel::kAvx2:
      return "AVX2";
    case VectorLevel::kAvx512:
      return "AVX-512";
  }
  return "?";
}

// Calls run(level) with the kernels allowed up to each level in turn (a level
// the processor lacks runs the highest one it has); leaves every level on.
template <typename Run>
void onEachVectorLevel(Run run) {
  for (VectorLevel level : kVectorLevels) {
    qta::text::detail::setVectorLevel(level);
    run(level);
  }
  qta::text::detail::setVectorLevel(VectorLevel::kAvx512);
}

// Calls run(level) once, on the level `selector` picks; leaves every level on.
template <typename Run>
void onVectorLevelPickedBy(size_t selector, Run run) {
  const VectorLevel level = kVectorLevels[selector % std::size(kVectorLevels)];
  qta::text::detail::setVectorLevel(level);
  run(level);
  qta::text::detail::setVectorLevel(VectorLevel::kAvx512);
}

}  // namespace qtatest

#endif  // QTA_TESTS_TEXT_CODE_PATHS_H_
