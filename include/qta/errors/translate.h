// qta/errors/translate.h: turns the failure of a network transfer or an HTTP
// status into the error the library throws for it.
//
// Each function builds a detail text "FTP " or "HTTP ", the method, a space,
// the URL's display form shortened for messages, " -> " and what went wrong,
// and throws a QTAError or QTAAuthError with the code its table gives. None
// of them returns. They read only their arguments and may run on any number
// of threads at once. A null `method` counts as empty.
#ifndef QTA_ERRORS_TRANSLATE_H_
#define QTA_ERRORS_TRANSLATE_H_

#include <string_view>

#include "qta/export.h"
#include "qta/uri/uri.h"

namespace qta::errors {

// A failed FTP transfer. `result` is the transfer library's result code;
// `errorText` (null or empty: "failed") ends the detail without its trailing
// CR and LF characters. Authentication failures throw QTAAuthError with an
// empty authentication detail.
[[noreturn]] QTA_EXPORT void throwFtpTransferError(int result, const char* method, const URI& url,
                                                   const char* errorText);

// A failed HTTP transfer, by the same rules with the HTTP table.
[[noreturn]] QTA_EXPORT void throwHttpTransferError(int result, const char* method, const URI& url,
                                                    const char* errorText);

// A request answered with the failure `status`. The detail ends in the status
// and, when `reason` is not empty, a space and `reason`. Statuses 401 and 407
// throw QTAAuthError with `url` and `authDetail`.
[[noreturn]] QTA_EXPORT void throwHttpStatusError(int status, const char* method, const URI& url,
                                                  std::string_view authDetail,
                                                  std::string_view reason);

}  // namespace qta::errors

#endif  // QTA_ERRORS_TRANSLATE_H_
