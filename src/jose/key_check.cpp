// JWSKey::checkKey: does the key's type and size suit its algorithm?
#include <openssl/evp.h>

#include "jose/algorithm_traits.h"
#include "qta/errors/catalogue.h"
#include "qta/errors/error.h"
#include "qta/jose/key.h"
#include "qta/utils/format.h"

namespace qta {
namespace {

struct FamilyRule {
  const char* typeName;     // OpenSSL's key type name
  const char* typeMessage;  // when the key is of another type
  const char* sizeMessage;  // when its size is wrong; null when any size goes
};

const FamilyRule* ruleOf(jose::Family family) {
  static constexpr FamilyRule kHmac = {"HMAC", "key type must be HMAC for: %s", nullptr};
  static constexpr FamilyRule kEcdsa = {"EC", "key type must be EC for: %s",
                                        "Wrong EC key size for: %s"};
  static constexpr FamilyRule kRsa = {"RSA", "key type must be RSA for: %s",
                                      "RSA key size must be 2048 for: %s"};
  switch (family) {
    case jose::Family::hmac:
      return &kHmac;
    case jose::Family::ecdsa:
      return &kEcdsa;
    case jose::Family::rsa:
      return &kRsa;
    case jose::Family::none:
      break;
  }
  return nullptr;
}

[[noreturn]] void refuse(const char* format, JWSAlgorithm algorithm) {
  throw QTAError(errors::kStringNotValid, formatString(format, jose::algorithmName(algorithm)));
}

}  // namespace

void JWSKey::checkKey() const {
  const FamilyRule* rule = ruleOf(jose::familyOf(algorithm_));
  if (rule == nullptr) return;
  // EVP_PKEY_is_a holds for keys made by name and by legacy type alike (an
  // HMAC key from EVP_PKEY_new_mac_key may report base type 0).
  if (key_ == nullptr || !EVP_PKEY_is_a(key_, rule->typeName))
    refuse(rule->typeMessage, algorithm_);
  if (rule->sizeMessage != nullptr && EVP_PKEY_bits(key_) != jose::requiredKeyBits(algorithm_)) {
    refuse(rule->sizeMessage, algorithm_);
  }
}

}  // namespace qta
