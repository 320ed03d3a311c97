// The base64 kernels sixteen bytes at a time with SSSE3 (its byte shuffle is
// the table lookup).
#include <tmmintrin.h>

#include <cstring>

#define QTA_BASE64_KERNEL_TARGET "ssse3"
#include "text/base64_blocks.h"

namespace qta::text::base64 {
namespace {

struct Ssse3Vectors {
  using V = __m128i;
  static constexpr size_t kSize = 16;
  static constexpr size_t kEncodeRead = 16;
  static constexpr size_t kEncodeBack = 0;
  static constexpr size_t kEncodeAhead = 16;
  using Mask = uint32_t;
  static constexpr bool kWholeTables = false;
  static constexpr Mask kAllKept = 0xffff;

  QTA_BASE64_KERNEL static V load(const void* p) {
    return _mm_loadu_si128(static_cast<const V*>(p));
  }
  QTA_BASE64_KERNEL static void store(void* p, V v) { _mm_storeu_si128(static_cast<V*>(p), v); }
  QTA_BASE64_KERNEL static V splat8(uint8_t b) { return _mm_set1_epi8(static_cast<char>(b)); }
  QTA_BASE64_KERNEL static V splat32(uint32_t w) { return _mm_set1_epi32(static_cast<int>(w)); }
  QTA_BASE64_KERNEL static V table(const void* t) { return load(t); }
  QTA_BASE64_KERNEL static V lookup(V t, V index) { return _mm_shuffle_epi8(t, index); }
  QTA_BASE64_KERNEL static V add8(V a, V b) { return _mm_add_epi8(a, b); }
  QTA_BASE64_KERNEL static V sub8(V a, V b) { return _mm_sub_epi8(a, b); }
  QTA_BASE64_KERNEL static V subsU8(V a, V b) { return _mm_subs_epu8(a, b); }
  QTA_BASE64_KERNEL static V greater8(V a, V b) { return _mm_cmpgt_epi8(a, b); }
  QTA_BASE64_KERNEL static V equal8(V a, V b) { return _mm_cmpeq_epi8(a, b); }
  QTA_BASE64_KERNEL static V mulhiU16(V a, V b) { return _mm_mulhi_epu16(a, b); }
  QTA_BASE64_KERNEL static V mulloU16(V a, V b) { return _mm_mullo_epi16(a, b); }
  QTA_BASE64_KERNEL static V maddU8S8(V a, V b) { return _mm_maddubs_epi16(a, b); }
  QTA_BASE64_KERNEL static V maddS16(V a, V b) { return _mm_madd_epi16(a, b); }
  template <int n>
  QTA_BASE64_KERNEL static V shiftRight32(V v) {
    return _mm_srli_epi32(v, n);
  }
  QTA_BASE64_KERNEL static uint32_t byteBits(V v) {
    return static_cast<uint32_t>(_mm_movemask_epi8(v));
  }
  QTA_BASE64_KERNEL static bool anySet(V v) {
    return byteBits(equal8(v, _mm_setzero_si128())) != kAllKept;
  }

  // Reads 16 bytes and uses the first 12.
  QTA_BASE64_KERNEL static V spreadGroups(const uint8_t* in) {
    return _mm_shuffle_epi8(load(in),
                            _mm_setr_epi8(1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10));
  }
  QTA_BASE64_KERNEL static V spreadGroupsWithin(const uint8_t* in) { return spreadGroups(in); }
  QTA_BASE64_KERNEL static V packDecoded(V groups) {
    return _mm_shuffle_epi8(groups,
                            _mm_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1));
  }
  QTA_BASE64_KERNEL static void storeDecoded(uint8_t* to, V bytes) {
    _mm_storel_epi64(reinterpret_cast<V*>(to), bytes);
    const uint32_t last = static_cast<uint32_t>(_mm_cvtsi128_si32(_mm_srli_si128(bytes, 8)));
    std::memcpy(to + 8, &last, 4);
  }
  QTA_BASE64_KERNEL static size_t compressStore(V chars, uint32_t mask, char* out, size_t kept) {
    return compress16(chars, mask, out, kept);
  }
};

}  // namespace

const Kernels kSsse3Kernels = blockKernels<Ssse3Vectors>();

}  // namespace qta::text::base64
