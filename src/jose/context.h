// What JWSSigner and JWSVerifier share: starting their OpenSSL context and
// producing a signature from a signing context.
#ifndef QTA_SRC_JOSE_CONTEXT_H_
#define QTA_SRC_JOSE_CONTEXT_H_

#include <openssl/evp.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "qta/jose/key.h"
#include "qta/jose/signer.h"

namespace qta::jose {

using OwnedContext = std::unique_ptr<EVP_MD_CTX, detail::ContextDeleter>;

enum class Purpose { sign, verify };

// Makes `context` when there is none and starts it for the key's algorithm:
// a copy of the key's prepared context when it has one, otherwise
// EVP_DigestSignInit, or EVP_DigestVerifyInit for verifying anything but HMAC.
// HMAC values are checked by computing them, because OpenSSL 3 has no
// digest-verify for MAC keys. Throws QTAError 49 "Unsupported algorithm for
// signing" (or "verifying") for a key without an algorithm, 49 when the key
// cannot do the operation, and 17 (signing) or 19 (verifying) for any other
// failure to start.
void startContext(OwnedContext& context, const JWSKey& key, Purpose purpose);

// Feeds bytes to a started context; a failure throws QTAError 19 named after
// the purpose's update call.
void updateContext(EVP_MD_CTX* context, const uint8_t* data, size_t length, Purpose purpose);

// The signature of a started signing context into a buffer of `size` bytes,
// kept at that size. A failure throws QTAError 17 "EVP_DigestSignFinal: ...".
std::vector<uint8_t> finishSigning(EVP_MD_CTX* context, size_t size);

}  // namespace qta::jose

#endif  // QTA_SRC_JOSE_CONTEXT_H_
