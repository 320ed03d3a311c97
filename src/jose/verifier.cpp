// JWSVerifier and the one-shot verification function.
#include <openssl/crypto.h>
#include <openssl/evp.h>

#include "jose/algorithm_traits.h"
#include "jose/context.h"
#include "jose/crypto_error.h"
#include "jose/ecdsa_signature.h"
#include "qta/errors/catalogue.h"
#include "qta/jose/signer.h"

namespace qta {

JWSVerifier::JWSVerifier(const JWSKey& key) : key_(key) {}

JWSVerifier::~JWSVerifier() = default;

void JWSVerifier::start() {
  jose::startContext(context_, key_, jose::Purpose::verify);
  started_ = true;
}

void JWSVerifier::update(const uint8_t* data, size_t length) {
  if (!started_) start();
  jose::updateContext(context_.get(), data, length, jose::Purpose::verify);
}

bool JWSVerifier::finish(const std::vector<uint8_t>& signature) {
  const size_t size = jose::signatureSize(key_.algorithm());
  if (signature.size() != size) return false;
  if (!started_) start();
  bool valid = false;
  if (jose::familyOf(key_.algorithm()) == jose::Family::hmac) {
    // The MAC is recomputed and compared in constant time.
    const std::vector<uint8_t> expected = jose::finishSigning(context_.get(), size);
    valid = CRYPTO_memcmp(expected.data(), signature.data(), size) == 0;
  } else {
    // OpenSSL checks ECDSA signatures in their DER form only.
    std::vector<uint8_t> der;
    const std::vector<uint8_t>* checked = &signature;
    if (jose::familyOf(key_.algorithm()) == jose::Family::ecdsa) {
      der = jose::ecdsaRawToDer(signature);
      checked = &der;
    }
    const int result = EVP_DigestVerifyFinal(context_.get(), checked->data(), checked->size());
    if (result < 0) jose::throwCryptoError(errors::kUnknownSystemError, "EVP_DigestVerifyFinal");
    valid = result == 1;
    if (!valid) jose::discardCryptoErrors();
  }
  started_ = false;
  return valid;
}

namespace jose {

bool jwsVerifyBytes(const uint8_t* data, size_t length, const JWSKey& key,
                    const std::vector<uint8_t>& signature) {
  JWSVerifier verifier(key);
  verifier.update(data, length);
  return verifier.finish(signature);
}

}  // namespace jose
}  // namespace qta
