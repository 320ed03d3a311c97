// Signs and verifies compact JWS tokens with a 200-byte JSON payload for
// HS256, RS256 and ES256. Items per second are tokens per second.
//
// "sign/<alg>/qta" is jwsEncode of the payload text; "verify/<alg>/qta" is
// jwsVerify to the payload bytes. "libjwt" does the same through its API,
// which parses the payload into claims and writes them out again.
// "evp-floor" is the bare OpenSSL work on the token's signing input with a
// fresh context per token: EVP_DigestSignInit and EVP_DigestSign, or
// EVP_DigestVerifyInit and EVP_DigestVerify on the DER signature (for HMAC,
// which OpenSSL 3 cannot digest-verify, the MAC recomputed and compared). qta's
// gain over the floor shows the token's overhead: 0.9x means 10%.
#include <openssl/crypto.h>
#include <openssl/ec.h>
#include <openssl/evp.h>
#include <openssl/pem.h>

#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench_support.h"
#include "qta/jose/key.h"
#include "qta/jose/token.h"
#include "qta/json/json.h"
#include "qta/json/writer.h"
#include "qta/text/base64.h"

#ifdef QTA_HAVE_LIBJWT
#include <jwt.h>
#endif

namespace {

using qta::JWSAlgorithm;

// 200 bytes of claims as a media server would issue them.
const std::string& payloadText() {
  static const std::string text = [] {
    std::string claims =
        "{\"aud\":\"media-player\",\"device\":\"QTA-0123456789\",\"exp\":1700003600,"
        "\"iat\":1700000000,\"iss\":\"https://auth.example/\",\"scope\":\"play download\","
        "\"sub\":\"player-0007\",\"nonce\":\"";
    claims.append(200 - claims.size() - 2, 'n');
    return claims + "\"}";
  }();
  return text;
}

struct Key {
  const char* name;
  JWSAlgorithm algorithm;
  EVP_PKEY* pkey;          // the private key (the HMAC key for HS256)
  std::string privatePem;  // what libjwt signs with (the secret for HS256)
  std::string publicPem;   // what libjwt verifies with (the secret for HS256)
  qta::JWSKey jws;
  std::string token;                    // qta's token for the payload
  std::string signingInput;             // its first two parts
  std::vector<uint8_t> floorSignature;  // the signature as OpenSSL makes and checks it
};

std::string pemOf(EVP_PKEY* key, bool privateKey) {
  BIO* bio = BIO_new(BIO_s_mem());
  const int written =
      privateKey ? PEM_write_bio_PrivateKey(bio, key, nullptr, nullptr, 0, nullptr, nullptr)
                 : PEM_write_bio_PUBKEY(bio, key);
  char* data = nullptr;
  const long length = BIO_get_mem_data(bio, &data);
  std::string pem(data, written == 1 ? static_cast<size_t>(length) : 0);
  BIO_free(bio);
  return pem;
}

const EVP_MD* digest() { return EVP_sha256(); }

// The floor's signature over `input`: one fresh context, one call.
std::vector<uint8_t> floorSign(EVP_PKEY* pkey, const std::string& input) {
  EVP_MD_CTX* context = EVP_MD_CTX_new();
  std::vector<uint8_t> signature(512);
  size_t length = signature.size();
  if (EVP_DigestSignInit(context, nullptr, digest(), nullptr, pkey) != 1 ||
      EVP_DigestSign(context, signature.data(), &length,
                     reinterpret_cast<const unsigned char*>(input.data()), input.size()) != 1) {
    throw std::runtime_error("EVP sign failed");
  }
  EVP_MD_CTX_free(context);
  signature.resize(length);
  return signature;
}

Key makeKey(const char* name) {
  Key key{name, JWSAlgorithm::none, nullptr, {}, {}, {}, {}, {}, {}};
  const std::string algorithm = name;
  if (algorithm == "HS256") {
    const std::string secret(32, 's');
    key.algorithm = JWSAlgorithm::HS256;
    key.pkey = EVP_PKEY_new_mac_key(EVP_PKEY_HMAC, nullptr,
                                    reinterpret_cast<const unsigned char*>(secret.data()), 32);
    key.privatePem = key.publicPem = secret;
    key.jws.setHmacSecret(key.algorithm, reinterpret_cast<const uint8_t*>(secret.data()), 32);
  } else {
    const bool rsa = algorithm == "RS256";
    key.algorithm = rsa ? JWSAlgorithm::RS256 : JWSAlgorithm::ES256;
    key.pkey = rsa ? EVP_PKEY_Q_keygen(nullptr, nullptr, "RSA", size_t{2048})
                   : EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", "P-256");
    key.privatePem = pemOf(key.pkey, true);
    key.publicPem = pemOf(key.pkey, false);
    EVP_PKEY_up_ref(key.pkey);
    key.jws.assign(key.algorithm, key.pkey);
    key.jws.checkKey();
  }
  qta::JSON::root header = qta::json::makeObject();
  header->set("alg", qta::json::makeString(name));
  header->set("typ", qta::json::makeString("JWT"));
  key.token = qta::jose::jwsEncode(*header, payloadText(), key.jws);
  key.signingInput = key.token.substr(0, key.token.rfind('.'));
  key.floorSignature = floorSign(key.pkey, key.signingInput);
  return key;
}

Key& keyFor(const std::string& name) {
  static Key keys[] = {makeKey("HS256"), makeKey("RS256"), makeKey("ES256")};
  for (Key& key : keys) {
    if (name == key.name) return key;
  }
  std::abort();
}

void countTokens(benchmark::State& state) {
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()));
}

void signQta(benchmark::State& state, const std::string& name) {
  const Key& key = keyFor(name);
  qta::JSON::root header = qta::json::makeObject();
  header->set("alg", qta::json::makeString(name));
  header->set("typ", qta::json::makeString("JWT"));
  for (auto _ : state) {
    std::string token = qta::jose::jwsEncode(*header, payloadText(), key.jws);
    benchmark::DoNotOptimize(token);
  }
  countTokens(state);
}

void verifyQta(benchmark::State& state, const std::string& name) {
  const Key& key = keyFor(name);
  for (auto _ : state) {
    qta::JSON::root header;
    std::string payload;
    if (!qta::jose::jwsVerify(key.token, header, payload, key.jws)) {
      state.SkipWithError("token refused");
      break;
    }
    benchmark::DoNotOptimize(payload);
  }
  countTokens(state);
}

void signFloor(benchmark::State& state, const std::string& name) {
  const Key& key = keyFor(name);
  for (auto _ : state) {
    std::vector<uint8_t> signature = floorSign(key.pkey, key.signingInput);
    benchmark::DoNotOptimize(signature);
  }
  countTokens(state);
}

void verifyFloor(benchmark::State& state, const std::string& name) {
  const Key& key = keyFor(name);
  const auto* input = reinterpret_cast<const unsigned char*>(key.signingInput.data());
  const size_t length = key.signingInput.size();
  const bool hmac = key.algorithm == JWSAlgorithm::HS256;
  for (auto _ : state) {
    bool valid = false;
    if (hmac) {
      const std::vector<uint8_t> mac = floorSign(key.pkey, key.signingInput);
      valid = CRYPTO_memcmp(mac.data(), key.floorSignature.data(), mac.size()) == 0;
    } else {
      EVP_MD_CTX* context = EVP_MD_CTX_new();
      valid = EVP_DigestVerifyInit(context, nullptr, digest(), nullptr, key.pkey) == 1 &&
              EVP_DigestVerify(context, key.floorSignature.data(), key.floorSignature.size(), input,
                               length) == 1;
      EVP_MD_CTX_free(context);
    }
    if (!valid) {
      state.SkipWithError("signature refused");
      break;
    }
  }
  countTokens(state);
}

#ifdef QTA_HAVE_LIBJWT
jwt_alg_t libjwtAlgorithm(const std::string& name) {
  return name == "HS256" ? JWT_ALG_HS256 : name == "RS256" ? JWT_ALG_RS256 : JWT_ALG_ES256;
}

std::string libjwtToken(const Key& key) {
  jwt_t* jwt = nullptr;
  jwt_new(&jwt);
  jwt_add_grants_json(jwt, payloadText().c_str());
  jwt_set_alg(jwt, libjwtAlgorithm(key.name),
              reinterpret_cast<const unsigned char*>(key.privatePem.data()),
              static_cast<int>(key.privatePem.size()));
  char* encoded = jwt_encode_str(jwt);
  std::string token = encoded != nullptr ? encoded : "";
  std::free(encoded);
  jwt_free(jwt);
  return token;
}

void signLibjwt(benchmark::State& state, const std::string& name) {
  const Key& key = keyFor(name);
  for (auto _ : state) {
    std::string token = libjwtToken(key);
    if (token.empty()) {
      state.SkipWithError("libjwt cannot sign");
      break;
    }
    benchmark::DoNotOptimize(token);
  }
  countTokens(state);
}

void verifyLibjwt(benchmark::State& state, const std::string& name) {
  const Key& key = keyFor(name);
  const std::string token = libjwtToken(key);
  for (auto _ : state) {
    jwt_t* jwt = nullptr;
    const int result = jwt_decode(&jwt, token.c_str(),
                                  reinterpret_cast<const unsigned char*>(key.publicPem.data()),
                                  static_cast<int>(key.publicPem.size()));
    jwt_free(jwt);
    if (result != 0) {
      state.SkipWithError("libjwt refused its token");
      break;
    }
  }
  countTokens(state);
}
#endif

void registerAll() {
  for (const std::string name : {"HS256", "RS256", "ES256"}) {
    const std::string sign = "sign/" + name + "/";
    const std::string verify = "verify/" + name + "/";
    benchmark::RegisterBenchmark((sign + "qta").c_str(), signQta, name);
    benchmark::RegisterBenchmark((sign + "evp-floor").c_str(), signFloor, name);
    benchmark::RegisterBenchmark((verify + "qta").c_str(), verifyQta, name);
    benchmark::RegisterBenchmark((verify + "evp-floor").c_str(), verifyFloor, name);
#ifdef QTA_HAVE_LIBJWT
    benchmark::RegisterBenchmark((sign + "libjwt").c_str(), signLibjwt, name);
    benchmark::RegisterBenchmark((verify + "libjwt").c_str(), verifyLibjwt, name);
#endif
  }
}

}  // namespace

int main(int argc, char** argv) {
  registerAll();
  return qtabench::runWithRatios(argc, argv);
}
