// Splits its input at line breaks into up to three texts, reads each as a URI,
// and resolves and relativises every ordered pair. Checks:
// - a reference that resolution must return as it is comes back unchanged;
//   any other result has the base's scheme, the reference's fragment, and
//   under a host an absolute path with no ".." left;
// - relativising gives the URI back unchanged, or (outside the classes that
//   round_trip_limit.h names) a form that resolves back to the URI;
// - the order is a strict weak ordering over the three URIs.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "qta/uri/compare.h"
#include "qta/uri/relative.h"
#include "qta/uri/uri.h"
#include "uri/describe.h"
#include "uri/round_trip_limit.h"
#include "uri/weak_order.h"

namespace {

[[noreturn]] void fail(const char* what, const qta::URI& first, const qta::URI& second,
                       const qta::URI& result) {
  std::fprintf(stderr, "%s\n  first:  %s\n  second: %s\n  result: %s\n", what,
               qtatest::describe(first).c_str(), qtatest::describe(second).c_str(),
               qtatest::describe(result).c_str());
  std::abort();
}

bool returnedAsItIs(const qta::URI& reference, const qta::URI& base) {
  const std::string& scheme = reference.scheme();
  if (scheme == "data" || scheme == "rtp" || scheme == "udp") return true;
  return !scheme.empty() && (scheme != base.scheme() || !reference.host().empty());
}

void checkResolve(const qta::URI& reference, const qta::URI& base) {
  const qta::URI resolved = qta::uri::resolve(reference, base);
  (void)resolved.toString();
  if (returnedAsItIs(reference, base)) {
    if (qtatest::describe(resolved) != qtatest::describe(reference)) {
      fail("resolution changed a reference it must return as it is", reference, base, resolved);
    }
    return;
  }
  if (resolved.scheme() != base.scheme() || resolved.fragment() != reference.fragment()) {
    fail("resolution lost the base's scheme or the reference's fragment", reference, base,
         resolved);
  }
  if (!resolved.scheme().empty() && !resolved.host().empty()) {
    const qta::URI::Path& path = resolved.path();
    bool climbs = false;
    for (const std::string& segment : path.segments) climbs |= segment == "..";
    if (!path.absolute || climbs)
      fail("a rooted result climbs or is relative", reference, base, resolved);
  }
}

void checkRelativize(const qta::URI& uri, const qta::URI& base) {
  const qta::URI relative = qta::uri::relativize(uri, base);
  (void)relative.toString();
  const char* limit = qtatest::roundTripLimit(uri, base);
  if (limit == qtatest::kNotRelativised) {
    if (qtatest::describe(relative) != qtatest::describe(uri)) {
      fail("relativising changed a URI of another origin", uri, base, relative);
    }
    return;
  }
  if (!relative.scheme().empty() || !relative.host().empty() || relative.port() != 0) {
    fail("the relative form kept its origin", uri, base, relative);
  }
  if (limit != nullptr) return;
  const qta::URI back = qta::uri::resolve(relative, base);
  if (qtatest::describe(back) != qtatest::describe(uri)) {
    fail("the relative form does not resolve back", uri, base, back);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  std::vector<qta::URI> uris;
  size_t start = 0;
  while (uris.size() < 3) {
    const size_t end = input.find('\n', start);
    uris.emplace_back(input.substr(start, end - start));
    if (end == std::string_view::npos) break;
    start = end + 1;
  }
  while (uris.size() < 3) uris.push_back(uris.back());

  for (const qta::URI& first : uris) {
    for (const qta::URI& second : uris) {
      checkResolve(first, second);
      checkRelativize(first, second);
    }
  }
  const std::string violation =
      qtatest::weakOrderViolation(uris[0], uris[1], uris[2], qta::uri::compare);
  if (!violation.empty()) fail(violation.c_str(), uris[0], uris[1], uris[2]);
  return 0;
}
