// The rules the block converters of UTF-8 decoding (utf8_decode_avx2.cpp,
// utf8_decode_ssse3.cpp) follow, in SSE2 on one block of 16 bytes: which lead
// bytes turn into '?', when a block is four four-byte sequences (and their
// units), and where a run of three-byte sequences starts.
#ifndef QTA_TEXT_UTF8_BLOCK_RULES_H_
#define QTA_TEXT_UTF8_BLOCK_RULES_H_

#include <emmintrin.h>

#include <cstddef>
#include <cstdint>

#include "text/utf8_decode_kernels.h"
#include "text/utf_blocks.h"

namespace qta::text::detail {

// The lead bytes of block `b0` (`b1` and `b2`: the same moved on by one and
// two bytes) that give '?': a lead without its continuation bytes, 0xC0 and
// 0xC1 (always overlong), and 0xE0 followed by less than 0xA0 (overlong).
// Holds for blocks without bytes from 0xF0 up.
inline __m128i leadsGivingReplacement(__m128i b0, __m128i b1, __m128i b2) {
  const __m128i lead = atLeast(b0, 0xC0);  // two- and three-byte leads
  const __m128i lead3 = atLeast(b0, 0xE0);
  __m128i bad = _mm_andnot_si128(continuationLanes(b1), lead);
  bad = _mm_or_si128(bad, _mm_andnot_si128(continuationLanes(b2), lead3));
  bad = _mm_or_si128(bad, _mm_cmpeq_epi8(_mm_and_si128(b0, _mm_set1_epi8(-2)),
                                         _mm_set1_epi8(static_cast<char>(0xC0))));
  const __m128i e0 = _mm_cmpeq_epi8(b0, _mm_set1_epi8(static_cast<char>(0xE0)));
  return _mm_or_si128(bad, _mm_andnot_si128(atLeast(b1, 0xA0), e0));
}

// The same for a block without bytes from 0xE0 up, whose sequences are of one
// and two bytes: a lead without its continuation byte, and 0xC0 and 0xC1.
inline __m128i twoByteLeadsGivingReplacement(__m128i b0, __m128i b1) {
  const __m128i orphan = _mm_andnot_si128(continuationLanes(b1), atLeast(b0, 0xC0));
  return _mm_or_si128(orphan, _mm_cmpeq_epi8(_mm_and_si128(b0, _mm_set1_epi8(-2)),
                                             _mm_set1_epi8(static_cast<char>(0xC0))));
}

// Sixteen bytes that are exactly four well-formed four-byte sequences of
// 0x10000 to 0x10FFFF (emoji text): their code points, else false.
inline bool fourByteSequences(__m128i w, __m128i& codePoints) {
  const __m128i shape =
      _mm_cmpeq_epi32(_mm_and_si128(w, _mm_set1_epi32(0xC0C0C0F8)), _mm_set1_epi32(0x808080F0));
  const __m128i v =
      _mm_or_si128(_mm_or_si128(_mm_slli_epi32(_mm_and_si128(w, _mm_set1_epi32(0x07)), 18),
                                _mm_slli_epi32(_mm_and_si128(w, _mm_set1_epi32(0x3F00)), 4)),
                   _mm_or_si128(_mm_and_si128(_mm_srli_epi32(w, 10), _mm_set1_epi32(0xFC0)),
                                _mm_and_si128(_mm_srli_epi32(w, 24), _mm_set1_epi32(0x3F))));
  const __m128i inRange = _mm_and_si128(_mm_cmpgt_epi32(v, _mm_set1_epi32(0xFFFF)),
                                        _mm_cmpgt_epi32(_mm_set1_epi32(0x110000), v));
  codePoints = v;
  return _mm_movemask_epi8(_mm_and_si128(shape, inRange)) == 0xFFFF;
}

// Writes four code points from 0x10000 up as four surrogate pairs or as themselves.
inline size_t storeSupplementary(__m128i v, char16_t* out) {
  const __m128i t = _mm_sub_epi32(v, _mm_set1_epi32(0x10000));
  const __m128i high = _mm_or_si128(_mm_srli_epi32(t, 10), _mm_set1_epi32(0xD800));
  const __m128i low = _mm_or_si128(_mm_and_si128(t, _mm_set1_epi32(0x3FF)), _mm_set1_epi32(0xDC00));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_or_si128(high, _mm_slli_epi32(low, 16)));
  return 8;
}

inline size_t storeSupplementary(__m128i v, char32_t* out) {
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), v);
  return 4;
}

// One bit per byte among the 16 at `p` that is not a continuation byte.
inline unsigned leadBits(const uint8_t* p) {
  return 0xFFFF & ~static_cast<unsigned>(_mm_movemask_epi8(continuationLanes(loadBytes(p))));
}

// In a block at `p` without ASCII: where a run of three-byte sequences starts
// at its first lead (the bytes before it end a sequence that the block before
// converted), else null. Reads at most p[47].
inline const uint8_t* threeByteRunAt(const uint8_t* p) {
  // Words of Hindi or Korean text are too short to be worth the switch: the
  // 32 bytes after the block must hold no ASCII either.
  const unsigned leads = leadBits(p);
  if (leads == 0 || (highBits(loadBytes(p + 16)) & highBits(loadBytes(p + 32))) != 0xFFFF) {
    return nullptr;
  }
  const uint8_t* from = p + __builtin_ctz(leads);
  return startsThreeByteRun(from) ? from : nullptr;
}

}  // namespace qta::text::detail

#endif  // QTA_TEXT_UTF8_BLOCK_RULES_H_
