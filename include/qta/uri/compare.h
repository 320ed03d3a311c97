// qta/uri/compare.h: the order of URIs.
//
// Each function returns a negative number, zero or a positive number as its
// first argument sorts before, with or after its second. Texts compare as
// byte strings (a text that is a prefix of another sorts first). The
// functions are pure; any number of threads may call them at once.
#ifndef QTA_URI_COMPARE_H_
#define QTA_URI_COMPARE_H_

#include "qta/export.h"
#include "qta/uri/uri.h"

namespace qta::uri {

// By scheme, then host, then port.
QTA_EXPORT int compareOrigins(const URI& a, const URI& b);

// By origin, user info, path, query and fragment, the first difference
// deciding. The content of a "data" URI (media type and bytes) is not
// compared: "data" URIs that differ only there are equal. URI's == and <=>
// use this order.
QTA_EXPORT int compare(const URI& a, const URI& b);

// An absolute path sorts first; then the segments in turn (a path whose
// segments run out first sorts first); then a path without trailing slash.
QTA_EXPORT int comparePaths(const URI::Path& a, const URI::Path& b);

}  // namespace qta::uri

#endif  // QTA_URI_COMPARE_H_
