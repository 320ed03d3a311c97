// AVX2 base64 kernels, for processors that report AVX2 at run time (the
// caller checks). Each works through whole blocks and says how far it got;
// the scalar kernels finish the rest with the same rules. Blocks near the end
// may overlap ones already done: they rewrite the same output.
#ifndef QTA_TEXT_BASE64_AVX2_H_
#define QTA_TEXT_BASE64_AVX2_H_

#include <cstddef>
#include <cstdint>

#include "text/base64_alphabet.h"
#include "text/base64_compress.h"

namespace qta::text::base64 {

// Encodes every full 3-byte group when there are at least eight of them;
// returns the bytes consumed (a multiple of 3, or 0).
size_t encodeAvx2(const uint8_t* in, size_t size, char* out, const Alphabet& alphabet);

// Index of the first byte of `text` outside the alphabet, or `size` if none.
size_t firstSkippedAvx2(const char* text, size_t size, const Alphabet& alphabet);

// Copies the alphabet characters of `text` to `out` (room for
// size + kFilterSlack bytes); returns how many were copied.
size_t filterAvx2(const char* text, size_t size, char* out, const Alphabet& alphabet);

// Decodes every full 4-character group of `kept` alphabet characters when
// there are at least eight of them, into `out`, which has room for
// decodedLength(kept) bytes; returns the characters consumed (a multiple of 4,
// or 0).
size_t decodeAvx2(const char* text, size_t kept, uint8_t* out, const Alphabet& alphabet);

}  // namespace qta::text::base64

#endif  // QTA_TEXT_BASE64_AVX2_H_
