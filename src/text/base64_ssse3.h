// SSSE3 base64 kernels, for processors that report SSSE3 but run no AVX2
// kernels (the caller checks). Like the AVX2 ones, each works through whole
// 16-byte blocks and says how far it got; the scalar kernels finish the rest
// with the same rules.
#ifndef QTA_TEXT_BASE64_SSSE3_H_
#define QTA_TEXT_BASE64_SSSE3_H_

#include <cstddef>
#include <cstdint>

#include "text/base64_alphabet.h"
#include "text/base64_compress.h"

namespace qta::text::base64 {

// Encodes 3-byte groups, four at a time, while 16 bytes remain to be read;
// returns the bytes consumed (a multiple of 12).
size_t encodeSsse3(const uint8_t* in, size_t size, char* out, const Alphabet& alphabet);

// Index of the first byte of `text` outside the alphabet, or `size` if none.
size_t firstSkippedSsse3(const char* text, size_t size, const Alphabet& alphabet);

// Copies the alphabet characters of `text` to `out` (room for
// size + kFilterSlack bytes); returns how many were copied.
size_t filterSsse3(const char* text, size_t size, char* out, const Alphabet& alphabet);

// Decodes every full 4-character group of `kept` alphabet characters when
// there are at least four such groups, into `out`, which has room for
// decodedLength(kept) bytes; returns the characters consumed (a multiple of 4,
// or 0).
size_t decodeSsse3(const char* text, size_t kept, uint8_t* out, const Alphabet& alphabet);

}  // namespace qta::text::base64

#endif  // QTA_TEXT_BASE64_SSSE3_H_
