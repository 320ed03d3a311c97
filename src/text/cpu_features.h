// Whether the text codecs use their AVX2 kernels. On by default when the
// processor reports AVX2; tests and fuzz harnesses switch it off to run the
// portable code on the same inputs. The switch is one relaxed atomic flag:
// safe to read from any thread, and meant to be flipped only while no
// conversion is running.
#ifndef QTA_TEXT_CPU_FEATURES_H_
#define QTA_TEXT_CPU_FEATURES_H_

namespace qta::text::detail {

bool avx2Enabled();
// Turning AVX2 on has no effect on a processor without it.
void setAvx2Enabled(bool enabled);

}  // namespace qta::text::detail

#endif  // QTA_TEXT_CPU_FEATURES_H_
