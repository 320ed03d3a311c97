// UTF-16 text below U+0800 (ASCII, accented Latin, Greek, Cyrillic, Hebrew,
// Arabic) to UTF-8 with SSSE3, eight units a step: the steps the encoder uses
// on short texts, where its block kernels do not run.
#ifndef QTA_TEXT_UTF8_ENCODE_PAIRS_H_
#define QTA_TEXT_UTF8_ENCODE_PAIRS_H_

#include <cstddef>

namespace qta::text::detail {

// Steps take this many units.
inline constexpr ptrdiff_t kPairStepUnits = 8;

// The most units encodeShortPairsSsse3() takes.
inline constexpr size_t kPairWholeUnits = 24;

// Converts all the 8 to kPairWholeUnits `units` at `p` in one go when they
// are below U+0800 and their bytes fit in `room`, writing exactly those bytes;
// else writes nothing. Returns the bytes written.
size_t encodeShortPairsSsse3(const char16_t* p, size_t units, char* out, size_t room);

// Converts from `p` while a step's units remain before `end`, `room` holds 16
// more bytes and the next units are all below U+0800. Never writes past `room`
// nor past the bytes the units after the converted ones are sure to give, so a
// buffer of exactly the result's size suffices. Advances `p`; returns the bytes
// written.
size_t encodePairsSsse3(const char16_t*& p, const char16_t* end, char* out, size_t room);

}  // namespace qta::text::detail

#endif  // QTA_TEXT_UTF8_ENCODE_PAIRS_H_
