// Reading and checking compact tokens: the header alone, the signature with
// the encoded payload, and the decoded payload in its three forms.
#include <exception>
#include <string>
#include <vector>

#include "qta/jose/signer.h"
#include "qta/jose/token.h"
#include "qta/json/parser.h"
#include "qta/text/base64.h"

namespace qta::jose {
namespace {

// The JSON value of base64url text, or null when it is no JSON.
JSON::root parseEncoded(const char* text, size_t size) {
  return json::parse(text::base64UrlDecodeToString(text, size));
}

bool isObject(const JSON::root& value) { return value && value->type == JSON::Object; }

}  // namespace

JSON::root jwsDecodeHeader(const std::string& token) {
  const size_t dot = token.find('.');
  if (dot == std::string::npos || dot + 1 == token.size()) return nullptr;
  JSON::root header = parseEncoded(token.data(), dot);
  return isObject(header) ? std::move(header) : nullptr;
}

bool jwsVerifyParts(const std::string& token, JSON::root& header, std::string& encodedPayload,
                    const JWSKey& key) {
  const size_t first = token.find('.');
  if (first == std::string::npos || first + 1 == token.size()) return false;
  const size_t second = token.find('.', first + 1);
  if (second == std::string::npos || second + 1 == token.size()) return false;

  header = parseEncoded(token.data(), first);
  if (!isObject(header)) return false;
  const JSON* alg = header->get("alg");
  if (alg != nullptr && alg->toString() != algorithmName(key.algorithm())) return false;

  encodedPayload.assign(token, first + 1, second - first - 1);
  const std::vector<uint8_t> signature =
      text::base64UrlDecode(token.data() + second + 1, token.size() - second - 1);
  try {
    return jwsVerifyBytes(reinterpret_cast<const uint8_t*>(token.data()), second, key, signature);
  } catch (const std::exception&) {
    // A key that cannot check this token (no algorithm, a failing OpenSSL
    // call) does not vouch for it.
    return false;
  }
}

bool jwsVerify(const std::string& token, JSON::root& header, std::string& payload,
               const JWSKey& key) {
  std::string encoded;
  if (!jwsVerifyParts(token, header, encoded, key)) return false;
  payload = text::base64UrlDecodeToString(encoded);
  return true;
}

bool jwsVerify(const std::string& token, JSON::root& header, std::vector<uint8_t>& payload,
               const JWSKey& key) {
  std::string encoded;
  if (!jwsVerifyParts(token, header, encoded, key)) return false;
  payload = text::base64UrlDecode(encoded);
  return true;
}

bool jwsVerify(const std::string& token, JSON::root& header, JSON::root& payload,
               const JWSKey& key) {
  std::string encoded;
  if (!jwsVerifyParts(token, header, encoded, key)) return false;
  payload = parseEncoded(encoded.data(), encoded.size());
  return isObject(payload);
}

}  // namespace qta::jose
