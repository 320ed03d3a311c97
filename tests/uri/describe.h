// One line with every field of a URI, for table-driven expectations:
// scheme|userInfo|host|port|path|query|fragment, where the path is "A" when
// absolute, "T" with a trailing slash, then each segment in braces. A "data"
// URI adds "|" mediaType "|" and its bytes in base64.
#ifndef QTA_TESTS_URI_DESCRIBE_H_
#define QTA_TESTS_URI_DESCRIBE_H_

#include <string>

#include "qta/text/base64.h"
#include "qta/uri/uri.h"

namespace qtatest {

inline std::string describe(const qta::URI& uri) {
  const qta::URI::Path& path = uri.path();
  std::string text = uri.scheme() + "|" + uri.userInfo() + "|" + uri.host() + "|" +
                     std::to_string(uri.port()) + "|" + (path.absolute ? "A" : "") +
                     (path.trailingSlash ? "T" : "");
  for (const std::string& segment : path.segments) text += "{" + segment + "}";
  text += "|" + uri.query() + "|" + uri.fragment();
  if (uri.content() != nullptr) {
    text += "|" + uri.mediaType() + "|" +
            qta::text::base64Encode(uri.bytes().data(), uri.bytes().size());
  }
  return text;
}

}  // namespace qtatest

#endif  // QTA_TESTS_URI_DESCRIBE_H_
