// The base64 kernels 32 bytes at a time with AVX2: two 16-byte parts, each
// like the SSSE3 kernels' vectors, joined where the packing crosses them.
#include <immintrin.h>

#define QTA_BASE64_KERNEL_TARGET "avx2"
#include "text/base64_blocks.h"

namespace qta::text::base64 {
namespace {

struct Avx2Vectors {
  using V = __m256i;
  static constexpr size_t kSize = 32;
  static constexpr size_t kEncodeRead = 24;
  static constexpr size_t kEncodeBack = 4;
  static constexpr size_t kEncodeAhead = 28;
  using Mask = uint32_t;
  static constexpr bool kWholeTables = false;
  static constexpr Mask kAllKept = 0xffffffff;

  QTA_BASE64_KERNEL static V load(const void* p) {
    return _mm256_loadu_si256(static_cast<const V*>(p));
  }
  QTA_BASE64_KERNEL static void store(void* p, V v) { _mm256_storeu_si256(static_cast<V*>(p), v); }
  QTA_BASE64_KERNEL static V splat8(uint8_t b) { return _mm256_set1_epi8(static_cast<char>(b)); }
  QTA_BASE64_KERNEL static V splat32(uint32_t w) { return _mm256_set1_epi32(static_cast<int>(w)); }
  QTA_BASE64_KERNEL static V table(const void* t) {
    return _mm256_broadcastsi128_si256(_mm_loadu_si128(static_cast<const __m128i*>(t)));
  }
  QTA_BASE64_KERNEL static V lookup(V t, V index) { return _mm256_shuffle_epi8(t, index); }
  QTA_BASE64_KERNEL static V add8(V a, V b) { return _mm256_add_epi8(a, b); }
  QTA_BASE64_KERNEL static V sub8(V a, V b) { return _mm256_sub_epi8(a, b); }
  QTA_BASE64_KERNEL static V subsU8(V a, V b) { return _mm256_subs_epu8(a, b); }
  QTA_BASE64_KERNEL static V greater8(V a, V b) { return _mm256_cmpgt_epi8(a, b); }
  QTA_BASE64_KERNEL static V equal8(V a, V b) { return _mm256_cmpeq_epi8(a, b); }
  QTA_BASE64_KERNEL static V mulhiU16(V a, V b) { return _mm256_mulhi_epu16(a, b); }
  QTA_BASE64_KERNEL static V mulloU16(V a, V b) { return _mm256_mullo_epi16(a, b); }
  QTA_BASE64_KERNEL static V maddU8S8(V a, V b) { return _mm256_maddubs_epi16(a, b); }
  QTA_BASE64_KERNEL static V maddS16(V a, V b) { return _mm256_madd_epi16(a, b); }
  template <int n>
  QTA_BASE64_KERNEL static V shiftRight32(V v) {
    return _mm256_srli_epi32(v, n);
  }
  QTA_BASE64_KERNEL static uint32_t byteBits(V v) {
    return static_cast<uint32_t>(_mm256_movemask_epi8(v));
  }
  QTA_BASE64_KERNEL static bool anySet(V v) { return !_mm256_testz_si256(v, v); }

  // 24 bytes as two parts of 12: the loads cover bytes 0-15 and 8-23, so
  // nothing past the 24 bytes is read, and the high part's groups start at
  // its byte 4.
  QTA_BASE64_KERNEL static V spreadGroups(const uint8_t* in) {
    const V bytes = _mm256_inserti128_si256(
        _mm256_castsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(in))),
        _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + 8)), 1);
    return _mm256_shuffle_epi8(
        bytes, _mm256_setr_epi8(1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10,  //
                                5, 4, 6, 5, 8, 7, 9, 8, 11, 10, 12, 11, 14, 13, 15, 14));
  }
  // One load of the 32 bytes from 4 before the groups, so that each part
  // holds its 12 bytes: the low one at its bytes 4-15, the high one at 0-11.
  QTA_BASE64_KERNEL static V spreadGroupsWithin(const uint8_t* in) {
    return _mm256_shuffle_epi8(
        load(in - 4), _mm256_setr_epi8(5, 4, 6, 5, 8, 7, 9, 8, 11, 10, 12, 11, 14, 13, 15, 14,  //
                                       1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10));
  }
  QTA_BASE64_KERNEL static V packDecoded(V groups) {
    const V bytes = _mm256_shuffle_epi8(
        groups, _mm256_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1,  //
                                 2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1));
    return _mm256_permutevar8x32_epi32(bytes, _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 7, 7));
  }
  QTA_BASE64_KERNEL static void storeDecoded(uint8_t* to, V bytes) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm256_castsi256_si128(bytes));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(to + 16), _mm256_extracti128_si256(bytes, 1));
  }
  QTA_BASE64_KERNEL static size_t compressStore(V chars, uint32_t mask, char* out, size_t kept) {
    kept = compress16(_mm256_castsi256_si128(chars), mask, out, kept);
    return compress16(_mm256_extracti128_si256(chars, 1), mask >> 16, out, kept);
  }
};

}  // namespace

const Kernels kAvx2Kernels = blockKernels<Avx2Vectors>();

}  // namespace qta::text::base64
