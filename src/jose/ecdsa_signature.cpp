// Converting ECDSA signatures between DER and the fixed-width R || S form.
#include "jose/ecdsa_signature.h"

#include <openssl/bn.h>
#include <openssl/ec.h>

#include "jose/crypto_error.h"
#include "jose/openssl_handles.h"
#include "qta/errors/catalogue.h"

namespace qta::jose {

std::vector<uint8_t> finishEcdsaSigning(EVP_MD_CTX* context, size_t size) {
  size_t derLength = 0;
  if (EVP_DigestSignFinal(context, nullptr, &derLength) != 1) {
    throwCryptoError(errors::kUnknownSystemError, "EVP_DigestSignFinal");
  }
  std::vector<uint8_t> der(derLength);
  if (EVP_DigestSignFinal(context, der.data(), &derLength) != 1) {
    throwCryptoError(errors::kUnknownSystemError, "EVP_DigestSignFinal");
  }
  const unsigned char* cursor = der.data();
  const EcdsaSigPtr decoded(d2i_ECDSA_SIG(nullptr, &cursor, static_cast<long>(derLength)));
  if (!decoded) throwCryptoError(errors::kUnknownSystemError, "d2i_ECDSA_SIG");
  const BIGNUM* r = nullptr;
  const BIGNUM* s = nullptr;
  ECDSA_SIG_get0(decoded.get(), &r, &s);
  std::vector<uint8_t> raw(size, 0);
  const int half = static_cast<int>(size / 2);
  if (BN_bn2binpad(r, raw.data(), half) < 0 || BN_bn2binpad(s, raw.data() + half, half) < 0) {
    throwCryptoError(errors::kUnknownSystemError, "BN_bn2binpad");
  }
  return raw;
}

std::vector<uint8_t> ecdsaRawToDer(const std::vector<uint8_t>& raw) {
  EcdsaSigPtr signature(ECDSA_SIG_new());
  if (!signature) throwCryptoError(errors::kNoMemory, "ECDSA_SIG_new");
  const int half = static_cast<int>(raw.size() / 2);
  BignumPtr r(BN_bin2bn(raw.data(), half, nullptr));
  BignumPtr s(BN_bin2bn(raw.data() + half, half, nullptr));
  if (!r || !s) throwCryptoError(errors::kNoMemory, "BN_bin2bn");
  if (ECDSA_SIG_set0(signature.get(), r.get(), s.get()) != 1) {
    throwCryptoError(errors::kUnknownSystemError, "ECDSA_SIG_set0");
  }
  // The signature owns the numbers now.
  r.release();
  s.release();
  const int length = i2d_ECDSA_SIG(signature.get(), nullptr);
  if (length <= 0) throwCryptoError(errors::kUnknownSystemError, "i2d_ECDSA_SIG");
  std::vector<uint8_t> der(static_cast<size_t>(length));
  unsigned char* out = der.data();
  if (i2d_ECDSA_SIG(signature.get(), &out) != length) {
    throwCryptoError(errors::kUnknownSystemError, "i2d_ECDSA_SIG");
  }
  return der;
}

}  // namespace qta::jose
