// The error thrown when an OpenSSL call fails.
#ifndef QTA_SRC_JOSE_CRYPTO_ERROR_H_
#define QTA_SRC_JOSE_CRYPTO_ERROR_H_

#include <cstdint>

namespace qta::jose {

// Throws QTAError `code` with the text "FUNCTION: " followed by OpenSSL's
// description of the oldest error queued on this thread. The thread's queue is
// emptied, so a later failure does not report this one's leftovers.
[[noreturn]] void throwCryptoError(uint32_t code, const char* function);

// Empties this thread's OpenSSL error queue after a failure that is reported
// as a result (a wrong signature) rather than thrown.
void discardCryptoErrors() noexcept;

}  // namespace qta::jose

#endif  // QTA_SRC_JOSE_CRYPTO_ERROR_H_
