// Which vector kernels the text codecs run, and the vector state they start in.
//
// The kernels of each instruction set (SSSE3, AVX2) run when the processor
// reports it and the switch allows it (by default everything the processor
// has); tests and fuzz harnesses lower the switch to run the kernels below on
// the same inputs. Plain SSE2 code runs on every x86-64. The processor is asked once, on first use,
// so callers during static initialisation get the right answer too. The state is one relaxed atomic
// word: safe to read from any thread; the switch is meant to be flipped only while no conversion is
// running.
#ifndef QTA_TEXT_CPU_FEATURES_H_
#define QTA_TEXT_CPU_FEATURES_H_

#include <atomic>

namespace qta::text::detail {

// Bits of vectorFeatureWord; a word of 0 means the processor was not asked yet.
inline constexpr unsigned kFeaturesKnown = 1;
inline constexpr unsigned kHasAvx = 2;
inline constexpr unsigned kUseAvx2 = 4;
inline constexpr unsigned kUseSsse3 = 8;

// The instruction sets whose kernels may run, each including those before it.
enum class VectorLevel { kSse2, kSsse3, kAvx2 };

extern std::atomic<unsigned> vectorFeatureWord;

// Asks the processor, stores the answer with the AVX2 kernels on and returns it.
unsigned detectVectorFeatures();

inline unsigned vectorFeatures() {
  const unsigned features = vectorFeatureWord.load(std::memory_order_relaxed);
  return features != 0 ? features : detectVectorFeatures();
}

inline bool avx2Enabled() { return (vectorFeatures() & kUseAvx2) != 0; }
inline bool ssse3Enabled() { return (vectorFeatures() & kUseSsse3) != 0; }

// Allows the kernels up to `highest` that the processor has.
void setVectorLevel(VectorLevel highest);

// Switches between the highest level and the one below AVX2. Turning AVX2 on
// has no effect on a processor without it.
void setAvx2Enabled(bool enabled);

// The kernels other than the AVX2 ones are SSE code without VEX encoding. When
// the calling program left the upper halves of the ymm/zmm registers dirty
// (AVX code that returned without vzeroupper), every such instruction pays a
// penalty that made them several times slower. Each entry point that runs them
// calls this first: on processors with AVX it clears the upper halves, which
// the calling convention does not preserve across a call anyway.
inline void clearUpperState() {
  if ((vectorFeatures() & kHasAvx) != 0) {
    asm volatile("vzeroupper" ::
                     : "xmm0", "xmm1", "xmm2", "xmm3", "xmm4", "xmm5", "xmm6", "xmm7", "xmm8",
                       "xmm9", "xmm10", "xmm11", "xmm12", "xmm13", "xmm14", "xmm15");
  }
}

}  // namespace qta::text::detail

#endif  // QTA_TEXT_CPU_FEATURES_H_
