// QTAError from an errno value or an APR status.
#include <apr_errno.h>

#include <cstring>
#include <string>

#include "qta/errors/catalogue.h"
#include "qta/errors/error.h"

namespace qta {
namespace {

// strerror_r comes in two forms: the GNU one returns the text (which may or
// may not be in the buffer), the POSIX one fills the buffer and returns 0.
[[maybe_unused]] const char* strerrorText(const char* text, const char*) { return text; }
[[maybe_unused]] const char* strerrorText(int failed, const char* buffer) {
  return failed == 0 ? buffer : "Unknown error";
}

std::string systemText(int errnum) {
  char buffer[256] = {};
  return strerrorText(strerror_r(errnum, buffer, sizeof buffer), buffer);
}

std::string aprText(apr_status_t status) {
  char buffer[64] = {};
  return apr_strerror(status, buffer, sizeof buffer);
}

// The shortened path, then ": " and `text`; `text` alone without a path.
std::string pathAndText(const char* path, const std::string& text) {
  if (path == nullptr) return text;
  return errors::shortenForMessage(path) + ": " + text;
}

std::string shortenedPath(const char* path) {
  return path == nullptr ? std::string() : errors::shortenForMessage(path);
}

// The catalogue code of an APR status; kUnknownSystemError when it has none.
uint32_t codeOfAprStatus(apr_status_t status) {
  using namespace errors;
  switch (status) {
    case 13:
      return kFileNotAccessible;
    case 17:
      return kFileExists;
    case 36:
      return kStringTooLong;
    case 2:
    case 20:
      return kFileNotFound;
    case 12:
      return kNoMemory;
    case 88:
      return kSocketFailed;
    case 111:
      return kConnectFailed;
    case 71:
    case 103:
    case 104:
      return kConnectionLost;
    case APR_TIMEUP:
      return kTimedOut;
    default:
      return kUnknownSystemError;
  }
}

std::string aprDetail(apr_status_t status, const char* path) {
  if (codeOfAprStatus(status) == errors::kUnknownSystemError) {
    return pathAndText(path, aprText(status));
  }
  return shortenedPath(path);
}

}  // namespace

QTAError::QTAError(uint32_t code, int errnum, const char* path)
    : QTAError(code, pathAndText(path, systemText(errnum))) {}

QTAError::QTAError(AprStatus status, const char* path)
    : QTAError(codeOfAprStatus(status.value), aprDetail(status.value, path)) {}

}  // namespace qta
