// Signing contexts keyed once per key and copied for every message.
//
// Starting an HMAC context from a key costs more under OpenSSL 3 than the MAC
// of a short token, so a key made for an HMAC algorithm keeps one context
// started for signing with its digest; signers and verifiers copy it instead of
// starting their own. Copying only reads the template, so copies of one key
// may be used from several threads at once.
#ifndef QTA_SRC_JOSE_PREPARED_CONTEXTS_H_
#define QTA_SRC_JOSE_PREPARED_CONTEXTS_H_

#include <openssl/evp.h>

#include <memory>

#include "jose/openssl_handles.h"
#include "qta/jose/key.h"

namespace qta {
namespace detail {

struct PreparedContexts {
  jose::ContextPtr sign;  // started with EVP_DigestSignInit, never updated
};

// The signing code's view of a key's private parts.
struct KeyAccess {
  static const PreparedContexts* prepared(const JWSKey& key) noexcept {
    return key.prepared_.get();
  }
};

}  // namespace detail

namespace jose {

// The prepared contexts for `key` under `algorithm`, or null when the key is
// not an HMAC key for an HMAC algorithm or OpenSSL cannot start a context for
// it (the ordinary start then reports the failure).
std::shared_ptr<const detail::PreparedContexts> prepareContexts(JWSAlgorithm algorithm,
                                                                EVP_PKEY* key) noexcept;

}  // namespace jose
}  // namespace qta

#endif  // QTA_SRC_JOSE_PREPARED_CONTEXTS_H_
