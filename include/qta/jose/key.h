// qta/jose/key.h: JWSKey, one algorithm coupled with one OpenSSL key.
//
// Loading a key checks that its type and size suit the algorithm (RSA keys of
// exactly 2048 bits; EC keys on the curve size of ES256, ES384 or ES512; HMAC
// keys for HS256-HS512), so signing and verification never check it again.
// Failures throw QTAError: code 49 for a wrong algorithm, key type, key size
// or unreadable key, 19 when OpenSSL cannot make a key, 30 (with errno) when a
// PEM file cannot be opened. Texts from OpenSSL read "FUNCTION: " followed by
// OpenSSL's description of its oldest queued error.
//
// Ownership: a key holds one reference on its OpenSSL EVP_PKEY. A copy takes
// another reference, destruction and clear() drop one, a move hands the
// reference over and leaves the source empty (algorithm none, no handle).
// Threads: a JWSKey is not locked, but copies of one key may be used in
// different threads at once: signing and verification only read the shared
// OpenSSL key. Encrypted PEM files are refused rather than prompting for a
// pass-phrase.
#ifndef QTA_JOSE_KEY_H_
#define QTA_JOSE_KEY_H_

#include <cstdint>
#include <memory>
#include <string>

#include "qta/export.h"
#include "qta/jose/algorithm.h"

// OpenSSL's key type, declared as OpenSSL declares it, so this header needs
// none of OpenSSL's headers.
typedef struct evp_pkey_st EVP_PKEY;

namespace qta {
namespace detail {
struct PreparedContexts;
struct KeyAccess;
}  // namespace detail

class QTA_EXPORT JWSKey {
 public:
  JWSKey() noexcept = default;
  JWSKey(const JWSKey& other) noexcept;
  JWSKey(JWSKey&& other) noexcept;
  JWSKey& operator=(const JWSKey& other) noexcept;
  JWSKey& operator=(JWSKey&& other) noexcept;
  ~JWSKey();

  JWSAlgorithm algorithm() const noexcept { return algorithm_; }
  // The OpenSSL key, owned by this object (and its copies); null when empty.
  EVP_PKEY* handle() const noexcept { return key_; }
  bool empty() const noexcept { return key_ == nullptr; }

  // Drops the key: algorithm none, no handle.
  void clear() noexcept;
  // Takes over the reference `key` carries (which may be null) and sets the
  // algorithm, dropping the previous key. Runs no key check.
  void assign(JWSAlgorithm algorithm, EVP_PKEY* key) noexcept;

  // An HMAC key made of `length` secret bytes. Refuses other algorithms
  // ("Algorithm must be HMAC") and negative lengths, keeping the old key.
  void setHmacSecret(JWSAlgorithm algorithm, const uint8_t* secret, int length);

  // Read one key from a PEM file, or from DER bytes in memory (PKCS#8 or the
  // algorithm's traditional form for private keys, SubjectPublicKeyInfo for
  // public keys), then run checkKey(). A key that cannot be read leaves the old
  // one in place; a key that fails the check is kept and the check throws.
  void loadPrivateKeyPEM(JWSAlgorithm algorithm, const std::string& path);
  void loadPublicKeyPEM(JWSAlgorithm algorithm, const std::string& path);
  void loadPrivateKeyDER(JWSAlgorithm algorithm, const uint8_t* der, int length);
  void loadPublicKeyDER(JWSAlgorithm algorithm, const uint8_t* der, int length);

  // Throws QTAError 49 when the key does not suit the algorithm: "key type must
  // be RSA for: RS256", "RSA key size must be 2048 for: RS256", "key type must
  // be EC for: ES256", "Wrong EC key size for: ES384", "key type must be HMAC
  // for: HS256". Algorithm none accepts any key.
  void checkKey() const;

 private:
  friend struct detail::KeyAccess;

  // Takes the reference `key` carries, replacing the current key.
  void store(JWSAlgorithm algorithm, EVP_PKEY* key) noexcept;

  JWSAlgorithm algorithm_ = JWSAlgorithm::none;
  EVP_PKEY* key_ = nullptr;
  // Contexts keyed once and copied for each signature (HMAC keys only; null
  // otherwise); shared by copies of the key and never changed after store().
  std::shared_ptr<const detail::PreparedContexts> prepared_;
};

}  // namespace qta

#endif  // QTA_JOSE_KEY_H_
