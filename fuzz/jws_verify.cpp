// Checks arbitrary text as a compact JWS token with a fixed key of each
// family (HMAC, ECDSA, RSA; the ECDSA and RSA keys are made once per run).
// Nothing may throw or crash. Then the text's first two parts are signed with
// the HMAC key, and the token so made must verify exactly when its header is
// a JSON object whose "alg", if any, is "HS256".
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "jose/test_keys.h"
#include "qta/jose/signer.h"
#include "qta/jose/token.h"
#include "qta/text/base64.h"

namespace {

const std::vector<qta::JWSKey>& keys() {
  static const std::vector<qta::JWSKey> all = {
      qtajosetest::hmacKey(qta::JWSAlgorithm::HS256, "fuzzing secret"),
      qtajosetest::jwsKey(qta::JWSAlgorithm::ES256, "P-256"),
      qtajosetest::jwsKey(qta::JWSAlgorithm::RS256, "RSA-2048"),
  };
  return all;
}

// Whether a correctly signed token with this header must verify with HS256.
bool headerAccepts(const std::string& token) {
  const qta::JSON::root header = qta::jose::jwsDecodeHeader(token);
  if (!header) return false;
  const qta::JSON* alg = header->get("alg");
  return alg == nullptr || alg->toString() == "HS256";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string token(reinterpret_cast<const char*>(data), size);
  for (const qta::JWSKey& key : keys()) {
    qta::JSON::root header;
    std::string payload;
    qta::jose::jwsVerifyParts(token, header, payload, key);
  }

  const size_t first = token.find('.');
  if (first == std::string::npos) return 0;
  const size_t second = token.find('.', first + 1);
  const size_t end = second == std::string::npos ? token.size() : second;
  const std::string input = token.substr(0, end);
  const std::vector<uint8_t> signature = qta::jose::jwsSignBytes(
      reinterpret_cast<const uint8_t*>(input.data()), input.size(), keys()[0]);
  const std::string resigned =
      input + "." + qta::text::base64UrlEncode(signature.data(), signature.size());
  qta::JSON::root header;
  std::string payload;
  if (qta::jose::jwsVerifyParts(resigned, header, payload, keys()[0]) != headerAccepts(resigned)) {
    std::abort();
  }
  return 0;
}
