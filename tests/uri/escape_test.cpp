#include "qta/uri/escape.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace {

using qta::TemplateMode;
using qta::uri::CharSet;

struct NormalizeCase {
  const char* text;
  const char* query;     // with the query sets
  const char* fragment;  // with the fragment sets
  TemplateMode templateMode = TemplateMode::kOff;
};

// One table for both component kinds, so the difference of their sets shows.
// clang-format off
const NormalizeCase kNormalizeCases[] = {
    {"a%3db", "a%3Db", "a=b"}, {"a%3ab", "a:b", "a:b"}, {"%2b+", "%2B+", "++"},
    {"%7e%41%2d", "~A-", "~A-"}, {"100%", "100%25", "100%25"}, {"%g1%", "%25g1%25", "%25g1%25"},
    {"a b\"<>", "a%20b%22%3C%3E", "a%20b%22%3C%3E"}, {"&=;,[]", "&=;%2C[]", "&=;,[]"},
    {"%26%5b", "%26%5B", "&%5B"}, {"\xC3\xA9", "%C3%A9", "%C3%A9"},
    {"[[ %zz]] ", "[[ %zz]]%20", "[[ %zz]]%20", TemplateMode::kOn},
    {"[[ %zz]] ", "[[%20%25zz]]%20", "[[%20%25zz]]%20"},
    {"[[ unclosed", "[[%20unclosed", "[[%20unclosed", TemplateMode::kOn},
};
// clang-format on

TEST(URIEscape, NormalizeComponent) {
  using qta::uri::normalizeComponent;
  for (const NormalizeCase& c : kNormalizeCases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(normalizeComponent(c.text, qta::uri::kQueryDecodeSet, qta::uri::kQueryKeepSet,
                                 c.templateMode),
              c.query);
    EXPECT_EQ(normalizeComponent(c.text, qta::uri::kFragmentDecodeSet, qta::uri::kFragmentKeepSet,
                                 c.templateMode),
              c.fragment);
  }
}

TEST(URIEscape, PercentEncodeAndDisplayDecode) {
  EXPECT_EQ(qta::uri::percentEncode(std::string("%41\xC3\xA9\0", 6)), "%2541%C3%A9%00");
  EXPECT_EQ(qta::uri::percentEncode("[[a b", CharSet(), TemplateMode::kOn), "%5B%5Ba%20b");
  EXPECT_EQ(qta::uri::displayDecode("%01%20%zz", CharSet("\x01 ")), "%01%20%zz");  // <= 32
}

TEST(URIEscape, PercentDecodeAndValidity) {
  struct Case {
    const char* text;
    const char* lenient;  // percentDecodeLeniently; percentDecode gives it when valid
    bool valid;
    TemplateMode templateMode = TemplateMode::kOff;
  };
  // clang-format off
  const Case cases[] = {
      {"", "", true}, {"a%41%4a", "aAJ", true}, {"%4", "%4", false},
      {"%zz%41%", "%zzA%", false}, {"%%41", "%A", false}, {"[[%41%]]%41", "[[A%]]A", false},
      {"[[%41%]]%41", "[[%41%]]A", true, TemplateMode::kOn},
      {"[[%", "[[%", false, TemplateMode::kOn},
  };
  // clang-format on
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(qta::uri::percentDecodeLeniently(c.text, c.templateMode), c.lenient);
    EXPECT_EQ(qta::uri::percentDecode(c.text, c.templateMode),
              c.valid ? std::optional<std::string>(c.lenient) : std::nullopt);
    EXPECT_EQ(qta::uri::hasValidEscapes(c.text, c.templateMode), c.valid);
  }
  EXPECT_EQ(qta::uri::percentDecode(std::string("%00x", 4)), std::string("\0x", 2));
}

TEST(URIEscape, FindOutsidePlaceholder) {
  using qta::uri::findOutsidePlaceholder;
  EXPECT_EQ(findOutsidePlaceholder("a/[[b/c]]/d", '/', 2), 9u);
  EXPECT_EQ(findOutsidePlaceholder("[[a/b", '/'), 3u);  // an unclosed "[[" hides nothing
  EXPECT_EQ(findOutsidePlaceholder("x[[a/]]", '/'), std::string::npos);
  EXPECT_EQ(findOutsidePlaceholder("x/", '/', 5), std::string::npos);
  EXPECT_EQ(findOutsidePlaceholder("[[a/b]]/c", '/', 3), 7u);  // from inside a placeholder
  EXPECT_EQ(findOutsidePlaceholder(static_cast<const char*>("x[[a]]/[[/]]/"), '/', 9), 12u);
}

}  // namespace
