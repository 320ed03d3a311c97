// jwsEncode: the token's three parts, the payload forms and the "alg" rule.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "error_text.h"
#include "qta/jose/signer.h"
#include "qta/jose/token.h"
#include "qta/json/writer.h"
#include "qta/text/base64.h"
#include "test_keys.h"

namespace qtajosetest {
namespace {

using qta::JSON;
using qta::JWSAlgorithm;
using qta::jose::jwsEncode;
namespace json = qta::json;

JSON::root header(const char* alg) {
  JSON::root object = json::makeObject();
  if (alg != nullptr) object->set("alg", json::makeString(alg));
  object->set("typ", json::makeString("JWT"));
  return object;
}

std::vector<std::string> parts(const std::string& token) {
  std::vector<std::string> result(1);
  for (const char c : token) {
    if (c == '.') {
      result.emplace_back();
    } else {
      result.back() += c;
    }
  }
  return result;
}

TEST(JWSEncode, JoinsTheEncodedHeaderPayloadAndSignature) {
  for (const JWSAlgorithm algorithm : {JWSAlgorithm::HS256, JWSAlgorithm::ES256}) {
    const qta::JWSKey key =
        algorithm == JWSAlgorithm::HS256 ? hmacKey(algorithm, "k") : jwsKey(algorithm, "P-256");
    const JSON::root head = header(qta::jose::algorithmName(algorithm));
    const std::string token = jwsEncode(*head, std::string("{\"sub\":\"1\"}\0x", 13), key);
    const std::vector<std::string> split = parts(token);
    ASSERT_EQ(split.size(), 3u) << token;
    EXPECT_EQ(split[0], qta::text::base64UrlEncode(json::toJSONText(*head, -1)));
    EXPECT_EQ(qta::text::base64UrlDecodeToString(split[1]), std::string("{\"sub\":\"1\"}\0x", 13));
    const std::string input = split[0] + "." + split[1];
    EXPECT_TRUE(qta::jose::jwsVerifyBytes(reinterpret_cast<const uint8_t*>(input.data()),
                                          input.size(), key, qta::text::base64UrlDecode(split[2])));
  }
}

TEST(JWSEncode, EveryPayloadFormGivesTheSameToken) {
  const qta::JWSKey key = hmacKey(JWSAlgorithm::HS384, "k");
  const JSON::root head = header("HS384");
  JSON::root payload = json::makeObject();
  payload->set("n", json::makeNumber(1.5));
  const std::string text = json::toJSONText(*payload, -1);
  const std::vector<uint8_t> bytes(text.begin(), text.end());
  const std::string expected = jwsEncode(*head, text, key);
  EXPECT_EQ(jwsEncode(*head, bytes, key), expected);
  EXPECT_EQ(jwsEncode(*head, bytes.data(), bytes.size(), key), expected);
  EXPECT_EQ(jwsEncode(*head, *payload, key), expected);
}

TEST(JWSEncode, AlgMustNameTheKeysAlgorithmWhenPresent) {
  const qta::JWSKey key = hmacKey(JWSAlgorithm::HS256, "k");
  const std::string refusal =
      "49 String not valid : alg name in JOSE header does not match key algorithm";
  JSON::root refusedHeaders[] = {header("HS512"), header("hs256"), json::makeObject()};
  refusedHeaders[2]->set("alg", json::makeNumber(1));
  for (const JSON::root& refused : refusedHeaders) {
    EXPECT_EQ(errorText([&] { jwsEncode(*refused, std::string("p"), key); }), refusal)
        << json::toJSONText(*refused);
  }
  // Without "alg" the header is written as given: nothing is added.
  const JSON::root none = header(nullptr);
  const std::string token = jwsEncode(*none, std::string("p"), key);
  EXPECT_EQ(qta::text::base64UrlDecodeToString(parts(token)[0]), json::toJSONText(*none, -1));
}

}  // namespace
}  // namespace qtajosetest
