// qta/jose/token.h: JWS tokens in the compact serialization
// (BASE64URL(header) "." BASE64URL(payload) "." BASE64URL(signature)).
//
// jwsEncode writes the header with the one-line JSON writer, encodes it and the
// payload, signs the two parts with the key and appends the signature. A
// header member "alg" must name the key's algorithm (else QTAError 49 "alg
// name in JOSE header does not match key algorithm"); a header without "alg"
// is written as given, nothing is added.
//
// Checking a token never throws for anything the token holds: missing dots,
// an empty signature part, a header that is not a JSON object, an "alg" that
// names another algorithm, a signature of the wrong length or a wrong
// signature all give false. Only allocation failures escape. On false the
// header (and, in jwsVerifyParts, the encoded payload) may already have been
// replaced; the decoded payload outputs of jwsVerify are left untouched.
//
// All functions work on their arguments only and may run in parallel with
// copies of one key. Results and outputs belong to the caller.
#ifndef QTA_JOSE_TOKEN_H_
#define QTA_JOSE_TOKEN_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "qta/export.h"
#include "qta/jose/key.h"
#include "qta/json/json.h"

namespace qta::jose {

// The compact token for the payload bytes. The JSON form writes the payload
// with the one-line writer first.
QTA_EXPORT std::string jwsEncode(const JSON& header, const uint8_t* payload, size_t length,
                                 const JWSKey& key);
QTA_EXPORT std::string jwsEncode(const JSON& header, const std::string& payload, const JWSKey& key);
QTA_EXPORT std::string jwsEncode(const JSON& header, const std::vector<uint8_t>& payload,
                                 const JWSKey& key);
QTA_EXPORT std::string jwsEncode(const JSON& header, const JSON& payload, const JWSKey& key);

// The header of a token when it is a JSON object, or null. Checks no signature.
QTA_EXPORT JSON::root jwsDecodeHeader(const std::string& token);

// Checks the token's signature with `key`; stores the parsed header in
// `header` and the payload part, still base64url-encoded, in `encodedPayload`.
QTA_EXPORT bool jwsVerifyParts(const std::string& token, JSON::root& header,
                               std::string& encodedPayload, const JWSKey& key);

// jwsVerifyParts, then the payload decoded into bytes, or parsed as JSON (true
// only when it is an object; another value is stored all the same).
QTA_EXPORT bool jwsVerify(const std::string& token, JSON::root& header, std::string& payload,
                          const JWSKey& key);
QTA_EXPORT bool jwsVerify(const std::string& token, JSON::root& header,
                          std::vector<uint8_t>& payload, const JWSKey& key);
QTA_EXPORT bool jwsVerify(const std::string& token, JSON::root& header, JSON::root& payload,
                          const JWSKey& key);

}  // namespace qta::jose

#endif  // QTA_JOSE_TOKEN_H_
