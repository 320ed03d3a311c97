// The UTF-8 validity check: the vector kernel of the highest instruction set
// allowed (utf8_validate_blocks.h), or on processors without SSSE3 the SSE2
// code below.
//
// Whether a lead byte is acceptable depends only on it and the three bytes after
// it, and continuation bytes are never wrong on their own (a stray one is passed
// over). So every byte of a block can be judged at once from four overlapping
// loads, without tracking where sequences start.
#include "qta/text/unicode.h"
#include "text/cpu_features.h"
#include "text/utf8_validate_kernels.h"
#include "text/utf_blocks.h"
#include "text/utf_sequence.h"

namespace qta::text {
namespace {

using detail::atLeast;
using detail::continuationLanes;
using detail::kBlock;

// Lanes of the 16 bytes at `p` that are lead bytes in error; p[16..18] must be readable.
inline __m128i blockErrors(const uint8_t* p, __m128i b0) {
  const __m128i b1 = detail::loadBytes(p + 1);
  const __m128i b2 = detail::loadBytes(p + 2);
  const __m128i b3 = detail::loadBytes(p + 3);
  // A lead byte without its continuation bytes.
  __m128i errors = _mm_andnot_si128(continuationLanes(b1), atLeast(b0, 0xC0));
  errors = _mm_or_si128(errors, _mm_andnot_si128(continuationLanes(b2), atLeast(b0, 0xE0)));
  errors = _mm_or_si128(errors, _mm_andnot_si128(continuationLanes(b3), atLeast(b0, 0xF0)));
  // 0xC0 and 0xC1 only start overlong forms; 0xF5 and up only values past 0x10FFFF.
  const __m128i c0c1 = _mm_and_si128(b0, _mm_set1_epi8(static_cast<char>(0xFE)));
  errors = _mm_or_si128(errors, _mm_cmpeq_epi8(c0c1, _mm_set1_epi8(static_cast<char>(0xC0))));
  errors = _mm_or_si128(errors, atLeast(b0, 0xF5));
  // 0xE0 needs 0xA0 and up next (else overlong), 0xF0 needs 0x90 and up (else
  // overlong) and 0xF4 below 0x90 (else past 0x10FFFF).
  const auto leadIs = [&](uint8_t lead) {
    return _mm_cmpeq_epi8(b0, _mm_set1_epi8(static_cast<char>(lead)));
  };
  errors = _mm_or_si128(errors, _mm_andnot_si128(atLeast(b1, 0xA0), leadIs(0xE0)));
  errors = _mm_or_si128(errors, _mm_andnot_si128(atLeast(b1, 0x90), leadIs(0xF0)));
  errors = _mm_or_si128(errors, _mm_and_si128(atLeast(b1, 0x90), leadIs(0xF4)));
  return errors;
}

bool validUtf8Sse2(std::string_view src) {
  const auto* p = reinterpret_cast<const uint8_t*>(src.data());
  const uint8_t* end = p + src.size();
  const auto blockIsValid = [](const uint8_t* at) {
    const __m128i b0 = detail::loadBytes(at);
    return detail::highBits(b0) == 0 || _mm_movemask_epi8(blockErrors(at, b0)) == 0;
  };
  if (src.size() >= kBlock + 3) {
    // Whole blocks while the three bytes after the block are there too, then
    // one block overlapping the last, so only the final three bytes are left.
    for (; static_cast<size_t>(end - p) >= kBlock + 3; p += kBlock) {
      if (!blockIsValid(p)) return false;
    }
    if (!blockIsValid(end - (kBlock + 3))) return false;
    p = end - 3;
  }
  return detail::validSequences(p, end);
}

}  // namespace

bool isValidUtf8(std::string_view src) {
  const auto* text = reinterpret_cast<const uint8_t*>(src.data());
  if (detail::avx2Enabled()) return detail::validUtf8Avx2(text, src.size());
  detail::clearUpperState();
  if (detail::ssse3Enabled()) return detail::validUtf8Ssse3(text, src.size());
  return validUtf8Sse2(src);
}

}  // namespace qta::text
