// qta/errors/catalogue.h: the process-wide catalogue of error codes, its
// lookups, and the shortening of long texts inside error messages.
//
// Every error the library reports carries one numeric code from this
// catalogue; the catalogue gives the code a group and a fixed English message.
// The catalogue is built once during static initialisation, before main(),
// is never changed afterwards and is destroyed at exit; from main() on it may
// be read from any number of threads at once. Lookups never fail: a code the
// catalogue does not hold falls back to code 0. Every function returns a new
// string that the caller owns.
#ifndef QTA_ERRORS_CATALOGUE_H_
#define QTA_ERRORS_CATALOGUE_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "qta/export.h"

namespace qta::errors {

// The codes of the catalogue. Within a group the first code is the group's
// generic error and the second its "unknown" error.
enum ErrorCode : uint32_t {
  // group 0, network
  kNetworkError = 0,
  kUnknownNetworkError = 1,
  kHostLookupFailed = 2,
  kServerAuthFailed = 3,
  kSrpAuthFailed = 4,
  kPskAuthFailed = 5,
  kProxyAuthFailed = 6,
  kConnectFailed = 7,
  kConnectionTimedOut = 8,
  kPreconditionFailed = 9,
  kMustRetry = 10,
  kRedirect = 11,
  kConnectionLost = 12,
  kNoNetworkResource = 13,
  kSslUpgradeFailed = 14,
  kTooManyRedirects = 15,
  // group 1, system
  kSystemError = 16,
  kUnknownSystemError = 17,
  kSocketFailed = 18,
  kNoMemory = 19,
  kNullPointer = 20,
  kDirectXError = 21,
  kOpenGLError = 22,
  kWindowsError = 23,
  kCairoError = 24,
  kTimedOut = 25,
  kSystemNotSupported = 26,
  // group 2, files and the results of HTTP and WebDAV requests
  kFileError = 27,
  kUnknownFileError = 28,
  kHttpError = 29,
  kFileNotFound = 30,
  kFileNotAccessible = 31,
  kFileReadOnly = 32,
  kFileExists = 33,
  kFileContentIncorrect = 34,
  kBadFileName = 35,
  kFileReadError = 36,
  kFileWriteError = 37,
  kRetry = 38,
  kFileNotSupported = 39,
  kAuthenticationFailed = 40,
  kMethodNotAllowed = 41,
  kBadRequest = 42,
  kInsufficientStorage = 43,
  kInternalServerError = 44,
  // group 3, input
  kInputError = 45,
  kUnknownInputError = 46,
  kEmptyInput = 47,
  kStringTooLong = 48,
  kStringNotValid = 49,
  kWrongState = 50,
  // group 5, cancellation
  kCanceledByUser = 51,
  // group 6, the closing entry (it repeats the message of code 1)
  kClosingEntry = 52,
};

// One slot of the catalogue: a code no entry names has group 0 and an empty
// message.
struct CatalogueSlot {
  uint32_t group = 0;
  std::string message;
};

// Indexed by code. It holds the 53 named codes and two empty slots after them.
using Catalogue = std::vector<CatalogueSlot>;

// The process-wide catalogue.
QTA_EXPORT const Catalogue& catalogue();

// The group of `code`; a code beyond the catalogue gives the group of code 0.
QTA_EXPORT uint32_t errorGroup(uint32_t code);
// The same rule over `table`; an empty table gives group 0.
QTA_EXPORT uint32_t errorGroup(const Catalogue& table, uint32_t code);

// The message of `code`; a code beyond the catalogue gives the message of
// code 0, "Network Error".
QTA_EXPORT std::string errorMessage(uint32_t code);

// The message of `code`, then " : " and `detail` without its trailing CR and
// LF characters; the plain message when nothing of `detail` is left.
QTA_EXPORT std::string errorMessage(uint32_t code, std::string_view detail);

// The most code points of a URL or path that a message shows in full.
inline constexpr size_t kMessageTextLimit = 100;

// `text` unchanged when it decodes to at most `limit` code points; otherwise
// its first and last limit / 2 code points with "..." between, as UTF-8.
// Bytes that are not valid UTF-8 are read by the rules of qta/text/unicode.h
// (a broken sequence counts as one '?'), so every input gives a result.
QTA_EXPORT std::string shortenForMessage(std::string_view text, size_t limit = kMessageTextLimit);

}  // namespace qta::errors

#endif  // QTA_ERRORS_CATALOGUE_H_
