// JWSSigner and JWSVerifier: round trips for every algorithm, answers checked
// against OpenSSL's own one-shot calls and a published HMAC example, reuse
// after finish, and the signatures that must fail.
#include <gtest/gtest.h>
#include <openssl/ec.h>
#include <openssl/evp.h>

#include <string>
#include <thread>
#include <vector>

#include "error_text.h"
#include "qta/jose/signer.h"
#include "qta/text/base64.h"
#include "test_keys.h"

namespace qtajosetest {
namespace {

using qta::JWSAlgorithm;
using qta::JWSKey;
using qta::jose::ContextPtr;
using qta::jose::EcdsaSigPtr;
using qta::jose::jwsSignBytes;
using qta::jose::jwsVerifyBytes;

std::vector<uint8_t> bytes(const std::string& text) { return {text.begin(), text.end()}; }

std::vector<uint8_t> sign(const std::string& message, const JWSKey& key) {
  return jwsSignBytes(reinterpret_cast<const uint8_t*>(message.data()), message.size(), key);
}

bool verify(const std::string& message, const JWSKey& key, const std::vector<uint8_t>& signature) {
  return jwsVerifyBytes(reinterpret_cast<const uint8_t*>(message.data()), message.size(), key,
                        signature);
}

// A signing key, its public half as a key of its own, and a second key of
// the same kind.
struct KeySet {
  JWSKey signing;
  JWSKey verifying;
  JWSKey other;
};

KeySet keySet(JWSAlgorithm algorithm) {
  static const char* const kKinds[] = {"",      "",      "",         "",         "P-256",
                                       "P-384", "P-521", "RSA-2048", "RSA-2048", "RSA-2048"};
  const auto value = static_cast<uint32_t>(algorithm);
  if (value <= 3) {
    return {hmacKey(algorithm, "secret"), hmacKey(algorithm, "secret"),
            hmacKey(algorithm, "secreT")};
  }
  const std::string kind = kKinds[value];
  JWSKey verifying;
  verifying.assign(algorithm, publicHalf(generatedKey(kind)).release());
  return {jwsKey(algorithm, kind), verifying, jwsKey(algorithm, kind + "/other")};
}

// Every algorithm whose signatures fit their size (ES512's rarely do).
constexpr JWSAlgorithm kSigning[] = {JWSAlgorithm::HS256, JWSAlgorithm::HS384, JWSAlgorithm::HS512,
                                     JWSAlgorithm::ES256, JWSAlgorithm::ES384, JWSAlgorithm::RS256,
                                     JWSAlgorithm::RS384, JWSAlgorithm::RS512};

TEST(JWSSignature, RoundTripsAndRefusesEveryAlteration) {
  const std::string message = "eyJhbGciOiJIUzI1NiJ9.eyJzdWIiOiIxIn0";
  for (const JWSAlgorithm algorithm : kSigning) {
    SCOPED_TRACE(qta::jose::algorithmName(algorithm));
    const KeySet keys = keySet(algorithm);
    const std::vector<uint8_t> signature = sign(message, keys.signing);
    ASSERT_EQ(signature.size(), qta::jose::signatureSize(algorithm));
    EXPECT_TRUE(verify(message, keys.verifying, signature));
    EXPECT_FALSE(verify(message + " ", keys.verifying, signature));
    EXPECT_FALSE(verify(message, keys.other, signature));
    for (const size_t at : {size_t(0), signature.size() / 2, signature.size() - 1}) {
      std::vector<uint8_t> altered = signature;
      altered[at] ^= 0x01;
      EXPECT_FALSE(verify(message, keys.verifying, altered)) << at;
    }
    std::vector<uint8_t> longer = signature;
    longer.push_back(0);
    EXPECT_FALSE(verify(message, keys.verifying, longer));
    EXPECT_FALSE(verify(message, keys.verifying, {signature.begin(), signature.end() - 1}));
    EXPECT_FALSE(verify(message, keys.verifying, {}));
  }
}

// Published HMAC-SHA256 answers: the example of RFC 7515, appendix A.1, and
// the empty key (a valid HMAC key) over the empty message.
TEST(JWSSignature, Hs256MatchesPublishedAnswers) {
  const struct {
    const char* secret;  // base64url
    const char* input;
    const char* mac;  // base64url
  } kAnswers[] = {
      {"AyM1SysPpbyDfgZld3umj1qzKObwVMkoqQ-EstJQLr_T-1qS0gZH75aKtMN3Yj0iPS4hcgUuTwjAzZr1Z9CAow",
       "eyJ0eXAiOiJKV1QiLA0KICJhbGciOiJIUzI1NiJ9.eyJpc3MiOiJqb2UiLA0KICJleHAiOjEzMDA4MTkzODAsDQogI"
       "mh0dHA6Ly9leGFtcGxlLmNvbS9pc19yb290Ijp0cnVlfQ",
       "dBjftJeZ4CVP-mB92K27uhbUJU1p1r_wW1gFWFOEjXk"},
      {"", "", "thNnmggU2ex3L5XXeMNfxf8Wl8STcVZTxscSFEKSxa0"},
  };
  for (const auto& answer : kAnswers) {
    const std::vector<uint8_t> secret = qta::text::base64UrlDecode(answer.secret);
    JWSKey key;
    key.setHmacSecret(JWSAlgorithm::HS256, secret.data(), static_cast<int>(secret.size()));
    EXPECT_NO_THROW(key.checkKey());
    const std::vector<uint8_t> expected = qta::text::base64UrlDecode(answer.mac);
    EXPECT_EQ(sign(answer.input, key), expected) << answer.mac;
    EXPECT_TRUE(verify(answer.input, key, expected)) << answer.mac;
  }
}

// RSA PKCS#1 v1.5 signatures are deterministic: they equal OpenSSL's one-shot
// digest-sign. ECDSA's R||S, turned into DER here, passes OpenSSL's one-shot
// digest-verify.
TEST(JWSSignature, AgreesWithOpenSslOneShotCalls) {
  const std::string message = "payload";
  const auto* data = reinterpret_cast<const unsigned char*>(message.data());

  EVP_PKEY* rsa = generatedKey("RSA-2048");
  const ContextPtr rsaContext(EVP_MD_CTX_new());
  ASSERT_EQ(EVP_DigestSignInit(rsaContext.get(), nullptr, EVP_sha384(), nullptr, rsa), 1);
  std::vector<uint8_t> reference(256);
  size_t length = reference.size();
  ASSERT_EQ(EVP_DigestSign(rsaContext.get(), reference.data(), &length, data, message.size()), 1);
  EXPECT_EQ(sign(message, jwsKey(JWSAlgorithm::RS384, "RSA-2048")), reference);

  EVP_PKEY* ec = generatedKey("P-384");
  const std::vector<uint8_t> raw = sign(message, jwsKey(JWSAlgorithm::ES384, "P-384"));
  ASSERT_EQ(raw.size(), 96u);
  const EcdsaSigPtr signature(ECDSA_SIG_new());
  ECDSA_SIG_set0(signature.get(), BN_bin2bn(raw.data(), 48, nullptr),
                 BN_bin2bn(raw.data() + 48, 48, nullptr));
  unsigned char* der = nullptr;
  const int derLength = i2d_ECDSA_SIG(signature.get(), &der);
  const ContextPtr ecContext(EVP_MD_CTX_new());
  ASSERT_EQ(EVP_DigestVerifyInit(ecContext.get(), nullptr, EVP_sha384(), nullptr, ec), 1);
  EXPECT_EQ(EVP_DigestVerify(ecContext.get(), der, derLength, data, message.size()), 1);
  // The DER form itself is no JWS signature.
  EXPECT_FALSE(verify(message, jwsKey(JWSAlgorithm::ES384, "P-384"),
                      std::vector<uint8_t>(der, der + derLength)));
  OPENSSL_free(der);
}

TEST(JWSSignature, SignerAndVerifierStartAgainAfterFinish) {
  for (const JWSAlgorithm algorithm : {JWSAlgorithm::HS512, JWSAlgorithm::ES256}) {
    const KeySet keys = keySet(algorithm);
    qta::JWSSigner signer(keys.signing);
    const std::vector<uint8_t> first = bytes("first"), second = bytes("second message");
    signer.update(first.data(), 2);
    signer.update(first.data() + 2, first.size() - 2);
    const std::vector<uint8_t> firstSignature = signer.finish();
    EXPECT_EQ(signer.finish(), firstSignature);  // no update: the same bytes
    signer.update(second.data(), second.size());
    const std::vector<uint8_t> secondSignature = signer.finish();

    qta::JWSVerifier verifier(keys.verifying);
    verifier.update(second.data(), second.size());
    EXPECT_FALSE(verifier.finish({1, 2, 3}));  // wrong length: the message is kept
    EXPECT_TRUE(verifier.finish(secondSignature));
    verifier.update(first.data(), first.size());
    EXPECT_TRUE(verifier.finish(firstSignature));
    verifier.update(first.data(), first.size());
    EXPECT_FALSE(verifier.finish(secondSignature));
  }
  // An empty message can be signed.
  const JWSKey key = hmacKey(JWSAlgorithm::HS256, "k");
  qta::JWSSigner empty(key);
  EXPECT_TRUE(verify("", key, empty.finish()));
}

TEST(JWSSignature, KeysThatCannotSignOrVerifyThrow) {
  const JWSKey empty;
  const uint8_t byte = 0;
  const std::string signing = "49 String not valid : Unsupported algorithm for signing";
  const std::string verifying = "49 String not valid : Unsupported algorithm for verifying";
  EXPECT_EQ(errorText([&] { qta::JWSSigner(empty).update(&byte, 1); }), signing);
  EXPECT_EQ(errorText([&] { qta::JWSSigner(empty).finish(); }), signing);
  EXPECT_EQ(errorText([&] { qta::JWSVerifier(empty).update(&byte, 1); }), verifying);
  EXPECT_EQ(errorText([&] { qta::JWSVerifier(empty).finish({}); }), verifying);
  EXPECT_FALSE(qta::JWSVerifier(empty).finish({0}));  // expected length 0

  // A key given without its check: signing fails in OpenSSL, not in memory.
  const std::string wrongKey = errorText([] { sign("m", jwsKey(JWSAlgorithm::HS256, "P-256")); });
  EXPECT_TRUE(wrongKey.starts_with("17 Unknown System Error : EVP_DigestSignFinal: ")) << wrongKey;
}

// ES512 keeps 64-byte halves although its numbers have up to 521 bits, so a
// signature fits only when R and S are both below 2^512.
TEST(JWSSignature, Es512SignaturesFitOrThrow) {
  const KeySet keys = keySet(JWSAlgorithm::ES512);
  int thrown = 0;
  for (int i = 0; i < 4; ++i) {
    const std::string text = errorText([&] {
      const std::vector<uint8_t> signature = sign("m", keys.signing);
      EXPECT_EQ(signature.size(), 128u);
      EXPECT_TRUE(verify("m", keys.verifying, signature));
    });
    if (text.empty()) continue;
    ++thrown;
    EXPECT_TRUE(text.starts_with("17 Unknown System Error : BN_bn2binpad: ")) << text;
  }
  EXPECT_GT(thrown, 0);
  EXPECT_FALSE(verify("m", keys.verifying, std::vector<uint8_t>(132, 1)));
  EXPECT_FALSE(verify("m", keys.verifying, std::vector<uint8_t>(128, 1)));
}

// Copies of one key sign at once from several threads, sharing the key and
// its prepared HMAC context.
TEST(JWSSignature, CopiesOfOneKeySignInParallel) {
  const JWSKey key = hmacKey(JWSAlgorithm::HS256, "shared");
  const std::vector<uint8_t> expected = sign("message", key);
  std::vector<std::thread> threads;
  std::vector<int> mismatches(4, 0);
  for (int& count : mismatches) {
    threads.emplace_back([key, &count, &expected] {
      for (int i = 0; i < 500; ++i) count += sign("message", key) != expected;
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(mismatches, std::vector<int>(4, 0));
}

}  // namespace
}  // namespace qtajosetest
