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

// Texts from small alphabets, so that shared prefixes, equal segments and
// equal URIs are common.
class URIGenerator {
 public:
  explicit URIGenerator(uint32_t seed) : random_(seed) {}

  std::string pick(const std::vector<std::string>& choices) {
    return choices[std::uniform_int_distribution<size_t>(0, choices.size() - 1)(random_)];
  }

  // "/" and up to four segments, some empty or dot segments, maybe a final "/".
  std::string path() {
    std::string text;
    const size_t count = std::uniform_int_distribution<size_t>(0, 4)(random_);
    for (size_t i = 0; i < count; ++i) {
      text += '/';
      text += pick({"a", "b", "c", "", "..", "%2E", "x y"});
    }
    text += pick({"", "/"});
    return text;
  }

  std::string tail() { return pick({"", "?q", "?r=1"}) + pick({"", "#f", "#g"}); }

  qta::URI next(const std::vector<std::string>& origins) {
    return qta::URI(pick(origins) + path() + tail());
  }

 private:
  std::mt19937 random_;
};

// Origins with and without a host, and one without an authority (where ".."
// can stay at the start of a path).
const std::vector<std::string> kOrigins = {"http://media.example:8080",
                                           "http://u@media.example:8080", "file://", "file:"};

TEST(URIRoundTrip, RelativeFormResolvesBackOutsideTheNamedClasses) {
  URIGenerator generator(20240611);
  std::vector<qta::URI> uris;
  for (int i = 0; i < 400; ++i) uris.push_back(generator.next(kOrigins));

  std::map<std::string, int> seen;  // how often each class (or "none") came up
  for (const qta::URI& uri : uris) {
    for (const qta::URI& base : uris) {
      const qta::URI relative = qta::uri::relativize(uri, base);
      const qta::URI back = qta::uri::resolve(relative, base);
      const char* limit = qtatest::roundTripLimit(uri, base);
      ++seen[limit != nullptr ? limit : "none"];
      if (limit == qtatest::kNotRelativised) {
        EXPECT_EQ(describe(relative), describe(uri));
      } else if (limit == nullptr) {
        ASSERT_EQ(describe(back), describe(uri))
            << uri.toString() << " against " << base.toString() << " via " << describe(relative);
      }
    }
  }
  // Every class must come up, or the generator has stopped testing it.
  for (const char* limit :
       {qtatest::kNotRelativised, qtatest::kOtherUserInfo, qtatest::kRelativePath,
        qtatest::kBaseClimbs, qtatest::kDirectoryWithoutSlash}) {
    EXPECT_GT(seen[limit], 0) << limit;
  }
  EXPECT_GT(seen["none"], 20000);
}

TEST(URIOrder, IsAStrictWeakOrderingOnRandomTriples) {
  URIGenerator generator(7);
  const std::vector<std::string> origins = {"",          "http://h", "http://h:81", "http://u@h",
                                            "https://h", "data:,x",  "data:,y"};
  for (int i = 0; i < 20000; ++i) {
    const qta::URI a = generator.next(origins);
    const qta::URI b = generator.next(origins);
    const qta::URI c = generator.next(origins);
    const std::string violation = qtatest::weakOrderViolation(a, b, c, qta::uri::compare);
    ASSERT_EQ(violation, "") << a.toString() << " " << b.toString() << " " << c.toString();
  }
}

}  // namespace
