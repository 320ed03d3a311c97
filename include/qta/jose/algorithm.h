// qta/jose/algorithm.h: the closed set of JWS algorithms the library signs and
// verifies with, their text names and the length of their signatures.
//
// The values are fixed and travel as 32-bit unsigned numbers. Families follow
// from the value: 1-3 HMAC, 4-6 ECDSA, 7-9 RSA PKCS#1 v1.5, with SHA-256,
// SHA-384 and SHA-512 in that order within each family. The functions are pure
// and may be called from any thread.
#ifndef QTA_JOSE_ALGORITHM_H_
#define QTA_JOSE_ALGORITHM_H_

#include <cstddef>
#include <cstdint>

#include "qta/export.h"

namespace qta {

enum class JWSAlgorithm : uint32_t {
  none = 0,
  HS256 = 1,
  HS384 = 2,
  HS512 = 3,
  ES256 = 4,
  ES384 = 5,
  ES512 = 6,
  RS256 = 7,
  RS384 = 8,
  RS512 = 9,
};

namespace jose {

// "HS256" ... "RS512"; "none" for 0 and for every value outside 1-9.
QTA_EXPORT const char* algorithmName(JWSAlgorithm algorithm) noexcept;

// The length of a signature as it travels in a token: the HMAC digest length,
// R and S side by side for ECDSA (64, 96 and 128 bytes: ES512 keeps two 64-byte
// halves although its curve has 521 bits), 256 for RSA. 0 outside 1-9.
QTA_EXPORT size_t signatureSize(JWSAlgorithm algorithm) noexcept;

}  // namespace jose
}  // namespace qta

#endif  // QTA_JOSE_ALGORITHM_H_
