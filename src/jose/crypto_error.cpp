// OpenSSL failures as QTAError objects.
#include "jose/crypto_error.h"

#include <openssl/err.h>

#include <string>

#include "qta/errors/error.h"

namespace qta::jose {

void throwCryptoError(uint32_t code, const char* function) {
  char text[256];
  ERR_error_string_n(ERR_get_error(), text, sizeof text);
  ERR_clear_error();
  throw QTAError(code, std::string(function) + ": " + text);
}

void discardCryptoErrors() noexcept { ERR_clear_error(); }

}  // namespace qta::jose
