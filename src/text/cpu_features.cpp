#include "text/cpu_features.h"

#include <cpuid.h>

#include <cstdint>

namespace qta::text::detail {
namespace {

// Whether the operating system saves the opmask registers and all of the
// zmm registers across context switches (XCR0 bits 1, 2 and 5-7); without
// that, AVX-512 code must not run even on a processor that has it.
bool zmmStateSaved() {
  unsigned eax = 0, ebx = 0, ecx = 0, edx = 0;
  if (__get_cpuid(1, &eax, &ebx, &ecx, &edx) == 0 || (ecx & bit_OSXSAVE) == 0) return false;
  uint32_t low = 0, high = 0;
  asm("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
  constexpr uint32_t kZmmState = 0xe6;
  return (low & kZmmState) == kZmmState;
}

unsigned processorFeatures() {
  __builtin_cpu_init();  // may run before the runtime's own initialisation
  unsigned features = kFeaturesKnown;
  if (__builtin_cpu_supports("avx")) features |= kHasAvx;
  if (__builtin_cpu_supports("avx2")) features |= kUseAvx2;
  if (__builtin_cpu_supports("ssse3")) features |= kUseSsse3;
  if (__builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vbmi") &&
      __builtin_cpu_supports("avx512vbmi2") && __builtin_cpu_supports("bmi2") && zmmStateSaved()) {
    features |= kUseAvx512;
  }
  return features;
}

}  // namespace

// Constant-initialised, so it reads 0 (not asked yet) before any constructor runs.
constinit std::atomic<unsigned> vectorFeatureWord{0};

unsigned detectVectorFeatures() {
  const unsigned features = processorFeatures();
  vectorFeatureWord.store(features, std::memory_order_relaxed);
  return features;
}

void setVectorLevel(VectorLevel level) {
  unsigned features = processorFeatures();
  if (level < VectorLevel::kAvx512) features &= ~kUseAvx512;
  if (level < VectorLevel::kAvx2) features &= ~kUseAvx2;
  if (level < VectorLevel::kSsse3) features &= ~kUseSsse3;
  vectorFeatureWord.store(features, std::memory_order_relaxed);
}

void setAvx2Enabled(bool enabled) {
  setVectorLevel(enabled ? VectorLevel::kAvx512 : VectorLevel::kSsse3);
}

}  // namespace qta::text::detail
