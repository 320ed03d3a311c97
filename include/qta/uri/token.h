// qta/uri/token.h: the HTTP token test that media types of "data" URIs pass.
//
// tokenSeparators is a constant; isToken is a pure function. Any number of
// threads may use them at once.
#ifndef QTA_URI_TOKEN_H_
#define QTA_URI_TOKEN_H_

#include <string_view>

#include "qta/export.h"

namespace qta::uri {

// The HTTP separators a token may not hold: ( ) < > @ , ; : \ " / [ ] ? =
// ("{", "}", space and tab are left out on purpose; the last two fail the
// byte test anyway).
inline constexpr std::string_view tokenSeparators = "()<>@,;:\\\"/[]?=";

// True for a non-empty text of bytes from 33 to 127 with no separator. DEL
// and the braces pass.
QTA_EXPORT bool isToken(std::string_view text);

}  // namespace qta::uri

#endif  // QTA_URI_TOKEN_H_
