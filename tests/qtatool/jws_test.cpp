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
  // From standard input (with its line break) and as an argument.
  for (const ToolResult& verified :
       {runTool({"jws", "verify", "--alg", "HS256", "--secret-hex", kSecret}, signedToken.out),
        runTool({"jws", "verify", "--alg", "HS256", "--secret-hex", kSecret, token})}) {
    EXPECT_EQ(verified.status, 0) << verified.err;
    EXPECT_EQ(verified.out, payload);
  }
  const ToolResult header = runTool({"jws", "header", token});
  EXPECT_EQ(header.out, "{ \"alg\": \"HS256\" }\n");

  std::string altered = token;
  altered[token.find('.') + 1] ^= 1;
  for (const std::vector<std::string>& refused : std::vector<std::vector<std::string>>{
           {"jws", "verify", "--alg", "HS256", "--secret-hex", kSecret, altered},
           {"jws", "verify", "--alg", "HS256", "--secret-hex", "736563726575", token},
           {"jws", "verify", "--alg", "HS384", "--secret-hex", kSecret, token},
           {"jws", "verify", "--alg", "HS256", "--secret-hex", kSecret, "a.b"}}) {
    const ToolResult result = runTool(refused);
    EXPECT_EQ(result.status, 1) << refused[6];
    EXPECT_EQ(result.err, "invalid token\n");
    EXPECT_TRUE(result.out.empty());
  }
  EXPECT_EQ(runTool({"jws", "header", "bm90IGpzb24.e30.c2ln"}).status, 1);
}

TEST(QtatoolJws, PemKeysSignAndVerifyAndWrongKeysAreRefused) {
  const auto [ecPrivate, ecPublic] = writeKeyPair("EC");
  const auto [rsaPrivate, rsaPublic] = writeKeyPair("RSA");
  const ToolResult signedToken = runTool({"jws", "sign", "--alg", "ES256", "--key", ecPrivate,
                                          "--header", "{\"alg\":\"ES256\",\"typ\":\"JWT\"}"},
                                         "{\"sub\":\"7\"}");
  ASSERT_EQ(signedToken.status, 0) << signedToken.err;
  const ToolResult verified =
      runTool({"jws", "verify", "--alg", "ES256", "--key", ecPublic}, signedToken.out);
  EXPECT_EQ(verified.out, "{\"sub\":\"7\"}");
  const ToolResult header =
      runTool({"jws", "header", signedToken.out.substr(0, signedToken.out.size() - 1)});
  EXPECT_EQ(header.out, "{ \"alg\": \"ES256\", \"typ\": \"JWT\" }\n");

  const ToolResult rsaSigned = runTool({"jws", "sign", "--alg", "RS256", "--key", rsaPrivate}, "x");
  EXPECT_EQ(rsaSigned.status, 0) << rsaSigned.err;
  EXPECT_EQ(runTool({"jws", "verify", "--alg", "RS256", "--key", rsaPublic}, rsaSigned.out).out,
            "x");

  const ToolResult wrongType = runTool({"jws", "sign", "--alg", "ES256", "--key", rsaPrivate}, "x");
  EXPECT_EQ(wrongType.status, 1);
  EXPECT_EQ(wrongType.err, "qtatool jws: String not valid : key type must be EC for: ES256\n");
  const ToolResult mismatch = runTool(
      {"jws", "sign", "--alg", "ES256", "--key", ecPrivate, "--header", "{\"alg\":\"RS256\"}"},
      "x");
  EXPECT_EQ(mismatch.status, 1);
  EXPECT_NE(mismatch.err.find("alg name in JOSE header does not match key algorithm"),
            std::string::npos);
  for (const std::string& path : {ecPrivate, ecPublic, rsaPrivate, rsaPublic}) {
    std::remove(path.c_str());
  }
}

}  // namespace
}  // namespace qtatooltest
