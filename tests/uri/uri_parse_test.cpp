#include <gtest/gtest.h>

#include <optional>
#include <span>
#include <string>

#include "qta/uri/uri.h"
#include "uri/describe.h"

namespace {

using qtatest::describe;

struct ParseCase {
  const char* text;
  bool templateMode;
  const char* expected;  // describe() of the result; nullptr when the text is invalid
};

const ParseCase kAuthorityCases[] = {
    {"HTTP://Server1", false, "http||server1|80|AT||"},
    {"http://server1:0/", false, "http||server1|80|AT||"},
    {"http://server1:0080/", false, "http||server1|80|AT||"},
    {"https://h:65535/", false, "https||h|65535|AT||"},
    {"coaps+tcp://h", false, "coaps+tcp||h|5684|AT||"},
    {"gopher://h", false, "gopher||h|0|AT||"},
    {"http://[fe80::1%25eth0]:8080/x", false, "http||fe80::1%eth0|8080|A{x}||"},
    {"http://[fe80::1%25e%74h-0]/", false, "http||fe80::1%eth-0|80|AT||"},
    {"http://[::FFFF:1.2.3.4]/", false, "http||::FFFF:1.2.3.4|80|AT||"},
    {"http://192.168.0.1:8080/", false, "http||192.168.0.1|8080|AT||"},
    {"http://%48ost.Example./", false, "http||host.example.|80|AT||"},
    {"http://B\xC3\xBC"
     "cher.example/",
     false, "http||xn--bcher-kva.example|80|AT||"},
    {"udp://@:1234", false, "udp|||1234|AT||"},
    {"rtp://", false, "rtp|||0|AT||"},
    {"http:///x", false, "http|||0|A{x}||"},
    {"qta://Some Name:1/", false, "qta||Some Name:1|0|AT||"},
    {"project://a%2Fb@x/", false, "project|a%2Fb|x|0|AT||"},
    {"//server/dir", false, "file||server|0|A{dir}||"},
    {"ftp://us%65r:p%40ss;x=%2a@h/", false, "ftp|user:p%40ss;x=*|h|21|AT||"},
    {"http://u@h/", false, "http|u|h|80|AT||"},
};

const ParseCase kPathQueryFragmentCases[] = {
    {"", false, "|||0|||"},
    {"?q#f", false, "|||0||q|f"},
    {"a/./b/../c/", false, "|||0|T{a}{c}||"},
    {"../x", false, "|||0|{..}{x}||"},
    {"a/../../b/..", false, "|||0|T{..}||"},
    {".", false, "|||0|T||"},
    {"http://h/../x", false, "http||h|80|A{x}||"},
    {"http://h/a/b/../../..", false, "http||h|80|AT||"},
    {"http:/../x", false, "http|||0|A{..}{x}||"},
    {"urn:a:b", false, "urn|||0|{a:b}||"},
    {"mailto:someone@example.com", false, "mailto|||0|{someone@example.com}||"},
    {"1http://x", false, "|||0|{1http:}{}{x}||"},
    {"file:///tmp/x%20y", false, "file|||0|A{tmp}{x y}||"},
    {"http://h//a%2Fb//", false, "http||h|80|AT{}{a/b}{}||"},
    {"http://h/?a%3db&c%3ad+%2b%7e%20", false, "http||h|80|AT|a%3Db&c:d+%2B~%20|"},
    {"http://h/#a%2fb%23?%5B]", false, "http||h|80|AT||a/b%23?%5B]"},
    {"http://h/?a#b#c", false, "http||h|80|AT|a|b%23c"},
    {"http://h/[[a/b?c]]/d", true, "http||h|80|A{[[a/b?c]]}{d}||"},
    {"http://h/[[a/b?c]]/d", false, "http||h|80|A{[[a}{b}|c]]/d|"},
    {"http://h/x[[%zz]]y%41", true, "http||h|80|A{x[[%zz]]yA}||"},
    {"http://h/[[a/b", true, "http||h|80|A{[[a}{b}||"},
    {"http://h/?[[a#b]]&x=%41#[[ ]]", true, "http||h|80|AT|[[a#b]]&x=A|[[ ]]"},
};

const char* const kInvalidTexts[] = {
    "http://server1:65536/",
    "http://server1:/",
    "http://server1:8a/",
    "http://[fe80::1%eth0]/",
    "http://[fe80::1%25]/",
    "http://[fe80::1%25e.0]/",
    "http://[fe80::1%25e%zz]/",
    "http://[::]/",
    "http://[::1",
    "http://[::1]x/",
    "http://[v1.x]/",
    "http://a@b@c/",
    "http://u[1]@h/",
    "http://:80/",
    "http://-h/",
    "http://h-/",
    "http://h_x/",
    "http://a..b/",
    "http://h%00/",
    "http://h%zz/",
    "http://host?x",
    "http://host#f",
    "http://h/%zz",
    "http://h/?%g1",
    "http://h/#%",
    "qta://%zz/",
    "qta://a%01/",
    "data:,text",  // data: URIs are not read yet
};

void expectParses(const ParseCase& c) {
  SCOPED_TRACE(std::string("text: ") + c.text);
  const std::optional<qta::URI> uri = qta::URI::tryParse(c.text, c.templateMode);
  ASSERT_TRUE(uri.has_value());
  EXPECT_EQ(describe(*uri), c.expected);
  EXPECT_EQ(describe(qta::URI(c.text, c.templateMode)), c.expected);
}

TEST(URIParse, SchemeAndAuthority) {
  for (const ParseCase& c : kAuthorityCases) expectParses(c);
}

TEST(URIParse, PathQueryAndFragment) {
  for (const ParseCase& c : kPathQueryFragmentCases) expectParses(c);
}

TEST(URIParse, LabelLengthLimit) {
  const std::string label63(63, 'a');
  EXPECT_EQ(qta::URI("http://" + label63 + ".b/").host(), label63 + ".b");
  EXPECT_FALSE(qta::URI::tryParse("http://" + label63 + "a.b/").has_value());
}

TEST(URIParse, InvalidTextsGiveTheEmptyURI) {
  for (const char* text : kInvalidTexts) {
    SCOPED_TRACE(text);
    EXPECT_FALSE(qta::URI::tryParse(text).has_value());
    qta::URI::Data data;
    data.scheme = "stale";
    EXPECT_FALSE(qta::URI::parse(text, false, data));
    EXPECT_EQ(describe(qta::URI(text)), "|||0|||");
    EXPECT_TRUE(data.scheme.empty());
  }
}

// Every accepted text is written as a text that reads back as the same URI.
TEST(URIParse, WrittenFormReadsBackEqual) {
  for (std::span<const ParseCase> table : {std::span<const ParseCase>(kAuthorityCases),
                                           std::span<const ParseCase>(kPathQueryFragmentCases)}) {
    for (const ParseCase& c : table) {
      SCOPED_TRACE(c.text);
      const qta::URI uri(c.text, c.templateMode);
      const std::string written = uri.toString(c.templateMode);
      EXPECT_EQ(describe(qta::URI(written, c.templateMode)), describe(uri)) << written;
    }
  }
}

}  // namespace
