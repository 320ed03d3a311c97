// qta/jose/signer.h: signing and verifying raw bytes with a JWSKey.
//
// JWSSigner and JWSVerifier take the message in pieces (update) and produce or
// check the signature in its JWS form (finish): the HMAC value, the RSA
// signature, or for ECDSA the fixed-width R and S side by side (never DER).
// Both start their OpenSSL context on the first update or finish and can be
// used again after finish for a new message.
//
// Failures throw QTAError: 49 "Unsupported algorithm for signing" (or "for
// verifying") for a key without an algorithm; 19 when OpenSSL cannot make a
// context or number, cannot take data or cannot start verifying; 17 when it
// cannot start signing, finish, or convert an ECDSA signature (ES512 signing
// throws "BN_bn2binpad: ..." whenever R or S needs more than 64 bytes). A wrong
// signature, or one of the wrong length, is not an error: finish returns false.
//
// Ownership and threads: each object holds a copy of its key and owns its
// context; it belongs to one thread at a time. The one-shot functions build
// their own, so they may run in parallel on copies of one key.
#ifndef QTA_JOSE_SIGNER_H_
#define QTA_JOSE_SIGNER_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "qta/export.h"
#include "qta/jose/key.h"

typedef struct evp_md_ctx_st EVP_MD_CTX;

namespace qta {
namespace detail {
// Frees an OpenSSL digest context.
struct ContextDeleter {
  void operator()(EVP_MD_CTX* context) const noexcept;
};
}  // namespace detail

class QTA_EXPORT JWSSigner {
 public:
  explicit JWSSigner(const JWSKey& key);
  ~JWSSigner();
  JWSSigner(const JWSSigner&) = delete;
  JWSSigner& operator=(const JWSSigner&) = delete;

  // Adds bytes to the message; after finish() it starts a new message.
  void update(const uint8_t* data, size_t length);
  // The signature of the message so far. Called again without an update in
  // between, returns the same signature.
  const std::vector<uint8_t>& finish();

 private:
  void start();

  JWSKey key_;
  std::unique_ptr<EVP_MD_CTX, detail::ContextDeleter> context_;
  bool started_ = false;
  bool finished_ = false;
  std::vector<uint8_t> signature_;
};

class QTA_EXPORT JWSVerifier {
 public:
  explicit JWSVerifier(const JWSKey& key);
  ~JWSVerifier();
  JWSVerifier(const JWSVerifier&) = delete;
  JWSVerifier& operator=(const JWSVerifier&) = delete;

  // Adds bytes to the message; after finish() it starts a new message.
  void update(const uint8_t* data, size_t length);
  // Whether `signature` signs the message. A signature whose length differs
  // from signatureSize() of the key's algorithm is false at once, and the
  // message is kept; otherwise the next update starts a new message.
  bool finish(const std::vector<uint8_t>& signature);

 private:
  void start();

  JWSKey key_;
  std::unique_ptr<EVP_MD_CTX, detail::ContextDeleter> context_;
  bool started_ = false;
};

namespace jose {

// One-shot forms: sign `data`, or check `signature` over it.
QTA_EXPORT std::vector<uint8_t> jwsSignBytes(const uint8_t* data, size_t length, const JWSKey& key);
QTA_EXPORT bool jwsVerifyBytes(const uint8_t* data, size_t length, const JWSKey& key,
                               const std::vector<uint8_t>& signature);

}  // namespace jose
}  // namespace qta

#endif  // QTA_JOSE_SIGNER_H_
