#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>

#include "qta/uri/escape.h"
#include "qta/uri/query.h"
#include "qta/uri/uri.h"
#include "uri/describe.h"

namespace {

using qta::TemplateMode;
using qtatest::describe;

struct ParseCase {
  const char* text;
  const char* expected;  // describe() of the result
  TemplateMode templateMode = TemplateMode::kOff;
};

// clang-format off
const ParseCase kParseCases[] = {
    {"HTTP://Server1", "http||server1|80|AT||"}, {"http://server1:0/", "http||server1|80|AT||"},
    {"http://server1:0080/", "http||server1|80|AT||"}, {"https://h:65535/", "https||h|65535|AT||"},
    {"coaps+tcp://h", "coaps+tcp||h|5684|AT||"}, {"gopher://h", "gopher||h|0|AT||"},
    {"http://[fe80::1%25eth0]:8080/x", "http||fe80::1%eth0|8080|A{x}||"},
    {"http://[fe80::1%25e%74h-0]/", "http||fe80::1%eth-0|80|AT||"},
    {"http://%48ost.Example./", "http||host.example.|80|AT||"},
    {"http://Bücher.example/", "http||xn--bcher-kva.example|80|AT||"},
    {"udp://@:1234", "udp|||1234|AT||"}, {"rtp://", "rtp|||0|AT||"},
    {"http:///x", "http|||0|A{x}||"}, {"qta://Some Name:1/", "qta||Some Name:1|0|AT||"},
    {"project://a%2Fb@x/", "project|a%2Fb|x|0|AT||"}, {"//server/dir", "file||server|0|A{dir}||"},
    {"ftp://us%65r:p%40ss;x=%2a@h/", "ftp|user:p%40ss;x=*|h|21|AT||"},
    // Paths, queries and fragments.
    {"", "|||0|||"}, {"?q#f", "|||0||q|f"}, {".", "|||0|T||"}, {"../x", "|||0|{..}{x}||"},
    {"a/./b/../c/", "|||0|T{a}{c}||"}, {"a/../../b/..", "|||0|T{..}||"},
    {"http://h/../x", "http||h|80|A{x}||"}, {"http://h/a/b/../../..", "http||h|80|AT||"},
    {"http:/../x", "http|||0|A{..}{x}||"}, {"urn:a:b", "urn|||0|{a:b}||"},
    {"1http://x", "|||0|{1http:}{}{x}||"}, {"http://h//a%2Fb//", "http||h|80|AT{}{a/b}{}||"},
    {"http://h/?a%3db&c%3ad+%2b%7e%20", "http||h|80|AT|a%3Db&c:d+%2B~%20|"},
    {"http://h/#a%2fb%23?%5B]", "http||h|80|AT||a/b%23?%5B]"},
    {"http://h/?a#b#c", "http||h|80|AT|a|b%23c"},
    {"http://h/[[a/b?c]]/d", "http||h|80|A{[[a/b?c]]}{d}||", TemplateMode::kOn},
    {"http://h/[[a/b?c]]/d", "http||h|80|A{[[a}{b}|c]]/d|"},
    {"http://h/x[[%zz]]y%41", "http||h|80|A{x[[%zz]]yA}||", TemplateMode::kOn},
    {"http://h/[[a/b", "http||h|80|A{[[a}{b}||", TemplateMode::kOn},
    {"http://h/?[[a#b]]&x=%41#[[ ]]", "http||h|80|AT|[[a#b]]&x=A|[[ ]]", TemplateMode::kOn},
};

const char* const kInvalidTexts[] = {
    "http://server1:65536/", "http://server1:/", "http://server1:8a/", "http://[fe80::1%eth0]/",
    "http://[fe80::1%25]/", "http://[fe80::1%25e.0]/", "http://[fe80::1%25e%zz]/", "http://[::]/",
    "http://[::1", "http://[::1]x/", "http://[v1.x]/", "http://a@b@c/", "http://u[1]@h/",
    "http://:80/", "http://-h/", "http://h-/", "http://h_x/", "http://a..b/", "http://h%00/",
    "http://h%zz/", "http://host?x", "http://host#f", "http://h/%zz", "http://h/?%g1",
    "http://h/#%", "qta://%zz/", "qta://a%01/"};
// clang-format on

TEST(URIParse, ValidTexts) {
  for (const ParseCase& c : kParseCases) {
    SCOPED_TRACE(c.text);
    const std::optional<qta::URI> uri = qta::URI::tryParse(c.text, c.templateMode);
    ASSERT_TRUE(uri.has_value());
    EXPECT_EQ(describe(*uri), c.expected);
    EXPECT_EQ(describe(qta::URI(c.text, c.templateMode)), c.expected);
  }
}

TEST(URIParse, InvalidTextsGiveTheEmptyURI) {
  for (const char* text : kInvalidTexts) {
    SCOPED_TRACE(text);
    qta::URI::Data data;
    data.scheme = "stale";
    EXPECT_FALSE(qta::URI::parse(text, TemplateMode::kOff, data));
    EXPECT_TRUE(data.scheme.empty());
    EXPECT_EQ(describe(qta::URI(text)), "|||0|||");
  }
}

std::string repeat(const std::string& piece, size_t count) {
  std::string out;
  for (size_t i = 0; i < count; ++i) out += piece;
  return out;
}

// Adversarial texts that a quadratic step would take minutes on. The bound is
// generous for sanitizer builds on a busy machine.
TEST(URIHostile, LargeTextsTakeLinearTime) {
  const auto start = std::chrono::steady_clock::now();
  const qta::URI climbing("http://h/" + repeat("a/", 50000) + repeat("../", 100000) + "x");
  EXPECT_EQ(climbing.toString(), "http://h/x");
  EXPECT_EQ(qta::URI(repeat("../", 100000) + "x").path().segments.size(), 100001u);
  const std::string opens = repeat("[[/", 100000);
  const qta::URI templated("http://h/" + opens + "?" + repeat("[[&[[=", 100000) + "#" + opens,
                           TemplateMode::kOn);
  EXPECT_EQ(templated.path().segments.size(), 100000u);
  qta::uri::QueryParameters parameters;
  qta::uri::parseQuery(repeat("[[=&", 100000), TemplateMode::kOn, parameters);
  EXPECT_EQ(parameters.size(), 1u);
  EXPECT_EQ(qta::uri::findOutsidePlaceholder(std::string(1 << 20, '['), '/', 1 << 19),
            std::string::npos);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

}  // namespace
