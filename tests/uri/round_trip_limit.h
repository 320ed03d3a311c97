// When relativising a URI against a base and resolving the result against the
// same base cannot be relied on to give the URI back. Shared by the unit
// tests and the fuzz harness.
#ifndef QTA_TESTS_URI_ROUND_TRIP_LIMIT_H_
#define QTA_TESTS_URI_ROUND_TRIP_LIMIT_H_

#include <algorithm>
#include <string>
#include <vector>

#include "qta/uri/compare.h"
#include "qta/uri/uri.h"

namespace qtatest {

// The reasons, one per class of inputs, that the rules give for a round trip
// to change the URI.
inline constexpr const char* kNotRelativised =
    "different origin, or no hierarchy (no scheme, \"urn\", \"data\"): relativising gives the "
    "URI back unchanged, and resolution reads one of the base's scheme without a host as "
    "relative";
inline constexpr const char* kOtherUserInfo =
    "user info other than the base's: the relative form has no authority to carry it, and "
    "resolution takes the base's";
inline constexpr const char* kRelativePath =
    "a path that is not absolute: relativising keeps it, and resolution puts it after the "
    "base's directory";
inline constexpr const char* kBaseClimbs =
    "the base's directory holds \"..\" (kept without an authority): the \"..\" of the relative "
    "form then cancel other segments than the ones they were counted for";
inline constexpr const char* kDirectoryWithoutSlash =
    "a path without trailing slash that is the base's directory or one above it: its relative "
    "form is empty, which resolution reads as the base itself, or ends in \"..\", which "
    "resolution reads as a directory (with a trailing slash)";

// The reason resolving the relative form of `uri` against `base` may not give
// `uri` back, or nullptr when it must.
inline const char* roundTripLimit(const qta::URI& uri, const qta::URI& base) {
  const auto hierarchical = [](const std::string& scheme) {
    return !scheme.empty() && scheme != "urn" && scheme != "data";
  };
  if (!hierarchical(uri.scheme()) || !hierarchical(base.scheme()) ||
      qta::uri::compareOrigins(uri, base) != 0) {
    return kNotRelativised;
  }
  if (uri.userInfo() != base.userInfo()) return kOtherUserInfo;
  const qta::URI::Path& path = uri.path();
  const qta::URI::Path& basePath = base.path();
  if (!path.absolute || !basePath.absolute) return kRelativePath;
  const std::vector<std::string>& segments = basePath.segments;
  const size_t directories = segments.size() - (basePath.trailingSlash || segments.empty() ? 0 : 1);
  if (std::find(segments.begin(), segments.begin() + directories, "..") !=
      segments.begin() + directories) {
    return kBaseClimbs;
  }
  if (!path.trailingSlash && path.segments.size() <= directories &&
      std::equal(path.segments.begin(), path.segments.end(), segments.begin())) {
    return kDirectoryWithoutSlash;
  }
  return nullptr;
}

}  // namespace qtatest

#endif  // QTA_TESTS_URI_ROUND_TRIP_LIMIT_H_
