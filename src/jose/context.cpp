// Starting, feeding and finishing the signing and verifying contexts.
#include "jose/context.h"

#include "jose/algorithm_traits.h"
#include "jose/crypto_error.h"
#include "jose/prepared_contexts.h"
#include "qta/errors/catalogue.h"
#include "qta/errors/error.h"

namespace qta {
namespace detail {

void ContextDeleter::operator()(EVP_MD_CTX* context) const noexcept { EVP_MD_CTX_free(context); }

}  // namespace detail

namespace jose {

void startContext(OwnedContext& context, const JWSKey& key, Purpose purpose) {
  const bool signing = purpose == Purpose::sign;
  if (!context) {
    context.reset(EVP_MD_CTX_new());
    if (!context) throwCryptoError(errors::kNoMemory, "EVP_MD_CTX_new");
  }
  const EVP_MD* digest = digestOf(key.algorithm());
  if (digest == nullptr) {
    throw QTAError(errors::kStringNotValid, signing ? "Unsupported algorithm for signing"
                                                    : "Unsupported algorithm for verifying");
  }
  const uint32_t failureCode = signing ? errors::kUnknownSystemError : errors::kNoMemory;
  const bool useSigning = signing || familyOf(key.algorithm()) == Family::hmac;
  const detail::PreparedContexts* prepared = detail::KeyAccess::prepared(key);
  if (useSigning && prepared != nullptr) {
    if (EVP_MD_CTX_copy_ex(context.get(), prepared->sign.get()) != 1) {
      throwCryptoError(failureCode, "EVP_MD_CTX_copy_ex");
    }
    return;
  }
  EVP_MD_CTX_reset(context.get());
  const int result =
      useSigning ? EVP_DigestSignInit(context.get(), nullptr, digest, nullptr, key.handle())
                 : EVP_DigestVerifyInit(context.get(), nullptr, digest, nullptr, key.handle());
  if (result == 1) return;
  const char* name = useSigning ? "EVP_DigestSignInit" : "EVP_DigestVerifyInit";
  throwCryptoError(result == -2 ? errors::kStringNotValid : failureCode, name);
}

void updateContext(EVP_MD_CTX* context, const uint8_t* data, size_t length, Purpose purpose) {
  if (EVP_DigestUpdate(context, data, length) != 1) {
    throwCryptoError(errors::kNoMemory,
                     purpose == Purpose::sign ? "EVP_DigestSignUpdate" : "EVP_DigestVerifyUpdate");
  }
}

std::vector<uint8_t> finishSigning(EVP_MD_CTX* context, size_t size) {
  std::vector<uint8_t> signature(size, 0);
  size_t capacity = size;
  if (EVP_DigestSignFinal(context, signature.data(), &capacity) != 1) {
    throwCryptoError(errors::kUnknownSystemError, "EVP_DigestSignFinal");
  }
  return signature;
}

}  // namespace jose
}  // namespace qta
