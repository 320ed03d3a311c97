// Portable byte-at-a-time base64 kernels. They finish whatever the vector
// kernels leave over and serve processors without AVX2.
#ifndef QTA_TEXT_BASE64_SCALAR_H_
#define QTA_TEXT_BASE64_SCALAR_H_

#include <cstddef>
#include <cstdint>

#include "text/base64_alphabet.h"

namespace qta::text::base64 {

// Writes encodedLength(size, alphabet.padded) characters to `out`.
void encodeScalar(const uint8_t* in, size_t size, char* out, const Alphabet& alphabet);

// Copies the alphabet characters of `text` to `out` (room for `size` bytes);
// returns how many were copied.
size_t filterScalar(const char* text, size_t size, char* out, const Alphabet& alphabet);

// Decodes `kept` characters that are all in the alphabet; writes
// decodedLength(kept) bytes to `out`.
void decodeScalar(const char* text, size_t kept, uint8_t* out, const Alphabet& alphabet);

}  // namespace qta::text::base64

#endif  // QTA_TEXT_BASE64_SCALAR_H_
