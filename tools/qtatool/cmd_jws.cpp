// qtatool jws: signs payload bytes into a compact JWS token, checks a token and
// prints its payload, or prints a token's header; and the JWS section of
// `qtatool demo`.
#include <openssl/evp.h>

#include <charconv>
#include <cstdint>
#include <iostream>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "args.h"
#include "command.h"
#include "io.h"
#include "qta/errors/catalogue.h"
#include "qta/errors/error.h"
#include "qta/jose/algorithm.h"
#include "qta/jose/key.h"
#include "qta/jose/token.h"
#include "qta/json/json.h"
#include "qta/json/parser.h"
#include "qta/json/writer.h"

namespace qtatool {
namespace {

using qta::JSON;
using qta::JWSAlgorithm;
using qta::JWSKey;

// The algorithm called `name` ("HS256" ... "RS512"); "none" signs nothing.
std::optional<JWSAlgorithm> algorithmNamed(std::string_view name) {
  for (uint32_t value = 1; value <= 9; ++value) {
    const auto algorithm = static_cast<JWSAlgorithm>(value);
    if (name == qta::jose::algorithmName(algorithm)) return algorithm;
  }
  return std::nullopt;
}

// Two hexadecimal digits as a byte.
std::optional<uint8_t> hexByte(std::string_view digits) {
  uint8_t value = 0;
  const auto [end, error] =
      std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
  if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
  return value;
}

// Hexadecimal text as bytes: an even number of digits, either case.
std::optional<std::vector<uint8_t>> hexBytes(std::string_view text) {
  if (text.size() % 2 != 0) return std::nullopt;
  std::vector<uint8_t> bytes;
  for (size_t at = 0; at < text.size(); at += 2) {
    const std::optional<uint8_t> byte = hexByte(text.substr(at, 2));
    if (!byte) return std::nullopt;
    bytes.push_back(*byte);
  }
  return bytes;
}

// Loads the key the options name, or prints why not and returns the exit
// status: a usage error for a bad option or a missing file, a rejection for a
// key that does not suit the algorithm or cannot be read.
std::optional<int> loadKey(const Command& self, const ParsedArgs& parsed, bool signing,
                           JWSKey& key) {
  if (!parsed.has("--alg")) return usageError(self, "missing --alg");
  const std::optional<JWSAlgorithm> algorithm = algorithmNamed(parsed.options.at("--alg"));
  if (!algorithm)
    return usageError(self, "unknown algorithm '" + std::string(parsed.options.at("--alg")) + "'");
  if (parsed.has("--key") == parsed.has("--secret-hex")) {
    return usageError(self, "give either --key or --secret-hex");
  }
  try {
    if (parsed.has("--secret-hex")) {
      const std::optional<std::vector<uint8_t>> secret =
          hexBytes(parsed.options.at("--secret-hex"));
      if (!secret)
        return usageError(self, "--secret-hex needs an even number of hexadecimal digits");
      key.setHmacSecret(*algorithm, secret->data(), static_cast<int>(secret->size()));
    } else if (signing) {
      key.loadPrivateKeyPEM(*algorithm, std::string(parsed.options.at("--key")));
    } else {
      key.loadPublicKeyPEM(*algorithm, std::string(parsed.options.at("--key")));
    }
  } catch (const qta::QTAError& error) {
    std::cerr << "qtatool jws: " << error.what() << "\n";
    return error.code() == qta::errors::kFileNotFound ? kUsage : kRejected;
  }
  return std::nullopt;
}

// The one operand, or standard input, without the line break that ends it.
bool readToken(const ParsedArgs& parsed, std::string& token) {
  if (!parsed.operands.empty() && parsed.operands[0] != "-") {
    token = parsed.operands[0];
    return true;
  }
  if (!readInput("-", token)) return false;
  while (!token.empty() && (token.back() == '\n' || token.back() == '\r')) token.pop_back();
  return true;
}

int sign(const Command& self, const ParsedArgs& parsed) {
  JWSKey key;
  if (const std::optional<int> status = loadKey(self, parsed, true, key)) return *status;
  JSON::root header;
  if (parsed.has("--header")) {
    header = qta::json::parse(std::string(parsed.options.at("--header")));
    if (!header || header->type != JSON::Object) {
      return usageError(self, "--header needs a JSON object");
    }
  } else {
    header = qta::json::makeObject();
    header->set("alg", qta::json::makeString(qta::jose::algorithmName(key.algorithm())));
  }
  std::string payload;
  if (!readInput(parsed.operands.empty() ? "-" : parsed.operands[0], payload)) return kUsage;
  try {
    writeBytes(qta::jose::jwsEncode(*header, payload, key) + "\n");
  } catch (const qta::QTAError& error) {
    std::cerr << "qtatool jws: " << error.what() << "\n";
    return kRejected;
  }
  return kSuccess;
}

int verify(const Command& self, const ParsedArgs& parsed) {
  JWSKey key;
  if (const std::optional<int> status = loadKey(self, parsed, false, key)) return *status;
  std::string token;
  if (!readToken(parsed, token)) return kUsage;
  JSON::root header;
  std::string payload;
  if (!qta::jose::jwsVerify(token, header, payload, key)) {
    std::cerr << "invalid token\n";
    return kRejected;
  }
  writeBytes(payload);
  return kSuccess;
}

int header(const Command& self, const ParsedArgs& parsed) {
  if (parsed.operands.empty()) return usageError(self, "missing TOKEN");
  const JSON::root decoded = qta::jose::jwsDecodeHeader(std::string(parsed.operands[0]));
  if (!decoded) {
    std::cerr << "invalid token header\n";
    return kRejected;
  }
  writeBytes(qta::json::toJSONText(*decoded, -1) + "\n");
  return kSuccess;
}

int run(const Command& self, Args args) {
  const std::optional<ParsedArgs> parsed =
      parseArgs(self, args,
                {.modes = {"sign", "verify", "header"},
                 .valued = {"--alg", "--key", "--secret-hex", "--header"},
                 .operand = "FILE or TOKEN",
                 .maxOperands = 1});
  if (!parsed) return kUsage;
  if (parsed->mode == "header") {
    if (!parsed->options.empty()) return usageError(self, "header takes no options");
    return header(self, *parsed);
  }
  if (parsed->mode == "verify" && parsed->has("--header")) {
    return usageError(self, "--header is for sign");
  }
  return parsed->mode == "sign" ? sign(self, *parsed) : verify(self, *parsed);
}

// A P-256 key made for the demo; the key check throws when OpenSSL cannot make one.
JWSKey demoEcKey() {
  JWSKey key;
  key.assign(JWSAlgorithm::ES256, EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", "P-256"));
  key.checkKey();
  return key;
}

void demo(std::ostream& out) {
  out << "== JWS\n";
  JSON::root claims = qta::json::makeObject();
  claims->set("sub", qta::json::makeString("player-7"));
  claims->set("exp", qta::json::makeNumber(1700000000));

  JWSKey hmac;
  const std::string secret = "demo secret";
  hmac.setHmacSecret(JWSAlgorithm::HS256, reinterpret_cast<const uint8_t*>(secret.data()),
                     static_cast<int>(secret.size()));
  JSON::root header = qta::json::makeObject();
  header->set("alg", qta::json::makeString("HS256"));
  header->set("typ", qta::json::makeString("JWT"));
  const std::string hmacToken = qta::jose::jwsEncode(*header, *claims, hmac);
  out << "HS256 token: " << hmacToken << "\n";

  const JWSKey ec = demoEcKey();
  header->set("alg", qta::json::makeString("ES256"));
  const std::string ecToken = qta::jose::jwsEncode(*header, *claims, ec);
  out << "ES256 token with a new key: " << ecToken.size() << " characters, signature "
      << ecToken.size() - ecToken.rfind('.') - 1 << " characters (64 bytes R||S)\n";

  JSON::root decodedHeader;
  JSON::root payload;
  const bool valid = qta::jose::jwsVerify(ecToken, decodedHeader, payload, ec);
  out << "verified with its key: " << (valid ? "true" : "false");
  if (valid) {
    out << ", header " << qta::json::toJSONText(*decodedHeader, -1) << ", payload "
        << qta::json::toJSONText(*payload, -1);
  }
  out << "\n";
  std::string tampered = ecToken;
  tampered[tampered.find('.') + 2] ^= 1;
  out << "one payload character changed: "
      << (qta::jose::jwsVerify(tampered, decodedHeader, payload, ec) ? "true" : "false") << "\n";
  out << "ES256 token checked with the HS256 key: "
      << (qta::jose::jwsVerify(ecToken, decodedHeader, payload, hmac) ? "true" : "false") << "\n";
}

const RegisterCommand kJws({
    .order = 35,
    .name = "jws",
    .summary = "sign bytes into a JWS token, check a token, or show its header",
    .usage =
        "Usage: qtatool jws sign --alg ALG (--key PRIVATE.pem | --secret-hex HEX) [--header JSON] "
        "[FILE]\n"
        "       qtatool jws verify --alg ALG (--key PUBLIC.pem | --secret-hex HEX) [TOKEN]\n"
        "       qtatool jws header TOKEN\n\n"
        "sign prints the compact token for the bytes of FILE (standard input when FILE is\n"
        "absent or \"-\"); the header defaults to {\"alg\": ALG}. verify reads TOKEN (or a line\n"
        "from standard input) and, when it verifies, writes the payload bytes; otherwise it\n"
        "prints \"invalid token\" and exits 1. header prints the token's header as one line\n"
        "of JSON, or exits 1. ALG is HS256, HS384, HS512, ES256, ES384, ES512, RS256, RS384\n"
        "or RS512; HEX is the HMAC secret in hexadecimal.\n",
    .run = run,
    .demo = demo,
});

}  // namespace
}  // namespace qtatool
