// Signs a token with an HMAC secret, checks it, and shows that a changed
// token and a token for another algorithm fail.
#include <cstdio>
#include <string>

#include "qta/jose/key.h"
#include "qta/jose/token.h"
#include "qta/json/json.h"
#include "qta/json/writer.h"

int main() {
  const std::string secret = "a secret shared with the server";
  qta::JWSKey key;
  key.setHmacSecret(qta::JWSAlgorithm::HS256, reinterpret_cast<const uint8_t*>(secret.data()),
                    static_cast<int>(secret.size()));

  qta::JSON::root header = qta::json::makeObject();
  header->set("alg", qta::json::makeString("HS256"));
  header->set("typ", qta::json::makeString("JWT"));
  qta::JSON::root claims = qta::json::makeObject();
  claims->set("sub", qta::json::makeString("player-7"));
  const std::string token = qta::jose::jwsEncode(*header, *claims, key);
  std::printf("token: %s\n", token.c_str());

  qta::JSON::root readHeader;
  qta::JSON::root payload;
  if (qta::jose::jwsVerify(token, readHeader, payload, key)) {
    std::printf("verified, payload %s\n", qta::json::toJSONText(*payload).c_str());
  }
  std::string changed = token;
  changed[changed.find('.') + 1] ^= 1;
  std::printf("changed token verifies: %s\n",
              qta::jose::jwsVerify(changed, readHeader, payload, key) ? "yes" : "no");
  return 0;
}
