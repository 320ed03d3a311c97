#include "text/cpu_features.h"

namespace qta::text::detail {
namespace {

unsigned processorFeatures() {
  __builtin_cpu_init();  // may run before the runtime's own initialisation
  unsigned features = kFeaturesKnown;
  if (__builtin_cpu_supports("avx")) features |= kHasAvx;
  if (__builtin_cpu_supports("avx2")) features |= kUseAvx2;
  if (__builtin_cpu_supports("ssse3")) features |= kUseSsse3;
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

void setVectorLevel(VectorLevel highest) {
  unsigned features = processorFeatures();
  if (highest < VectorLevel::kAvx2) features &= ~kUseAvx2;
  if (highest < VectorLevel::kSsse3) features &= ~kUseSsse3;
  vectorFeatureWord.store(features, std::memory_order_relaxed);
}

void setAvx2Enabled(bool enabled) {
  setVectorLevel(enabled ? VectorLevel::kAvx2 : VectorLevel::kSsse3);
}

}  // namespace qta::text::detail
