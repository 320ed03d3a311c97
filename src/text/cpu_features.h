// Which vector kernels the text codecs run, and the vector state they start in.
//
// The AVX-512 kernels run when the processor reports AVX-512 BW, VBMI, VBMI2
// and BMI2 and the operating system saves the zmm registers; the AVX2 kernels when it
// reports AVX2; below them, kernels that need SSSE3 run when the processor
// has it. Each level can be switched off (the highest one it has is on by
// default). Tests and fuzz harnesses cap the level to run the lower kernels on
// the same inputs. The processor is asked once, on first use, so
// callers during static initialisation get the right answer too. The state is
// one relaxed atomic word: safe to read from any thread; the switch is meant
// to be flipped only while no conversion is running.
#ifndef QTA_TEXT_CPU_FEATURES_H_
#define QTA_TEXT_CPU_FEATURES_H_

#include <atomic>

namespace qta::text::detail {

// Bits of vectorFeatureWord; a word of 0 means the processor was not asked yet.
inline constexpr unsigned kFeaturesKnown = 1;
inline constexpr unsigned kHasAvx = 2;
inline constexpr unsigned kUseAvx2 = 4;
inline constexpr unsigned kUseSsse3 = 8;
inline constexpr unsigned kUseAvx512 = 16;

extern std::atomic<unsigned> vectorFeatureWord;

// Asks the processor, stores the answer with the AVX2 kernels on and returns it.
unsigned detectVectorFeatures();

inline unsigned vectorFeatures() {
  const unsigned features = vectorFeatureWord.load(std::memory_order_relaxed);
  return features != 0 ? features : detectVectorFeatures();
}

inline bool avx2Enabled() { return (vectorFeatures() & kUseAvx2) != 0; }

inline bool ssse3Enabled() { return (vectorFeatures() & kUseSsse3) != 0; }

// AVX-512 with byte and word operations (BW), byte permutes (VBMI) and byte
// compression (VBMI2).
inline bool avx512Enabled() { return (vectorFeatures() & kUseAvx512) != 0; }

// The kernel levels, lowest first: plain SSE2 code, SSSE3, AVX2, AVX-512.
enum class VectorLevel { kSse2, kSsse3, kAvx2, kAvx512 };

// Runs no kernel above `level`; a level the processor lacks stays off.
void setVectorLevel(VectorLevel level);

// Off caps the level at SSSE3; on allows every level the processor has.
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
