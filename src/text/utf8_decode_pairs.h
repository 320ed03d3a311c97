// UTF-8 text of one- and two-byte sequences (accented Latin, Greek, Cyrillic,
// Hebrew, Arabic) 16 bytes a step with SSSE3: the step the decoder uses on
// short texts and on the two-byte runs its block converters leave to it.
#ifndef QTA_TEXT_UTF8_DECODE_PAIRS_H_
#define QTA_TEXT_UTF8_DECODE_PAIRS_H_

#include <emmintrin.h>

#include <cstddef>
#include <cstdint>

namespace qta::text::detail {

// Converts from `src` while 16 bytes remain before `end`, `room` holds 16 more
// units and the next 16 bytes hold nothing but ASCII bytes and well-formed
// two-byte sequences (a lead byte that ends the last step is left to the
// sequence reader). Never writes past `room` nor past the units the text after
// the converted bytes is sure to give, so a buffer of exactly the result's
// size suffices. Advances `src`; returns the units written.
size_t decodePairsSsse3(const uint8_t*& src, const uint8_t* end, char16_t* out, size_t room);
size_t decodePairsSsse3(const uint8_t*& src, const uint8_t* end, char32_t* out, size_t room);

// Steps shorter than this are not tried.
inline constexpr ptrdiff_t kPairStepBytes = 16;

// A lead byte of a well-formed two-byte sequence (0xC0 and 0xC1 only start
// overlong forms).
constexpr bool isTwoByteLead(uint8_t byte) { return byte - 0xC2u < 0x1E; }

// The lanes of `bytes` that hold such a lead: moved down by 0x42, those bytes
// are -128 to -99 as signed bytes, and no other byte is.
inline __m128i twoByteLeadLanes(__m128i bytes) {
  return _mm_cmplt_epi8(_mm_sub_epi8(bytes, _mm_set1_epi8(0x42)), _mm_set1_epi8(-98));
}

}  // namespace qta::text::detail

#endif  // QTA_TEXT_UTF8_DECODE_PAIRS_H_
