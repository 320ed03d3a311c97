// The order of URIs: origins, paths and whole URIs, and URI's == and <=>.
#include "qta/uri/compare.h"

#include <algorithm>
#include <compare>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>

namespace qta::uri {
namespace {

// Byte strings: the first differing byte decides, else the shorter text sorts
// first; the length difference is clamped to the range of int.
int compareBytes(const std::string& a, const std::string& b) {
  const int bytes = std::memcmp(a.data(), b.data(), std::min(a.size(), b.size()));
  if (bytes != 0) return bytes;
  const auto difference = static_cast<int64_t>(a.size()) - static_cast<int64_t>(b.size());
  return static_cast<int>(std::clamp<int64_t>(difference, std::numeric_limits<int>::min(),
                                              std::numeric_limits<int>::max()));
}

int compareFlags(bool a, bool b) { return static_cast<int>(a) - static_cast<int>(b); }

}  // namespace

int compareOrigins(const URI& a, const URI& b) {
  if (const int schemes = compareBytes(a.scheme(), b.scheme()); schemes != 0) return schemes;
  if (const int hosts = compareBytes(a.host(), b.host()); hosts != 0) return hosts;
  return a.port() < b.port() ? -1 : a.port() > b.port() ? 1 : 0;
}

int comparePaths(const URI::Path& a, const URI::Path& b) {
  if (a.absolute != b.absolute) return compareFlags(b.absolute, a.absolute);
  const size_t common = std::min(a.segments.size(), b.segments.size());
  for (size_t i = 0; i < common; ++i) {
    if (const int segments = compareBytes(a.segments[i], b.segments[i]); segments != 0) {
      return segments;
    }
  }
  if (a.segments.size() != b.segments.size()) return a.segments.size() < b.segments.size() ? -1 : 1;
  return compareFlags(a.trailingSlash, b.trailingSlash);
}

int compare(const URI& a, const URI& b) {
  if (&a.data() == &b.data()) return 0;  // copies share their data
  if (const int origins = compareOrigins(a, b); origins != 0) return origins;
  if (const int userInfos = compareBytes(a.userInfo(), b.userInfo()); userInfos != 0) {
    return userInfos;
  }
  if (const int paths = comparePaths(a.path(), b.path()); paths != 0) return paths;
  if (const int queries = compareBytes(a.query(), b.query()); queries != 0) return queries;
  return compareBytes(a.fragment(), b.fragment());
}

}  // namespace qta::uri

namespace qta {

bool operator==(const URI& a, const URI& b) { return uri::compare(a, b) == 0; }

std::weak_ordering operator<=>(const URI& a, const URI& b) { return uri::compare(a, b) <=> 0; }

}  // namespace qta
