// The base64 kernels 64 bytes at a time with AVX-512: byte permutes (VBMI)
// spread the groups and pack the decoded bytes across the whole vector in
// one step each, byte compression (VBMI2) drops skipped bytes, byte blends
// (masks from BMI2) join the lines of line-broken text across their ends, and
// masked loads and stores keep the final blocks inside the text and the result.
// GCC 12 reports the deliberately undefined pass-through operand inside its
// own AVX-512 intrinsics as used uninitialized when they are inlined.
#if !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wuninitialized"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
#include <immintrin.h>
#if !defined(__clang__)
#pragma GCC diagnostic pop
#endif

#include <array>
#include <cstring>

#define QTA_BASE64_KERNEL_TARGET "avx512f,avx512bw,avx512vbmi,avx512vbmi2,bmi2"
#include "text/base64_blocks.h"

namespace qta::text::base64 {
namespace {

using Indices = std::array<uint8_t, 64>;

// Byte 4g + b of the result takes byte 3g + (1, 0, 2, 1)[b] of the input.
constexpr Indices makeSpreadIndices() {
  constexpr uint8_t kOrder[4] = {1, 0, 2, 1};
  Indices indices{};
  for (uint8_t at = 0; at < 64; ++at)
    indices[at] = static_cast<uint8_t>(at / 4 * 3 + kOrder[at % 4]);
  return indices;
}

// Byte 3g + r of the result takes byte 4g + 2 - r of the decoded words; the
// last 16 bytes are left as they fall.
constexpr Indices makePackIndices() {
  Indices indices{};
  for (uint8_t at = 0; at < 48; ++at) indices[at] = static_cast<uint8_t>(at / 3 * 4 + 2 - at % 3);
  return indices;
}

constexpr Indices kSpreadIndices = makeSpreadIndices();
constexpr Indices kPackIndices = makePackIndices();

// The first 48 bytes of a vector.
constexpr __mmask64 kGroupBytes = (__mmask64{1} << 48) - 1;

struct Avx512Vectors {
  using V = __m512i;
  using Mask = uint64_t;
  static constexpr bool kWholeTables = true;
  static constexpr size_t kSize = 64;
  static constexpr size_t kEncodeRead = 48;
  static constexpr size_t kEncodeBack = 0;
  static constexpr size_t kEncodeAhead = 64;
  static constexpr Mask kAllKept = ~Mask{0};

  QTA_BASE64_KERNEL static V load(const void* p) { return _mm512_loadu_si512(p); }
  QTA_BASE64_KERNEL static void store(void* p, V v) { _mm512_storeu_si512(p, v); }
  QTA_BASE64_KERNEL static V splat8(uint8_t b) { return _mm512_set1_epi8(static_cast<char>(b)); }
  QTA_BASE64_KERNEL static V splat32(uint32_t w) { return _mm512_set1_epi32(static_cast<int>(w)); }
  QTA_BASE64_KERNEL static V table(const void* t) {
    return _mm512_broadcast_i32x4(_mm_loadu_si128(static_cast<const __m128i*>(t)));
  }
  QTA_BASE64_KERNEL static V lookup(V t, V index) { return _mm512_shuffle_epi8(t, index); }
  QTA_BASE64_KERNEL static V add8(V a, V b) { return _mm512_add_epi8(a, b); }
  QTA_BASE64_KERNEL static V sub8(V a, V b) { return _mm512_sub_epi8(a, b); }
  QTA_BASE64_KERNEL static V subsU8(V a, V b) { return _mm512_subs_epu8(a, b); }
  QTA_BASE64_KERNEL static V greater8(V a, V b) {
    return _mm512_movm_epi8(_mm512_cmpgt_epi8_mask(a, b));
  }
  QTA_BASE64_KERNEL static V equal8(V a, V b) {
    return _mm512_movm_epi8(_mm512_cmpeq_epi8_mask(a, b));
  }
  QTA_BASE64_KERNEL static V mulhiU16(V a, V b) { return _mm512_mulhi_epu16(a, b); }
  QTA_BASE64_KERNEL static V mulloU16(V a, V b) { return _mm512_mullo_epi16(a, b); }
  QTA_BASE64_KERNEL static V maddU8S8(V a, V b) { return _mm512_maddubs_epi16(a, b); }
  QTA_BASE64_KERNEL static V maddS16(V a, V b) { return _mm512_madd_epi16(a, b); }
  template <int n>
  QTA_BASE64_KERNEL static V shiftRight32(V v) {
    return _mm512_srli_epi32(v, n);
  }
  QTA_BASE64_KERNEL static Mask byteBits(V v) { return _mm512_movepi8_mask(v); }
  QTA_BASE64_KERNEL static bool anySet(V v) { return _mm512_test_epi64_mask(v, v) != 0; }

  QTA_BASE64_KERNEL static V lookup64(V t, V index) { return _mm512_permutexvar_epi8(index, t); }
  QTA_BASE64_KERNEL static V lookup128(V low, V high, V index) {
    return _mm512_permutex2var_epi8(low, index, high);
  }
  // Each 32-bit word holds group bytes 1, 0, 2, 1 from its low end: the four
  // values start at its bits 10, 4, 22 and 16.
  QTA_BASE64_KERNEL static V sixBitFields(V spread) {
    return _mm512_multishift_epi64_epi8(_mm512_set1_epi64(0x3036242a1016040a), spread);
  }
  QTA_BASE64_KERNEL static V joinFront(size_t count, V front, V back) {
    return _mm512_mask_blend_epi8(_bzhi_u64(~Mask{0}, count), back, front);
  }
  QTA_BASE64_KERNEL static V spread(V bytes) {
    return _mm512_permutexvar_epi8(load(kSpreadIndices.data()), bytes);
  }
  // A masked load: the 16 bytes after the groups are not read.
  QTA_BASE64_KERNEL static V spreadGroups(const uint8_t* in) {
    return spread(_mm512_maskz_loadu_epi8(kGroupBytes, in));
  }
  QTA_BASE64_KERNEL static V spreadGroupsWithin(const uint8_t* in) { return spread(load(in)); }
  QTA_BASE64_KERNEL static V packDecoded(V groups) {
    return _mm512_permutexvar_epi8(load(kPackIndices.data()), groups);
  }
  QTA_BASE64_KERNEL static void storeDecoded(uint8_t* to, V bytes) {
    _mm512_mask_storeu_epi8(to, kGroupBytes, bytes);
  }
  // Only the kept bytes are stored, so nothing is written past the new count.
  QTA_BASE64_KERNEL static size_t compressStore(V chars, Mask mask, char* out, size_t kept) {
    const int count = __builtin_popcountll(mask);
    const __mmask64 written = count == 64 ? ~__mmask64{0} : (__mmask64{1} << count) - 1;
    _mm512_mask_storeu_epi8(out + kept, written, _mm512_maskz_compress_epi8(mask, chars));
    return kept + static_cast<size_t>(count);
  }
};

}  // namespace

const Kernels kAvx512Kernels = blockKernels<Avx512Vectors>();

}  // namespace qta::text::base64
