// ECDSA signatures in the two forms they take: DER (what OpenSSL signs and
// verifies) and R and S side by side at a fixed width (what a token carries).
#ifndef QTA_SRC_JOSE_ECDSA_SIGNATURE_H_
#define QTA_SRC_JOSE_ECDSA_SIGNATURE_H_

#include <openssl/evp.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace qta::jose {

// Finishes a started ECDSA signing context and returns R and S, each
// left-padded with zeros to size / 2 bytes. Throws QTAError 17 named after the
// failing call ("BN_bn2binpad" when R or S does not fit its half).
std::vector<uint8_t> finishEcdsaSigning(EVP_MD_CTX* context, size_t size);

// The DER form of the raw signature R || S (two halves of equal length).
// Throws QTAError 19 when OpenSSL cannot make the numbers, 17 when it cannot
// encode them.
std::vector<uint8_t> ecdsaRawToDer(const std::vector<uint8_t>& raw);

}  // namespace qta::jose

#endif  // QTA_SRC_JOSE_ECDSA_SIGNATURE_H_
