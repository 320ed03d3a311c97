#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "qta/uri/compare.h"
#include "qta/uri/relative.h"
#include "qta/uri/uri.h"
#include "uri/describe.h"

namespace {

using qtatest::describe;

struct PairCase {
  const char* base;
  const char* other;     // the reference to resolve, or the URI to relativise
  const char* expected;  // the result's full form
};

const PairCase kResolveCases[] = {
    // Paths merge with the base's directory; rooted paths stop at the root.
    {"http://h/a/b", "x/y", "http://h/a/x/y"},
    {"http://h/a/b/", "x/y", "http://h/a/b/x/y"},
    {"http://h/a/b/c", "../z", "http://h/a/z"},
    {"http://h/a/b/c", "../../../z", "http://h/z"},
    {"http://h/a/b/c", "..", "http://h/a/"},
    {"http://h/a/b", ".", "http://h/a/"},
    {"http://h/a/b", "/x/../y", "http://h/y"},
    {"http://h", "x", "http://h/x"},
    {"http://u@h:81/a?p#g", "x//y/", "http://u@h:81/x//y/"},
    // An empty path keeps the base's path, and its query when it has none;
    // the fragment is never the base's.
    {"http://h/a?p#g", "?q", "http://h/a?q"},
    {"http://h/a?p#g", "#f", "http://h/a?p#f"},
    {"http://h/a?p#g", "", "http://h/a?p"},
    {"http://h/a?p", "b", "http://h/b"},
    // Schemes: the base's scheme without a host reads as relative.
    {"http://h/a/b", "http:x", "http://h/a/x"},
    {"http://h/a/b", "HTTP:?q", "http://h/a/b?q"},
    {"http://h/a/b", "ftp:x", "ftp:x"},
    {"http://h/a/b", "http://g/../x", "http://g/x"},
    {"http://h/a/b", "//g/x?q", "file://g/x?q"},
    {"file://g/a/b", "//g2/x", "file://g2/x"},
    {"http://h/a/b", "data:,x", "data:text/plain;charset=US-ASCII;base64,eA=="},
    {"data:,x", "y", "data:"},  // the base's scheme, but no payload to write
    {"udp://@:1234/a", "b", "udp://@:1234/b"},
    {"udp://@:1234/a", "udp:b", "udp://@b"},
    {"http://h/a", "rtp:b", "rtp://@b"},
    // Without a host dot segments stay where nothing cancels them.
    {"file:/a/b", "../../x", "file:/../x"},
    {"x/y", "../../z", "../z"},
    {"", "a/./b", "a/b"},
};

TEST(URIResolve, MergesWithTheBase) {
  for (const PairCase& c : kResolveCases) {
    SCOPED_TRACE(std::string(c.base) + " + " + c.other);
    EXPECT_EQ(qta::uri::resolve(qta::URI(c.other), qta::URI(c.base)).toString(), c.expected);
  }
}

const PairCase kRelativizeCases[] = {
    {"http://h/a/d", "http://h/a/b/c", "b/c"},
    {"http://h/x/y", "http://h/a/b/c", "../a/b/c"},
    {"http://h/a/b/", "http://h/a/b/c/", "c/"},
    {"http://h/a/b", "http://h/a/b", "b"},
    {"http://h/a/b/", "http://h/a/b", ""},  // the base's directory without its slash
    {"http://h/a/b/c", "http://h/", "../../"},
    {"http://h/a", "http://u@h:80/a/x?q#f", "a/x?q#f"},  // user info stays, unwritten
    {"http://h:80/", "http://h/a//b/", "a//b/"},
    {"file:///a/b", "file:/a/c", "c"},
    // Unchanged: another origin, no scheme, or no hierarchy.
    {"https://h/a/d", "http://h/a/b/c", "http://h/a/b/c"},
    {"http://h:81/a", "http://h/a/b", "http://h/a/b"},
    {"http://g/a", "http://h/a/b", "http://h/a/b"},
    {"/a/d", "/a/b", "/a/b"},
    {"http://h/a", "/a/b", "/a/b"},
    {"urn:a:b", "urn:a:c", "urn:a:c"},
    {"data:,x", "data:,y", "data:text/plain;charset=US-ASCII;base64,eQ=="},
    // Paths that are not both absolute stay.
    {"mailto:b", "mailto:a", "a"},
    {"file:/a/b", "file:x", "x"},
};

TEST(URIRelativize, DropsWhatTheBaseGives) {
  for (const PairCase& c : kRelativizeCases) {
    SCOPED_TRACE(std::string(c.other) + " against " + c.base);
    EXPECT_EQ(qta::uri::relativize(qta::URI(c.other), qta::URI(c.base)).toString(), c.expected);
  }
  EXPECT_EQ(describe(qta::uri::relativize(qta::URI("http://u@h/a/x"), qta::URI("http://h/a"))),
            "|u||0|{a}{x}||");
}

// Each text sorts before the next one.
const char* const kAscending[] = {
    "/a",  // no scheme sorts first, an absolute path before a relative one
    "",
    "a",
    "data:,zzz",
    "ftp://h/",
    "http:/a",
    "http://a/",
    "http://h/",
    "http://h/%00",
    "http://h/a",
    "http://h/a/",
    "http://h/a/b",
    "http://h/a/b?q",
    "http://h/a/b?q#f",
    "http://h/a/b?r",
    "http://h/b",
    "http://h/%FF",  // bytes compare unsigned
    "http://u@h/",   // user info after the origin
    "http://h:81/",
    "http://h.example/",
    "https://a/",
};

TEST(URICompare, OrdersBySchemeHostPortUserInfoPathQueryFragment) {
  const size_t count = std::size(kAscending);
  for (size_t i = 0; i < count; ++i) {
    for (size_t j = 0; j < count; ++j) {
      SCOPED_TRACE(std::string(kAscending[i]) + " <=> " + kAscending[j]);
      const qta::URI a(kAscending[i]);
      const qta::URI b(kAscending[j]);
      const int result = qta::uri::compare(a, b);
      EXPECT_EQ((result > 0) - (result < 0), (i > j) - (i < j));
      EXPECT_EQ(a == b, i == j);
      EXPECT_EQ(a < b, i < j);
    }
  }
}

TEST(URICompare, OriginsAndPathsAlone) {
  EXPECT_EQ(qta::uri::compareOrigins(qta::URI("http://h/a?x"), qta::URI("http://u@h:80/b")), 0);
  EXPECT_LT(qta::uri::compareOrigins(qta::URI("http://h:80/"), qta::URI("http://h:443/")), 0);
  EXPECT_GT(qta::uri::compareOrigins(qta::URI("http://hh/"), qta::URI("http://h/")), 0);
  // Absolute before relative; then segments; then the trailing slash.
  EXPECT_LT(qta::uri::comparePaths(qta::URI("/z").path(), qta::URI("a").path()), 0);
  EXPECT_LT(qta::uri::comparePaths(qta::URI("a//").path(), qta::URI("a/b").path()), 0);
  EXPECT_LT(qta::uri::comparePaths(qta::URI("a/b").path(), qta::URI("a/b/").path()), 0);
  EXPECT_EQ(qta::uri::comparePaths(qta::URI("./a/").path(), qta::URI("a/b/..").path()), 0);
}

TEST(URICompare, DataURIsDifferingOnlyInContentAreEqual) {
  EXPECT_EQ(qta::URI("data:,x"), qta::URI::fromData({1, 2}, "image/png"));
  std::map<qta::URI, int> keys;
  keys[qta::URI("http://h/b")] = 1;
  keys[qta::URI("HTTP://h:80/b")] = 2;  // the same URI once normalised
  keys[qta::URI("http://h/a")] = 3;
  EXPECT_EQ(keys.size(), 2u);
  EXPECT_EQ(keys.begin()->second, 3);
  EXPECT_EQ(keys.at(qta::URI("http://h/b")), 2);
}

}  // namespace
