#include "qta/uri/escape.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using qta::TemplateMode;

using qta::uri::CharSet;

struct NormalizeCase {
  const char* text;
  qta::TemplateMode templateMode;
  const char* query;     // with the query sets
  const char* fragment;  // with the fragment sets
};

// One table for both component kinds, so the difference of their sets shows.
const NormalizeCase kNormalizeCases[] = {
    {"a%3db", TemplateMode::kOff, "a%3Db", "a=b"},
    {"a%3ab", TemplateMode::kOff, "a:b", "a:b"},
    {"%2b+", TemplateMode::kOff, "%2B+", "++"},
    {"%7e%41%2d", TemplateMode::kOff, "~A-", "~A-"},
    {"100%", TemplateMode::kOff, "100%25", "100%25"},
    {"%g1%", TemplateMode::kOff, "%25g1%25", "%25g1%25"},
    {"a b\"<>", TemplateMode::kOff, "a%20b%22%3C%3E", "a%20b%22%3C%3E"},
    {"&=;,[]", TemplateMode::kOff, "&=;%2C[]", "&=;,[]"},
    {"%26%5b", TemplateMode::kOff, "%26%5B", "&%5B"},
    {"\xC3\xA9", TemplateMode::kOff, "%C3%A9", "%C3%A9"},
    {"[[ %zz]] ", TemplateMode::kOn, "[[ %zz]]%20", "[[ %zz]]%20"},
    {"[[ %zz]] ", TemplateMode::kOff, "[[%20%25zz]]%20", "[[%20%25zz]]%20"},
    {"[[ unclosed", TemplateMode::kOn, "[[%20unclosed", "[[%20unclosed"},
};

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

TEST(URIEscape, PercentEncode) {
  using qta::uri::percentEncode;
  EXPECT_EQ(percentEncode("a b/c:d+e@f~", qta::uri::kPathSegmentSet), "a%20b%2Fc:d%2Be%40f~");
  EXPECT_EQ(percentEncode("%41\xC3\xA9"), "%2541%C3%A9");
  EXPECT_EQ(percentEncode(std::string("a\0b", 3)), "a%00b");
  EXPECT_EQ(percentEncode("[[a b]]x y", CharSet(), TemplateMode::kOn), "[[a b]]x%20y");
  EXPECT_EQ(percentEncode("[[a b", CharSet(), TemplateMode::kOn), "%5B%5Ba%20b");
  EXPECT_EQ(percentEncode("[[a b]]", CharSet(), TemplateMode::kOff), "%5B%5Ba%20b%5D%5D");
}

TEST(URIEscape, DisplayDecode) {
  using qta::uri::displayDecode;
  EXPECT_EQ(displayDecode("a%3Db%26c%25d%20e%zz%", qta::uri::kQueryDisplaySet),
            "a=b&c%25d%20e%zz%");
  EXPECT_EQ(displayDecode("%23%2f%3A", qta::uri::kUserInfoDisplaySet), "#/:");
  EXPECT_EQ(displayDecode("%01%20", CharSet("\x01 ")), "%01%20");  // 32 and below stay escaped
  EXPECT_EQ(displayDecode("[[%23]]%23", qta::uri::kFragmentDisplaySet, TemplateMode::kOn),
            "[[%23]]#");
}

TEST(URIEscape, PercentDecodeAndValidity) {
  struct Case {
    const char* text;
    qta::TemplateMode templateMode;
    const char* decoded;
    bool valid;
  };
  const Case cases[] = {
      {"", TemplateMode::kOff, "", true},
      {"a%41%4a", TemplateMode::kOff, "aAJ", true},
      {"%4", TemplateMode::kOff, "%4", false},
      {"%", TemplateMode::kOff, "%", false},
      {"%zz%41", TemplateMode::kOff, "%zzA", false},
      {"%%41", TemplateMode::kOff, "%A", false},
      {"[[%41%]]%41", TemplateMode::kOn, "[[%41%]]A", true},
      {"[[%41%]]%41", TemplateMode::kOff, "[[A%]]A", false},
      {"[[%", TemplateMode::kOn, "[[%", false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    bool ok = !c.valid;
    EXPECT_EQ(qta::uri::percentDecode(c.text, ok, c.templateMode), c.decoded);
    EXPECT_EQ(ok, c.valid);
    EXPECT_EQ(qta::uri::hasValidEscapes(c.text, c.templateMode), c.valid);
  }
  bool ok = false;
  EXPECT_EQ(qta::uri::percentDecode(std::string("%00x", 4), ok), std::string("\0x", 2));
}

TEST(URIEscape, FindOutsidePlaceholder) {
  using qta::uri::findOutsidePlaceholder;
  constexpr size_t npos = std::string::npos;
  EXPECT_EQ(findOutsidePlaceholder("a/[[b/c]]/d", '/'), 1u);
  EXPECT_EQ(findOutsidePlaceholder("a/[[b/c]]/d", '/', 2), 9u);
  EXPECT_EQ(findOutsidePlaceholder("[[a/b", '/'), 3u);  // an unclosed "[[" hides nothing
  EXPECT_EQ(findOutsidePlaceholder("x[[a/]]", '/'), npos);
  EXPECT_EQ(findOutsidePlaceholder("x/", '/', 5), npos);
  EXPECT_EQ(findOutsidePlaceholder("[[?]]?", '?', 0), 5u);
  EXPECT_EQ(findOutsidePlaceholder("[[a/b]]/c", '/', 3), 7u);  // from inside a placeholder
  EXPECT_EQ(findOutsidePlaceholder("x[[a]]/[[/]]/", '/', 2), 6u);
  EXPECT_EQ(findOutsidePlaceholder("x[[a]]/[[/]]/", '/', 9), 12u);
  const char* cText = "[[&]]&";
  EXPECT_EQ(findOutsidePlaceholder(cText, '&'), 5u);
}

}  // namespace
