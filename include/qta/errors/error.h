// qta/errors/error.h: the exception classes every failed operation throws.
//
// QTAError carries a catalogue code (qta/errors/catalogue.h) and its what()
// text is the code's message, optionally followed by " : " and a detail.
// QTAAuthError adds the URL whose authentication failed and a detail from
// the thrower; QTARedirectError adds the requested URL, the redirect target
// and an integer from the thrower. Each object owns copies of everything it
// was given (URLs share their parsed payload as every URI copy does). Errors
// are values: they are thrown by value and caught by reference, and a
// constant error may be read from any number of threads at once.
#ifndef QTA_ERRORS_ERROR_H_
#define QTA_ERRORS_ERROR_H_

#include <apr_errno.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

#include "qta/export.h"
#include "qta/uri/uri.h"

namespace qta {

// An APR status, wrapped so that QTAError's constructor for it cannot be
// mistaken for the one that takes a code and a detail.
struct AprStatus {
  apr_status_t value;
};

class QTA_EXPORT QTAError : public std::runtime_error {
 public:
  // The text is the message of `code`.
  explicit QTAError(uint32_t code);
  // The text is the message of `code`, then " : " and `detail` without its
  // trailing CR and LF characters (nothing when no other character is left).
  QTAError(uint32_t code, std::string_view detail);
  // The detail is `path`, shortened for messages, ": " and the system's text
  // for the errno value `errnum`; just the system's text when `path` is null.
  QTAError(uint32_t code, int errnum, const char* path);
  // The code follows from the status: 13 access (31), 17 exists (33), 36 name
  // too long (48), 2 or 20 not found (30), 12 out of memory (19), 88 not a
  // socket (18), 111 refused (7), 71, 103 or 104 connection lost (12),
  // APR_TIMEUP (25). The detail is the shortened `path` (none when null). Any
  // other status gives code 17 with APR's text for it after the path and ": ".
  QTAError(AprStatus status, const char* path);
  QTAError(const QTAError&) = default;
  QTAError& operator=(const QTAError&) = default;
  ~QTAError() override;

  uint32_t code() const noexcept { return code_; }
  // The catalogue group of the code.
  uint32_t group() const noexcept;

 private:
  uint32_t code_;
};

// Authentication failed at `url`. `authDetail` is whatever the thrower adds
// about the authentication (empty when it has nothing).
class QTA_EXPORT QTAAuthError : public QTAError {
 public:
  QTAAuthError(uint32_t code, const URI& url, std::string_view detail, std::string authDetail);
  QTAAuthError(const QTAAuthError&) = default;
  QTAAuthError& operator=(const QTAAuthError&) = default;
  ~QTAAuthError() override;

  const URI& url() const noexcept { return url_; }
  const std::string& authDetail() const noexcept { return authDetail_; }

 private:
  URI url_;
  std::string authDetail_;
};

// A request to `from` was redirected to `to`; `value` is stored as the
// thrower gave it.
class QTA_EXPORT QTARedirectError : public QTAError {
 public:
  QTARedirectError(uint32_t code, const URI& from, const URI& to, int32_t value,
                   std::string_view detail);
  QTARedirectError(const QTARedirectError&) = default;
  QTARedirectError& operator=(const QTARedirectError&) = default;
  ~QTARedirectError() override;

  const URI& from() const noexcept { return from_; }
  const URI& to() const noexcept { return to_; }
  int32_t value() const noexcept { return value_; }

 private:
  URI from_;
  URI to_;
  int32_t value_;
};

}  // namespace qta

#endif  // QTA_ERRORS_ERROR_H_
