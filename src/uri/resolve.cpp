// Resolving a reference against a base URI, and the path merge it uses.
#include <cstddef>
#include <string_view>
#include <utility>

#include "qta/uri/relative.h"
#include "uri/data_access.h"
#include "uri/parse.h"

namespace qta::uri {
namespace {

// References of these schemes name a resource of their own, never one
// relative to a base.
bool isNeverRelative(std::string_view scheme) {
  return scheme == "data" || scheme == "rtp" || scheme == "udp";
}

}  // namespace

URI::Path mergePaths(const URI::Path& reference, const URI::Path& basePath, bool rooted) {
  URI::Path merged;
  if (reference.absolute) {
    merged = reference;
  } else {
    merged.absolute = basePath.absolute;
    merged.trailingSlash = reference.trailingSlash;
    size_t directory = basePath.segments.size();
    if (!basePath.trailingSlash && directory > 0) --directory;
    merged.segments.reserve(directory + reference.segments.size());
    merged.segments.assign(basePath.segments.begin(),
                           basePath.segments.begin() + static_cast<std::ptrdiff_t>(directory));
    merged.segments.insert(merged.segments.end(), reference.segments.begin(),
                           reference.segments.end());
  }
  removeDotSegments(merged, rooted);
  return merged;
}

URI resolve(const URI& reference, const URI& base) {
  const URI::Data& ref = reference.data();
  if (isNeverRelative(ref.scheme)) return reference;
  // A reference that repeats the base's scheme without an authority is read
  // as relative ("http:x"), as lenient resolvers do.
  if (!ref.scheme.empty() && (ref.scheme != base.scheme() || !ref.host.empty())) {
    return reference;
  }
  URI::Data resolved;
  resolved.scheme = base.scheme();
  resolved.fragment = ref.fragment;
  if (!ref.host.empty()) {
    resolved.host = ref.host;
    resolved.port = ref.port;
    resolved.userInfo = ref.userInfo;
    resolved.path = ref.path;
    resolved.query = ref.query;
    return detail::DataAccess::wrap(std::move(resolved));
  }
  resolved.host = base.host();
  resolved.port = base.port();
  resolved.userInfo = base.userInfo();
  if (ref.path.empty()) {
    resolved.path = base.path();
    resolved.query = ref.query.empty() ? base.query() : ref.query;
  } else {
    const bool rooted = !resolved.scheme.empty() && !resolved.host.empty();
    resolved.path = mergePaths(ref.path, base.path(), rooted);
    resolved.query = ref.query;
  }
  return detail::DataAccess::wrap(std::move(resolved));
}

}  // namespace qta::uri
