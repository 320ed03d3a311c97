// Keys for the jose tests and fuzz harness, generated in the process that
// uses them (once per kind) and handed out as OpenSSL keys, JWSKeys, PEM
// files or DER bytes.
#ifndef QTA_TESTS_JOSE_TEST_KEYS_H_
#define QTA_TESTS_JOSE_TEST_KEYS_H_

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>

#include <cstdint>
#include <cstdio>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "jose/openssl_handles.h"
#include "qta/jose/key.h"

namespace qtajosetest {

// "RSA-2048", "RSA-1024", "RSA-3072" or an EC curve name ("P-256", "P-384",
// "P-521"), optionally followed by "/" and a tag for a second key of the same
// kind ("P-256/other"): a key generated on first use and kept for the process.
// The result is a borrowed pointer.
inline EVP_PKEY* generatedKey(const std::string& kind) {
  static std::map<std::string, qta::jose::PKeyPtr> keys;
  qta::jose::PKeyPtr& key = keys[kind];
  if (!key) {
    const std::string type = kind.substr(0, kind.find('/'));
    if (type.starts_with("RSA-")) {
      key.reset(EVP_PKEY_Q_keygen(nullptr, nullptr, "RSA", size_t(std::stoul(type.substr(4)))));
    } else {
      key.reset(EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", type.c_str()));
    }
    if (!key) throw std::runtime_error("cannot generate a " + kind + " key");
  }
  return key.get();
}

// A JWSKey sharing the generated key `kind` for `algorithm`, unchecked.
inline qta::JWSKey jwsKey(qta::JWSAlgorithm algorithm, const std::string& kind) {
  EVP_PKEY* key = generatedKey(kind);
  EVP_PKEY_up_ref(key);
  qta::JWSKey result;
  result.assign(algorithm, key);
  return result;
}

inline qta::JWSKey hmacKey(qta::JWSAlgorithm algorithm, const std::string& secret) {
  qta::JWSKey key;
  key.setHmacSecret(algorithm, reinterpret_cast<const uint8_t*>(secret.data()),
                    static_cast<int>(secret.size()));
  return key;
}

// The public half of a key, as its own OpenSSL key.
inline qta::jose::PKeyPtr publicHalf(EVP_PKEY* key) {
  unsigned char* der = nullptr;
  const int length = i2d_PUBKEY(key, &der);
  const unsigned char* cursor = der;
  qta::jose::PKeyPtr result(length > 0 ? d2i_PUBKEY(nullptr, &cursor, length) : nullptr);
  OPENSSL_free(der);
  if (!result) throw std::runtime_error("cannot take the public half of a key");
  return result;
}

// The key's private (PKCS#8) or public (SubjectPublicKeyInfo) DER bytes.
inline std::vector<uint8_t> derOf(EVP_PKEY* key, bool privateKey) {
  unsigned char* der = nullptr;
  const int length = privateKey ? i2d_PrivateKey(key, &der) : i2d_PUBKEY(key, &der);
  if (length <= 0) throw std::runtime_error("cannot encode a key");
  std::vector<uint8_t> bytes(der, der + length);
  OPENSSL_free(der);
  return bytes;
}

// Writes the key to `path` in PEM: private (encrypted with `passphrase` when
// given) or public. Returns the path.
inline std::string writePem(EVP_PKEY* key, bool privateKey, const std::string& path,
                            const char* passphrase = nullptr) {
  const qta::jose::FilePtr file(std::fopen(path.c_str(), "w"));
  if (!file) throw std::runtime_error("cannot write " + path);
  int written = 0;
  if (!privateKey) {
    written = PEM_write_PUBKEY(file.get(), key);
  } else if (passphrase == nullptr) {
    written = PEM_write_PrivateKey(file.get(), key, nullptr, nullptr, 0, nullptr, nullptr);
  } else {
    written = PEM_write_PKCS8PrivateKey(file.get(), key, EVP_aes_128_cbc(), passphrase,
                                        static_cast<int>(std::string(passphrase).size()), nullptr,
                                        nullptr);
  }
  if (written != 1) throw std::runtime_error("cannot write " + path);
  return path;
}

}  // namespace qtajosetest

#endif  // QTA_TESTS_JOSE_TEST_KEYS_H_
