#include <gtest/gtest.h>

#include <optional>
#include <span>
#include <string>

#include "qta/uri/uri.h"
#include "uri/describe.h"

namespace {

using qta::TemplateMode;

using qtatest::describe;

struct ParseCase {
  const char* text;
  qta::TemplateMode templateMode;
  const char* expected;  // describe() of the result; nullptr when the text is invalid
};

const ParseCase kAuthorityCases[] = {
    {"HTTP://Server1", TemplateMode::kOff, "http||server1|80|AT||"},
    {"http://server1:0/", TemplateMode::kOff, "http||server1|80|AT||"},
    {"http://server1:0080/", TemplateMode::kOff, "http||server1|80|AT||"},
    {"https://h:65535/", TemplateMode::kOff, "https||h|65535|AT||"},
    {"coaps+tcp://h", TemplateMode::kOff, "coaps+tcp||h|5684|AT||"},
    {"gopher://h", TemplateMode::kOff, "gopher||h|0|AT||"},
    {"http://[fe80::1%25eth0]:8080/x", TemplateMode::kOff, "http||fe80::1%eth0|8080|A{x}||"},
    {"http://[fe80::1%25e%74h-0]/", TemplateMode::kOff, "http||fe80::1%eth-0|80|AT||"},
    {"http://[::FFFF:1.2.3.4]/", TemplateMode::kOff, "http||::FFFF:1.2.3.4|80|AT||"},
    {"http://192.168.0.1:8080/", TemplateMode::kOff, "http||192.168.0.1|8080|AT||"},
    {"http://%48ost.Example./", TemplateMode::kOff, "http||host.example.|80|AT||"},
    {"http://B\xC3\xBC"
     "cher.example/",
     TemplateMode::kOff, "http||xn--bcher-kva.example|80|AT||"},
    {"udp://@:1234", TemplateMode::kOff, "udp|||1234|AT||"},
    {"rtp://", TemplateMode::kOff, "rtp|||0|AT||"},
    {"http:///x", TemplateMode::kOff, "http|||0|A{x}||"},
    {"qta://Some Name:1/", TemplateMode::kOff, "qta||Some Name:1|0|AT||"},
    {"project://a%2Fb@x/", TemplateMode::kOff, "project|a%2Fb|x|0|AT||"},
    {"//server/dir", TemplateMode::kOff, "file||server|0|A{dir}||"},
    {"ftp://us%65r:p%40ss;x=%2a@h/", TemplateMode::kOff, "ftp|user:p%40ss;x=*|h|21|AT||"},
    {"http://u@h/", TemplateMode::kOff, "http|u|h|80|AT||"},
};

const ParseCase kPathQueryFragmentCases[] = {
    {"", TemplateMode::kOff, "|||0|||"},
    {"?q#f", TemplateMode::kOff, "|||0||q|f"},
    {"a/./b/../c/", TemplateMode::kOff, "|||0|T{a}{c}||"},
    {"../x", TemplateMode::kOff, "|||0|{..}{x}||"},
    {"a/../../b/..", TemplateMode::kOff, "|||0|T{..}||"},
    {".", TemplateMode::kOff, "|||0|T||"},
    {"http://h/../x", TemplateMode::kOff, "http||h|80|A{x}||"},
    {"http://h/a/b/../../..", TemplateMode::kOff, "http||h|80|AT||"},
    {"http:/../x", TemplateMode::kOff, "http|||0|A{..}{x}||"},
    {"urn:a:b", TemplateMode::kOff, "urn|||0|{a:b}||"},
    {"mailto:someone@example.com", TemplateMode::kOff, "mailto|||0|{someone@example.com}||"},
    {"1http://x", TemplateMode::kOff, "|||0|{1http:}{}{x}||"},
    {"file:///tmp/x%20y", TemplateMode::kOff, "file|||0|A{tmp}{x y}||"},
    {"http://h//a%2Fb//", TemplateMode::kOff, "http||h|80|AT{}{a/b}{}||"},
    {"http://h/?a%3db&c%3ad+%2b%7e%20", TemplateMode::kOff, "http||h|80|AT|a%3Db&c:d+%2B~%20|"},
    {"http://h/#a%2fb%23?%5B]", TemplateMode::kOff, "http||h|80|AT||a/b%23?%5B]"},
    {"http://h/?a#b#c", TemplateMode::kOff, "http||h|80|AT|a|b%23c"},
    {"http://h/[[a/b?c]]/d", TemplateMode::kOn, "http||h|80|A{[[a/b?c]]}{d}||"},
    {"http://h/[[a/b?c]]/d", TemplateMode::kOff, "http||h|80|A{[[a}{b}|c]]/d|"},
    {"http://h/x[[%zz]]y%41", TemplateMode::kOn, "http||h|80|A{x[[%zz]]yA}||"},
    {"http://h/[[a/b", TemplateMode::kOn, "http||h|80|A{[[a}{b}||"},
    {"http://h/?[[a#b]]&x=%41#[[ ]]", TemplateMode::kOn, "http||h|80|AT|[[a#b]]&x=A|[[ ]]"},
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
    EXPECT_FALSE(qta::URI::parse(text, TemplateMode::kOff, data));
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
