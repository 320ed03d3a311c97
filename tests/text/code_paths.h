// Runs a check on every instruction-set level the text codecs' kernels have
// (a level the processor lacks runs the highest one it has).
#ifndef QTA_TESTS_TEXT_CODE_PATHS_H_
#define QTA_TESTS_TEXT_CODE_PATHS_H_

#include <cstddef>
#include <iterator>

#include "text/cpu_features.h"

namespace qtatest {

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
