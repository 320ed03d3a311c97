// JWSKey's ownership of its OpenSSL key, and HMAC keys from secret bytes.
#include <openssl/evp.h>

#include <memory>
#include <new>
#include <utility>

#include "jose/algorithm_traits.h"
#include "jose/crypto_error.h"
#include "jose/openssl_handles.h"
#include "jose/prepared_contexts.h"
#include "qta/errors/catalogue.h"
#include "qta/errors/error.h"
#include "qta/jose/key.h"

namespace qta {
namespace jose {

std::shared_ptr<const detail::PreparedContexts> prepareContexts(JWSAlgorithm algorithm,
                                                                EVP_PKEY* key) noexcept {
  if (familyOf(algorithm) != Family::hmac || key == nullptr || !EVP_PKEY_is_a(key, "HMAC")) {
    return nullptr;
  }
  try {
    auto prepared = std::make_shared<detail::PreparedContexts>();
    prepared->sign.reset(EVP_MD_CTX_new());
    if (prepared->sign &&
        EVP_DigestSignInit(prepared->sign.get(), nullptr, digestOf(algorithm), nullptr, key) == 1) {
      return prepared;
    }
  } catch (const std::bad_alloc&) {
    // Without the template every signature starts its own context.
  }
  discardCryptoErrors();
  return nullptr;
}

}  // namespace jose

JWSKey::JWSKey(const JWSKey& other) noexcept
    : algorithm_(other.algorithm_), key_(other.key_), prepared_(other.prepared_) {
  if (key_ != nullptr) EVP_PKEY_up_ref(key_);
}

JWSKey::JWSKey(JWSKey&& other) noexcept
    : algorithm_(std::exchange(other.algorithm_, JWSAlgorithm::none)),
      key_(std::exchange(other.key_, nullptr)),
      prepared_(std::move(other.prepared_)) {}

JWSKey& JWSKey::operator=(const JWSKey& other) noexcept {
  if (this != &other) {
    if (other.key_ != nullptr) EVP_PKEY_up_ref(other.key_);
    EVP_PKEY_free(key_);
    algorithm_ = other.algorithm_;
    key_ = other.key_;
    prepared_ = other.prepared_;
  }
  return *this;
}

JWSKey& JWSKey::operator=(JWSKey&& other) noexcept {
  if (this != &other) {
    EVP_PKEY_free(key_);
    algorithm_ = std::exchange(other.algorithm_, JWSAlgorithm::none);
    key_ = std::exchange(other.key_, nullptr);
    prepared_ = std::move(other.prepared_);
  }
  return *this;
}

JWSKey::~JWSKey() { EVP_PKEY_free(key_); }

void JWSKey::clear() noexcept {
  EVP_PKEY_free(std::exchange(key_, nullptr));
  algorithm_ = JWSAlgorithm::none;
  prepared_.reset();
}

void JWSKey::store(JWSAlgorithm algorithm, EVP_PKEY* key) noexcept {
  std::shared_ptr<const detail::PreparedContexts> prepared = jose::prepareContexts(algorithm, key);
  EVP_PKEY_free(key_);
  algorithm_ = algorithm;
  key_ = key;
  prepared_ = std::move(prepared);
}

void JWSKey::assign(JWSAlgorithm algorithm, EVP_PKEY* key) noexcept { store(algorithm, key); }

void JWSKey::setHmacSecret(JWSAlgorithm algorithm, const uint8_t* secret, int length) {
  if (jose::familyOf(algorithm) != jose::Family::hmac) {
    throw QTAError(errors::kStringNotValid, "Algorithm must be HMAC");
  }
  if (length < 0)
    throw QTAError(errors::kStringNotValid, "HMAC secret length must not be negative");
  // OpenSSL 3 cannot store an empty secret. HMAC pads a short key with zero
  // bytes to the digest's block size, so one zero byte is the same key.
  static const uint8_t kEmptySecret[1] = {0};
  if (length == 0) {
    secret = kEmptySecret;
    length = 1;
  }
  EVP_PKEY* key = EVP_PKEY_new_mac_key(EVP_PKEY_HMAC, nullptr, secret, length);
  if (key == nullptr) jose::throwCryptoError(errors::kNoMemory, "EVP_PKEY_new_mac_key");
  store(algorithm, key);
}

}  // namespace qta
