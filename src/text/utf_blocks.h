// Sixteen units at a time with SSE2 (present on every x86-64): the block steps
// of the converters' ASCII fast paths and of the counting functions. Each
// helper reads exactly one block of 16 source units; callers check bounds.
#ifndef QTA_TEXT_UTF_BLOCKS_H_
#define QTA_TEXT_UTF_BLOCKS_H_

#include <emmintrin.h>

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace qta::text::detail {

constexpr size_t kBlock = 16;

// Calls `step`, which advances the position it is given by reference, on a
// copy of `p`: `p` itself then never has its address taken, so the caller's
// loops keep it in a register instead of reloading it after each store (a
// char store may change any object in memory).
template <typename Position, typename... Args>
[[gnu::always_inline]] inline size_t stepOnCopy(size_t (*step)(std::type_identity_t<Position>&,
                                                               std::type_identity_t<Args>...),
                                                Position& p, Args... args) {
  Position copy = p;
  const size_t result = step(copy, args...);
  p = copy;
  return result;
}

inline __m128i loadBytes(const void* p) { return _mm_loadu_si128(static_cast<const __m128i*>(p)); }

// One bit per byte, set for bytes 0x80 and above.
inline unsigned highBits(__m128i bytes) { return static_cast<unsigned>(_mm_movemask_epi8(bytes)); }

// Unsigned byte comparison x >= k, lane by lane (0xFF or 0x00).
inline __m128i atLeast(__m128i x, uint8_t k) {
  return _mm_cmpeq_epi8(_mm_max_epu8(x, _mm_set1_epi8(static_cast<char>(k))), x);
}

// Lanes that hold a continuation byte (0x80 to 0xBF, i.e. -128 to -65 signed).
inline __m128i continuationLanes(__m128i x) { return _mm_cmplt_epi8(x, _mm_set1_epi8(-64)); }

// Writes 16 ASCII bytes as 16 UTF-16 or UTF-32 units.
inline void storeWidened(__m128i bytes, char16_t* out) {
  const __m128i zero = _mm_setzero_si128();
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_unpacklo_epi8(bytes, zero));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 8), _mm_unpackhi_epi8(bytes, zero));
}

inline void storeWidened(__m128i bytes, char32_t* out) {
  const __m128i zero = _mm_setzero_si128();
  const __m128i low = _mm_unpacklo_epi8(bytes, zero);
  const __m128i high = _mm_unpackhi_epi8(bytes, zero);
  auto* o = reinterpret_cast<__m128i*>(out);
  _mm_storeu_si128(o, _mm_unpacklo_epi16(low, zero));
  _mm_storeu_si128(o + 1, _mm_unpackhi_epi16(low, zero));
  _mm_storeu_si128(o + 2, _mm_unpacklo_epi16(high, zero));
  _mm_storeu_si128(o + 3, _mm_unpackhi_epi16(high, zero));
}

// Reads 16 UTF-16 or UTF-32 units; when all are below 0x80, stores them as 16
// bytes at `out` and returns true, else writes nothing and returns false.
inline bool narrowAscii(const char16_t* p, char* out) {
  const __m128i a = loadBytes(p);
  const __m128i b = loadBytes(p + 8);
  const __m128i high =
      _mm_and_si128(_mm_or_si128(a, b), _mm_set1_epi16(static_cast<short>(0xFF80)));
  if (_mm_movemask_epi8(_mm_cmpeq_epi16(high, _mm_setzero_si128())) != 0xFFFF) return false;
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_packus_epi16(a, b));
  return true;
}

inline bool narrowAscii(const char32_t* p, char* out) {
  const __m128i a = loadBytes(p);
  const __m128i b = loadBytes(p + 4);
  const __m128i c = loadBytes(p + 8);
  const __m128i d = loadBytes(p + 12);
  const __m128i any = _mm_or_si128(_mm_or_si128(a, b), _mm_or_si128(c, d));
  const __m128i high = _mm_and_si128(any, _mm_set1_epi32(~0x7F));
  if (_mm_movemask_epi8(_mm_cmpeq_epi32(high, _mm_setzero_si128())) != 0xFFFF) return false;
  // Every value is below 0x80, so the signed packs cannot saturate.
  const __m128i ab = _mm_packs_epi32(a, b);
  const __m128i cd = _mm_packs_epi32(c, d);
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_packus_epi16(ab, cd));
  return true;
}

}  // namespace qta::text::detail

#endif  // QTA_TEXT_UTF_BLOCKS_H_
