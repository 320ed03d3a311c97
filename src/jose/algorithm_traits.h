// What the signing code needs to know about an algorithm beyond its name and
// signature length: its family, its digest and the key size it requires.
#ifndef QTA_SRC_JOSE_ALGORITHM_TRAITS_H_
#define QTA_SRC_JOSE_ALGORITHM_TRAITS_H_

#include <openssl/evp.h>

#include "qta/jose/algorithm.h"

namespace qta::jose {

enum class Family { none, hmac, ecdsa, rsa };

// By value range: 1-3 HMAC, 4-6 ECDSA, 7-9 RSA; none for everything else.
Family familyOf(JWSAlgorithm algorithm) noexcept;

// SHA-256, SHA-384 or SHA-512 by position within the family; null for none.
const EVP_MD* digestOf(JWSAlgorithm algorithm) noexcept;

// The key size in bits the algorithm requires: 256, 384 or 521 for ECDSA, 2048
// for RSA, 0 (any) for the others.
int requiredKeyBits(JWSAlgorithm algorithm) noexcept;

}  // namespace qta::jose

#endif  // QTA_SRC_JOSE_ALGORITHM_TRAITS_H_
