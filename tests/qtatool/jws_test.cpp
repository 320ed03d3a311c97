// qtatool jws: tokens signed by the tool verify with it and give back the
// payload bytes; altered tokens, other keys and refused keys are reported.
#include <gtest/gtest.h>
#include <openssl/evp.h>
#include <openssl/pem.h>

#include <cstdio>
#include <string>
#include <vector>

#include "run_tool.h"

namespace qtatooltest {
namespace {

const std::string kSecret = "736563726574";  // "secret"

// Writes a new key of `type` ("EC" on P-256, or "RSA" of 2048 bits) as a
// private and a public PEM file; returns their paths.
std::pair<std::string, std::string> writeKeyPair(const std::string& type) {
  EVP_PKEY* key = type == "EC" ? EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", "P-256")
                               : EVP_PKEY_Q_keygen(nullptr, nullptr, "RSA", size_t{2048});
  const std::string base = testing::TempDir() + "qtatool_jws_" + type;
  FILE* privateFile = std::fopen((base + "_private.pem").c_str(), "w");
  FILE* publicFile = std::fopen((base + "_public.pem").c_str(), "w");
  EXPECT_EQ(PEM_write_PrivateKey(privateFile, key, nullptr, nullptr, 0, nullptr, nullptr), 1);
  EXPECT_EQ(PEM_write_PUBKEY(publicFile, key), 1);
  std::fclose(privateFile);
  std::fclose(publicFile);
  EVP_PKEY_free(key);
  return {base + "_private.pem", base + "_public.pem"};
}

TEST(QtatoolJws, SignedBytesComeBackFromVerify) {
  const std::string payload("claims\n\0\xff", 9);
  const ToolResult signedToken =
      runTool({"jws", "sign", "--alg", "HS256", "--secret-hex", kSecret}, payload);
  ASSERT_EQ(signedToken.status, 0) << signedToken.err;
  const std::string token = signedToken.out.substr(0, signedToken.out.size() - 1);
  std::string altered = token;
  altered[token.find('.') + 1] ^= 1;
  const auto verify = [](const char* alg, const std::string& secret, const std::string& text) {
    std::vector<std::string> args = {"jws", "verify", "--alg", alg, "--secret-hex", secret};
    if (!text.empty()) args.push_back(text);
    return args;
  };
  const char* refused = "invalid token\n";
  expectRuns({
      // From standard input (with its line break) and as an argument.
      {verify("HS256", kSecret, ""), 0, payload, signedToken.out},
      {verify("HS256", kSecret, token), 0, payload},
      {{"jws", "header", token}, 0, "{ \"alg\": \"HS256\" }\n"},
      {{"jws", "header", "bm90IGpzb24.e30.c2ln"}, 1},
      {verify("HS256", kSecret, altered), 1, "", "", refused},
      {verify("HS256", "736563726575", token), 1, "", "", refused},
      {verify("HS384", kSecret, token), 1, "", "", refused},
      {verify("HS256", kSecret, "a.b"), 1, "", "", refused},
  });
}

TEST(QtatoolJws, PemKeysSignAndVerifyAndWrongKeysAreRefused) {
  const auto [ecPrivate, ecPublic] = writeKeyPair("EC");
  const auto [rsaPrivate, rsaPublic] = writeKeyPair("RSA");
  const ToolResult signedToken = runTool({"jws", "sign", "--alg", "ES256", "--key", ecPrivate,
                                          "--header", "{\"alg\":\"ES256\",\"typ\":\"JWT\"}"},
                                         "{\"sub\":\"7\"}");
  ASSERT_EQ(signedToken.status, 0) << signedToken.err;
  const std::string rsaSigned =
      runTool({"jws", "sign", "--alg", "RS256", "--key", rsaPrivate}, "x").out;
  expectRuns({
      {{"jws", "verify", "--alg", "ES256", "--key", ecPublic},
       0,
       "{\"sub\":\"7\"}",
       signedToken.out},
      {{"jws", "header", signedToken.out.substr(0, signedToken.out.size() - 1)},
       0,
       "{ \"alg\": \"ES256\", \"typ\": \"JWT\" }\n"},
      {{"jws", "verify", "--alg", "RS256", "--key", rsaPublic}, 0, "x", rsaSigned},
      {{"jws", "sign", "--alg", "ES256", "--key", rsaPrivate},
       1,
       "",
       "x",
       "qtatool jws: String not valid : key type must be EC for: ES256\n"},
      {{"jws", "sign", "--alg", "ES256", "--key", ecPrivate, "--header", "{\"alg\":\"RS256\"}"},
       1,
       "",
       "x",
       "qtatool jws: String not valid : alg name in JOSE header does not match key algorithm\n"},
  });
  for (const std::string& path : {ecPrivate, ecPublic, rsaPrivate, rsaPublic}) {
    std::remove(path.c_str());
  }
}

}  // namespace
}  // namespace qtatooltest
