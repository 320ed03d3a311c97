// UTF-8 to UTF-16 and UTF-32 with AVX2 through runs of three-byte sequences
// (Chinese, Japanese): 24 bytes a step in one vector, each step judging its
// own bytes (utf8_decode_blocks.h).
#include "text/utf8_decode_kernels.h"

#define QTA_UTF8_KERNEL_TARGET "avx2"
#include "text/utf8_validate_blocks.h"
// Keep after the header above, which they build on.
#include "text/utf8_avx2_vectors.h"
#include "text/utf8_decode_blocks.h"

namespace qta::text::detail {
namespace {

// Eight code points below 0x10000 in the 32-bit lanes of `v`.
QTA_UTF8_KERNEL void storeUnits32x8(char16_t* out, __m256i v) {
  const __m256i packed = _mm256_permute4x64_epi64(_mm256_packus_epi32(v, v), 0x08);
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm256_castsi256_si128(packed));
}

QTA_UTF8_KERNEL void storeUnits32x8(char32_t* out, __m256i v) {
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), v);
}

using Lanes8 = int32_t __attribute__((vector_size(32)));

// Both groups of four sequences of a step in one vector, a group per half.
template <>
struct RunSteps<Avx2Vectors> : RunSteps16 {
  template <typename Unit>
  QTA_UTF8_KERNEL static bool threeByte(const uint8_t* p, Unit* out) {
    const __m256i bytes = _mm256_loadu2_m128i(reinterpret_cast<const __m128i*>(p + 12),
                                              reinterpret_cast<const __m128i*>(p));
    const auto lanes = reinterpret_cast<Lanes8>(
        _mm256_shuffle_epi8(bytes, _mm256_broadcastsi128_si256(load16(kThreeByteShuffle.data()))));
    const Lanes8 values = threeByteValues(lanes);
    const auto bad = reinterpret_cast<__m256i>(notThreeByte(lanes, values));
    if (!_mm256_testz_si256(bad, bad)) return false;
    storeUnits32x8(out, reinterpret_cast<__m256i>(values));
    return true;
  }
};

}  // namespace

[[gnu::target("avx2")]] size_t decodeThreeByteRunAvx2(const uint8_t*& src, const uint8_t* end,
                                                      char16_t* out, size_t room) {
  return threeByteRun<Avx2Vectors>(src, end, out, room);
}

[[gnu::target("avx2")]] size_t decodeThreeByteRunAvx2(const uint8_t*& src, const uint8_t* end,
                                                      char32_t* out, size_t room) {
  return threeByteRun<Avx2Vectors>(src, end, out, room);
}

}  // namespace qta::text::detail
