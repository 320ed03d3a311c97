// Properties over many generated URIs: relativising and resolving again gives
// the URI back outside the classes round_trip_limit.h names, and the order is
// a strict weak ordering. Seeded, so every run checks the same URIs; the fuzz
// harness uri_resolve sweeps further.
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>
#include <vector>

#include "qta/uri/compare.h"
#include "qta/uri/relative.h"
#include "qta/uri/uri.h"
#include "uri/describe.h"
#include "uri/round_trip_limit.h"
#include "uri/weak_order.h"

namespace {

using qtatest::describe;

// URIs from small alphabets, so that shared prefixes, equal segments and
// equal URIs are common. The origins come with and without a host, one
// without an authority (where ".." can stay at the start of a path), and
// some without hierarchy: no scheme, and "data" URIs, which all compare equal.
std::vector<qta::URI> generatedURIs(size_t count) {
  std::mt19937 random(20240611);
  const auto pick = [&random](const std::vector<std::string>& choices) {
    return choices[std::uniform_int_distribution<size_t>(0, choices.size() - 1)(random)];
  };
  std::vector<qta::URI> uris;
  while (uris.size() < count) {
    std::string text = pick({"http://media.example:8080", "http://u@media.example:8080",
                             "http://media.example", "file://", "file:", "", "data:,x"});
    // Up to four segments, some empty or dot segments, maybe a final "/".
    const size_t segments = std::uniform_int_distribution<size_t>(0, 4)(random);
    for (size_t i = 0; i < segments; ++i) {
      text += '/';
      text += pick({"a", "b", "c", "", "..", "%2E", "x y"});
    }
    text += pick({"", "/"});
    text += pick({"", "?q", "?r=1"});
    text += pick({"", "#f", "#g"});
    uris.emplace_back(text);
  }
  return uris;
}

TEST(URIProperties, RoundTripOutsideTheNamedClassesAndStrictWeakOrder) {
  const std::vector<qta::URI> uris = generatedURIs(400);
  std::map<std::string, int> seen;  // how often each class (or "none") came up
  for (size_t i = 0; i < uris.size(); ++i) {
    const qta::URI& uri = uris[i];
    for (size_t j = 0; j < uris.size(); ++j) {
      const qta::URI& base = uris[j];
      const qta::URI relative = qta::uri::relativize(uri, base);
      const char* limit = qtatest::roundTripLimit(uri, base);
      ++seen[limit != nullptr ? limit : "none"];
      if (limit == qtatest::kNotRelativised) {
        EXPECT_EQ(describe(relative), describe(uri));
      } else if (limit == nullptr) {
        ASSERT_EQ(describe(qta::uri::resolve(relative, base)), describe(uri))
            << uri.toString() << " against " << base.toString() << " via " << describe(relative);
      }
      const qta::URI& third = uris[(i + j * 7) % uris.size()];
      ASSERT_EQ(qtatest::weakOrderViolation(uri, base, third, qta::uri::compare), "")
          << uri.toString() << " " << base.toString() << " " << third.toString();
    }
  }
  // Every class must come up, or the generator has stopped testing it.
  for (const char* limit :
       {qtatest::kNotRelativised, qtatest::kOtherUserInfo, qtatest::kRelativePath,
        qtatest::kBaseClimbs, qtatest::kDirectoryWithoutSlash}) {
    EXPECT_GT(seen[limit], 0) << limit;
  }
  EXPECT_GT(seen["none"], 10000);
}

}  // namespace
