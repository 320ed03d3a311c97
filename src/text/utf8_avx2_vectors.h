// The vector operations of the UTF-8 kernels on 32-byte AVX2 vectors (see
// utf8_validate_blocks.h for the list). Include after that header, in a file
// whose QTA_UTF8_KERNEL_TARGET includes "avx2".
#ifndef QTA_TEXT_UTF8_AVX2_VECTORS_H_
#define QTA_TEXT_UTF8_AVX2_VECTORS_H_

#include <immintrin.h>

#include <cstddef>
#include <cstdint>

#ifndef QTA_TEXT_UTF8_VALIDATE_BLOCKS_H_
#error "include utf8_validate_blocks.h before utf8_avx2_vectors.h"
#endif

namespace qta::text::detail {
namespace {

struct Avx2Vectors {
  using V = __m256i;
  static constexpr size_t kSize = 32;

  QTA_UTF8_KERNEL static V load(const uint8_t* p) {
    return _mm256_loadu_si256(reinterpret_cast<const V*>(p));
  }
  QTA_UTF8_KERNEL static V splat(uint8_t b) { return _mm256_set1_epi8(static_cast<char>(b)); }
  QTA_UTF8_KERNEL static V table(const NibbleTable& t) {
    return _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(t.data())));
  }
  QTA_UTF8_KERNEL static V lookup(V t, V index) { return _mm256_shuffle_epi8(t, index); }
  QTA_UTF8_KERNEL static V highNibbles(V v) { return _mm256_srli_epi16(v, 4); }
  QTA_UTF8_KERNEL static V subSaturated(V a, V b) { return _mm256_subs_epu8(a, b); }
  // The byte shift works within 16-byte halves, so the high half takes its
  // first bytes from the end of the low half.
  template <int n>
  QTA_UTF8_KERNEL static V shiftedIn(V v) {
    return _mm256_alignr_epi8(v, _mm256_permute2x128_si256(v, v, 0x08), 16 - n);
  }
  QTA_UTF8_KERNEL static bool anyHigh(V v) { return _mm256_movemask_epi8(v) != 0; }
  QTA_UTF8_KERNEL static bool anySet(V v) { return _mm256_testz_si256(v, v) == 0; }
};

}  // namespace
}  // namespace qta::text::detail

#endif  // QTA_TEXT_UTF8_AVX2_VECTORS_H_
