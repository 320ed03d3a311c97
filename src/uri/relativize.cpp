// Making a URI relative to a base of the same origin, and the relative path
// it uses.
#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

#include "qta/uri/compare.h"
#include "qta/uri/relative.h"
#include "uri/data_access.h"

namespace qta::uri {
namespace {

// Schemes whose URIs have no hierarchy a relative form could lean on.
bool isHierarchical(std::string_view scheme) {
  return !scheme.empty() && scheme != "urn" && scheme != "data";
}

}  // namespace

URI::Path relativePath(const URI::Path& path, const URI::Path& basePath) {
  const size_t baseSize = basePath.segments.size();
  // The base's directories: all its segments but a last one without "/".
  const ptrdiff_t directories = static_cast<ptrdiff_t>(baseSize) - (basePath.trailingSlash ? 0 : 1);
  const auto firstDifference = std::mismatch(path.segments.begin(), path.segments.end(),
                                             basePath.segments.begin(), basePath.segments.end())
                                   .first;
  size_t common = static_cast<size_t>(firstDifference - path.segments.begin());
  // The base's last segment names a file, not a directory the path can share.
  if (!basePath.trailingSlash && common == baseSize && common > 0) --common;

  URI::Path relative;
  relative.trailingSlash = path.trailingSlash;
  const ptrdiff_t climbs = std::max<ptrdiff_t>(directories - static_cast<ptrdiff_t>(common), 0);
  relative.segments.reserve(static_cast<size_t>(climbs) + path.segments.size() - common);
  relative.segments.assign(static_cast<size_t>(climbs), "..");
  relative.segments.insert(relative.segments.end(),
                           path.segments.begin() + static_cast<ptrdiff_t>(common),
                           path.segments.end());
  return relative;
}

URI relativize(const URI& uri, const URI& base) {
  if (!isHierarchical(uri.scheme()) || !isHierarchical(base.scheme()) ||
      compareOrigins(uri, base) != 0) {
    return uri;
  }
  URI::Data relative = uri.data();
  relative.scheme.clear();
  relative.host.clear();
  relative.port = 0;
  if (relative.path.absolute && base.path().absolute) {
    relative.path = relativePath(relative.path, base.path());
  }
  return detail::DataAccess::wrap(std::move(relative));
}

}  // namespace qta::uri
