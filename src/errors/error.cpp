// The error classes' constructors and accessors.
#include "qta/errors/error.h"

#include <string>
#include <string_view>
#include <utility>

#include "qta/errors/catalogue.h"

namespace qta {

QTAError::QTAError(uint32_t code) : std::runtime_error(errors::errorMessage(code)), code_(code) {}

QTAError::QTAError(uint32_t code, std::string_view detail)
    : std::runtime_error(errors::errorMessage(code, detail)), code_(code) {}

QTAError::~QTAError() = default;

uint32_t QTAError::group() const noexcept { return errors::errorGroup(code_); }

QTAAuthError::QTAAuthError(uint32_t code, const URI& url, std::string_view detail,
                           std::string authDetail)
    : QTAError(code, detail), url_(url), authDetail_(std::move(authDetail)) {}

QTAAuthError::~QTAAuthError() = default;

QTARedirectError::QTARedirectError(uint32_t code, const URI& from, const URI& to, int32_t value,
                                   std::string_view detail)
    : QTAError(code, detail), from_(from), to_(to), value_(value) {}

QTARedirectError::~QTARedirectError() = default;

}  // namespace qta
