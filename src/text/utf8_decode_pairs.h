// UTF-8 text of one- and two-byte sequences (accented Latin, Greek, Cyrillic,
// Hebrew, Arabic) 16 bytes a step with SSSE3: the step the decoder uses on
// short texts and on the two-byte runs its block converters leave to it.
#ifndef QTA_TEXT_UTF8_DECODE_PAIRS_H_
#define QTA_TEXT_UTF8_DECODE_PAIRS_H_

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

}  // namespace qta::text::detail

#endif  // QTA_TEXT_UTF8_DECODE_PAIRS_H_
