// jwsEncode: compact tokens from a header, a payload and a key.
#include <string>
#include <vector>

#include "qta/errors/catalogue.h"
#include "qta/errors/error.h"
#include "qta/jose/signer.h"
#include "qta/jose/token.h"
#include "qta/json/writer.h"
#include "qta/text/base64.h"

namespace qta::jose {

std::string jwsEncode(const JSON& header, const uint8_t* payload, size_t length,
                      const JWSKey& key) {
  const JSON* alg = header.get("alg");
  if (alg != nullptr && alg->toString() != algorithmName(key.algorithm())) {
    throw QTAError(errors::kStringNotValid, "alg name in JOSE header does not match key algorithm");
  }
  const std::string headerText = json::toJSONText(header, -1);
  std::string token = text::base64UrlEncode(headerText);
  token += '.';
  token += text::base64UrlEncode(payload, length);
  const std::vector<uint8_t> signature =
      jwsSignBytes(reinterpret_cast<const uint8_t*>(token.data()), token.size(), key);
  token += '.';
  token += text::base64UrlEncode(signature.data(), signature.size());
  return token;
}

std::string jwsEncode(const JSON& header, const std::string& payload, const JWSKey& key) {
  return jwsEncode(header, reinterpret_cast<const uint8_t*>(payload.data()), payload.size(), key);
}

std::string jwsEncode(const JSON& header, const std::vector<uint8_t>& payload, const JWSKey& key) {
  return jwsEncode(header, payload.data(), payload.size(), key);
}

std::string jwsEncode(const JSON& header, const JSON& payload, const JWSKey& key) {
  return jwsEncode(header, json::toJSONText(payload, -1), key);
}

}  // namespace qta::jose
