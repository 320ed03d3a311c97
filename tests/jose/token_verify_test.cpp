// Checking compact tokens: what passes, what fails without an error, and the
// payload forms of jwsVerify.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "qta/jose/signer.h"
#include "qta/jose/token.h"
#include "qta/json/writer.h"
#include "qta/text/base64.h"
#include "test_keys.h"

namespace qtajosetest {
namespace {

using qta::JSON;
using qta::JWSAlgorithm;
using qta::jose::jwsVerify;
using qta::jose::jwsVerifyParts;
namespace json = qta::json;

std::string encoded(const std::string& text) { return qta::text::base64UrlEncode(text); }

// A token over the raw header and payload texts, signed by `key`.
std::string token(const std::string& header, const std::string& payload, const qta::JWSKey& key) {
  const std::string input = encoded(header) + "." + encoded(payload);
  const std::vector<uint8_t> signature =
      qta::jose::jwsSignBytes(reinterpret_cast<const uint8_t*>(input.data()), input.size(), key);
  return input + "." + qta::text::base64UrlEncode(signature.data(), signature.size());
}

bool verifies(const std::string& text, const qta::JWSKey& key) {
  JSON::root header;
  std::string payload;
  return jwsVerifyParts(text, header, payload, key);
}

TEST(JWSVerify, AcceptsSignedTokensInEveryPayloadForm) {
  const qta::JWSKey key = jwsKey(JWSAlgorithm::ES256, "P-256");
  const std::string text = token(R"({"alg":"ES256","typ":"JWT"})", R"({"sub":"7"})", key);
  JSON::root header;
  std::string encodedPayload;
  ASSERT_TRUE(jwsVerifyParts(text, header, encodedPayload, key));
  EXPECT_EQ(json::toJSONText(*header, -1), R"({ "alg": "ES256", "typ": "JWT" })");
  EXPECT_EQ(encodedPayload, encoded(R"({"sub":"7"})"));

  std::string payloadText;
  std::vector<uint8_t> payloadBytes;
  JSON::root payloadJson;
  EXPECT_TRUE(jwsVerify(text, header, payloadText, key));
  EXPECT_EQ(payloadText, R"({"sub":"7"})");
  EXPECT_TRUE(jwsVerify(text, header, payloadBytes, key));
  EXPECT_EQ(std::string(payloadBytes.begin(), payloadBytes.end()), payloadText);
  EXPECT_TRUE(jwsVerify(text, header, payloadJson, key));
  EXPECT_EQ(json::toJSONText(*payloadJson, -1), R"({ "sub": "7" })");
  EXPECT_EQ(json::toJSONText(*qta::jose::jwsDecodeHeader(text), -1), json::toJSONText(*header, -1));

  // A header without "alg" is accepted; a payload that is no object is kept
  // but does not pass the JSON form.
  const qta::JWSKey hmac = hmacKey(JWSAlgorithm::HS256, "k");
  const std::string bare = token("{}", "[1]", hmac);
  EXPECT_TRUE(jwsVerify(bare, header, payloadText, hmac));
  EXPECT_FALSE(jwsVerify(bare, header, payloadJson, hmac));
  ASSERT_NE(payloadJson, nullptr);
  EXPECT_EQ(payloadJson->type, JSON::Array);
}

TEST(JWSVerify, MalformedOrForeignTokensAreFalseWithoutErrors) {
  const qta::JWSKey key = hmacKey(JWSAlgorithm::HS256, "k");
  const std::string good = token(R"({"alg":"HS256"})", "payload", key);
  const std::string input = good.substr(0, good.rfind('.'));
  std::string changedHeader = good, changedPayload = good, changedSignature = good;
  changedHeader[1] ^= 1;
  changedPayload[good.find('.') + 1] ^= 1;
  changedSignature.back() = changedSignature.back() == 'A' ? 'B' : 'A';
  const std::vector<uint8_t> mac = qta::text::base64UrlDecode(good.substr(good.rfind('.') + 1));
  const std::string shorter = qta::text::base64UrlEncode(mac.data(), 31);
  std::vector<uint8_t> longerMac = mac;
  longerMac.push_back(0);
  const std::string longer = qta::text::base64UrlEncode(longerMac.data(), 33);

  const std::string refused[] = {
      "abc",
      "abc.",
      "a.b",
      "a.b.",
      ".",
      "..",
      input,
      input + ".",
      good.substr(good.find('.')),  // no header
      changedHeader,
      changedPayload,
      changedSignature,
      input + "." + shorter,
      input + "." + longer,
      token(R"({"alg":"HS512"})", "payload", key),  // another algorithm
      token(R"({"alg":"HS256"})", "payload", hmacKey(JWSAlgorithm::HS256, "other")),
      encoded(R"({"alg":"none"})") + "." + encoded("payload") + ".",  // no signature
      token("[1]", "payload", key),
      token("not json", "payload", key),
      token(R"("HS256")", "payload", key),
      good + "." + encoded("x"),  // a third dot joins the signature part
      std::string(10 << 20, 'A') + "." + good,
  };
  for (const std::string& text : refused) {
    EXPECT_FALSE(verifies(text, key)) << text.substr(0, 80);
  }
  EXPECT_TRUE(verifies(good, key));

  // The payload outputs are left alone when the token fails.
  JSON::root header;
  std::string payload = "kept";
  EXPECT_FALSE(jwsVerify(changedSignature, header, payload, key));
  EXPECT_EQ(payload, "kept");

  // Keys that cannot check the token are a false answer too.
  EXPECT_FALSE(verifies(token("{}", "p", key), qta::JWSKey()));
  EXPECT_FALSE(verifies(encoded("{}") + ".cA.!", qta::JWSKey()));
}

TEST(JWSDecodeHeader, ReturnsObjectsOnly) {
  EXPECT_EQ(qta::jose::jwsDecodeHeader("abc"), nullptr);
  EXPECT_EQ(qta::jose::jwsDecodeHeader(encoded("{}") + "."), nullptr);
  EXPECT_EQ(qta::jose::jwsDecodeHeader(encoded("[]") + ".x"), nullptr);
  const JSON::root header = qta::jose::jwsDecodeHeader(encoded(R"({"kid":"1"})") + ".x");
  ASSERT_NE(header, nullptr);
  EXPECT_EQ(json::toJSONText(*header, -1), R"({ "kid": "1" })");
}

}  // namespace
}  // namespace qtajosetest
