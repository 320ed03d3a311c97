// JWSKey's loaders: PEM files and DER bytes.
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>

#include <cerrno>
#include <cstdio>
#include <string>

#include "jose/algorithm_traits.h"
#include "jose/crypto_error.h"
#include "jose/openssl_handles.h"
#include "qta/errors/catalogue.h"
#include "qta/errors/error.h"
#include "qta/jose/key.h"

namespace qta {
namespace {

// Encrypted keys are refused: a library must never stop to ask a terminal for
// a pass-phrase.
int refusePassphrase(char* /*buffer*/, int /*size*/, int /*writing*/, void* /*data*/) { return -1; }

using PemReader = EVP_PKEY* (*)(FILE*, EVP_PKEY**, pem_password_cb*, void*);

// The key read from the PEM file at `path`; the file is closed on every path.
EVP_PKEY* readPem(const std::string& path, PemReader reader, const char* readerName) {
  const jose::FilePtr file(std::fopen(path.c_str(), "r"));
  if (!file) throw QTAError(errors::kFileNotFound, errno, "cannot open PEM file");
  EVP_PKEY* key = reader(file.get(), nullptr, refusePassphrase, nullptr);
  if (key == nullptr) jose::throwCryptoError(errors::kStringNotValid, readerName);
  return key;
}

[[noreturn]] void unsupported() {
  throw QTAError(errors::kStringNotValid, "Unsupported algorithm");
}

// OpenSSL's key type for the algorithm's family, or 0 for none.
int keyTypeOf(JWSAlgorithm algorithm) {
  switch (jose::familyOf(algorithm)) {
    case jose::Family::hmac:
      return EVP_PKEY_HMAC;
    case jose::Family::ecdsa:
      return EVP_PKEY_EC;
    case jose::Family::rsa:
      return EVP_PKEY_RSA;
    case jose::Family::none:
      break;
  }
  return 0;
}

// A negative length reads as no bytes at all, which OpenSSL refuses as it
// refuses any truncated key.
long derLength(int length) { return length < 0 ? 0 : length; }

}  // namespace

void JWSKey::loadPrivateKeyPEM(JWSAlgorithm algorithm, const std::string& path) {
  store(algorithm, readPem(path, PEM_read_PrivateKey, "PEM_read_PrivateKey"));
  checkKey();
}

void JWSKey::loadPublicKeyPEM(JWSAlgorithm algorithm, const std::string& path) {
  store(algorithm, readPem(path, PEM_read_PUBKEY, "PEM_read_PUBKEY"));
  checkKey();
}

void JWSKey::loadPrivateKeyDER(JWSAlgorithm algorithm, const uint8_t* der, int length) {
  const int type = keyTypeOf(algorithm);
  if (type == 0) unsupported();
  const unsigned char* cursor = der;
  EVP_PKEY* key = d2i_PrivateKey(type, nullptr, &cursor, derLength(length));
  if (key == nullptr) jose::throwCryptoError(errors::kStringNotValid, "d2i_PrivateKey");
  store(algorithm, key);
  checkKey();
}

void JWSKey::loadPublicKeyDER(JWSAlgorithm algorithm, const uint8_t* der, int length) {
  if (jose::familyOf(algorithm) == jose::Family::none) unsupported();
  const unsigned char* cursor = der;
  EVP_PKEY* key = d2i_PUBKEY(nullptr, &cursor, derLength(length));
  if (key == nullptr) jose::throwCryptoError(errors::kStringNotValid, "d2i_PUBKEY");
  store(algorithm, key);
  checkKey();
}

}  // namespace qta
