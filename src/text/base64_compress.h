// Moving the alphabet characters of a 16-byte block to the front, for the
// vector filters. SSSE3 code, inlined into the kernels of each level.
#ifndef QTA_TEXT_BASE64_COMPRESS_H_
#define QTA_TEXT_BASE64_COMPRESS_H_

#include <tmmintrin.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace qta::text::base64 {

// Entry m moves the bytes of an 8-byte chunk whose bits are set in m to its
// front, in order, and counts them.
struct CompressStep {
  std::array<uint8_t, 8> order;
  uint8_t count;
};

constexpr std::array<CompressStep, 256> makeCompressTable() {
  std::array<CompressStep, 256> table{};
  for (int mask = 0; mask < 256; ++mask) {
    for (int bit = 0; bit < 8; ++bit) {
      if (mask & (1 << bit)) table[mask].order[table[mask].count++] = static_cast<uint8_t>(bit);
    }
  }
  return table;
}
inline constexpr std::array<CompressStep, 256> kCompress = makeCompressTable();

// Appends the bytes of `chars` whose bits are set in `mask` (bit i: byte i)
// at out + kept; returns the new count. Each 8-byte store may write up to 8
// bytes past the new count.
__attribute__((target("ssse3"))) inline size_t compress16(__m128i chars, uint32_t mask, char* out,
                                                          size_t kept) {
  const CompressStep& low = kCompress[mask & 0xff];
  const CompressStep& high = kCompress[(mask >> 8) & 0xff];
  const __m128i order = _mm_add_epi8(
      _mm_unpacklo_epi64(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(&low.order)),
                         _mm_loadl_epi64(reinterpret_cast<const __m128i*>(&high.order))),
      _mm_setr_epi8(0, 0, 0, 0, 0, 0, 0, 0, 8, 8, 8, 8, 8, 8, 8, 8));
  const __m128i packed = _mm_shuffle_epi8(chars, order);
  _mm_storel_epi64(reinterpret_cast<__m128i*>(out + kept), packed);
  kept += low.count;
  _mm_storel_epi64(reinterpret_cast<__m128i*>(out + kept), _mm_unpackhi_epi64(packed, packed));
  return kept + high.count;
}

}  // namespace qta::text::base64

#endif  // QTA_TEXT_BASE64_COMPRESS_H_
