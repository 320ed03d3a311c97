// A one-line text of every field of a URI, for table-driven expectations and
// readable failure messages: scheme|userInfo|host|port|path|query|fragment,
// where the path is "A" when absolute, "T" with a trailing slash, then each
// segment in braces.
#ifndef QTA_TESTS_URI_DESCRIBE_H_
#define QTA_TESTS_URI_DESCRIBE_H_

#include <string>

#include "qta/uri/uri.h"

namespace qtatest {

inline std::string describePath(const qta::URI::Path& path) {
  std::string out = path.absolute ? "A" : "";
  if (path.trailingSlash) out += 'T';
  for (const std::string& segment : path.segments) out += "{" + segment + "}";
  return out;
}

inline std::string describe(const qta::URI& uri) {
  return uri.scheme() + "|" + uri.userInfo() + "|" + uri.host() + "|" + std::to_string(uri.port()) +
         "|" + describePath(uri.path()) + "|" + uri.query() + "|" + uri.fragment();
}

}  // namespace qtatest

#endif  // QTA_TESTS_URI_DESCRIBE_H_
