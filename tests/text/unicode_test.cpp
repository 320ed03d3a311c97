#include "qta/text/unicode.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "text/unicode_checks.h"

namespace {

using namespace qta::text;

std::string bytes(std::initializer_list<unsigned> list) {
  std::string s;
  for (unsigned b : list) s.push_back(static_cast<char>(b));
  return s;
}

TEST(UnicodeEncode, CodePointsAndTheirDroppedValues) {
  struct Case {
    char32_t codePoint;
    std::string utf8;
  };
  const std::vector<Case> cases = {
      {0x41, "A"},
      {0x7F, bytes({0x7F})},
      {0x80, bytes({0xC2, 0x80})},
      {0xE9, bytes({0xC3, 0xA9})},
      {0x7FF, bytes({0xDF, 0xBF})},
      {0x800, bytes({0xE0, 0xA0, 0x80})},
      {0xD7FF, bytes({0xED, 0x9F, 0xBF})},
      {0xD800, ""},
      {0xDFFF, ""},
      {0xE000, bytes({0xEE, 0x80, 0x80})},
      {0xFFFF, bytes({0xEF, 0xBF, 0xBF})},
      {0x10000, bytes({0xF0, 0x90, 0x80, 0x80})},
      {0x1F600, bytes({0xF0, 0x9F, 0x98, 0x80})},
      {0x10FFFF, bytes({0xF4, 0x8F, 0xBF, 0xBF})},
      {0x110000, ""},
      {0xFFFFFFFF, ""},
  };
  for (const Case& c : cases) {
    std::string out = "x";
    appendUtf8(out, c.codePoint);
    EXPECT_EQ(out, "x" + c.utf8) << std::hex << static_cast<uint32_t>(c.codePoint);
    EXPECT_EQ(utf32ToUtf8(std::u32string(1, c.codePoint)), c.utf8);
  }
}

TEST(UnicodeEncode, Utf32LengthIsTheDocumentedEstimate) {
  EXPECT_EQ(utf32ToUtf8Length(U"A\u00E9\u20AC\U0001F600"), 1u + 2 + 3 + 4);
  EXPECT_EQ(utf32ToUtf8Length(std::u32string{0xD800}), 3u);  // written as nothing
  EXPECT_EQ(utf32ToUtf8Length(std::u32string{0x10FFFE}), 4u);
  EXPECT_EQ(utf32ToUtf8Length(std::u32string{0x10FFFF}), 0u);  // written as four bytes
  EXPECT_EQ(utf32ToUtf8Length(std::u32string{0x110000}), 0u);
  // The string form does not depend on the estimate, even when it is far off.
  const std::u32string maxima(700, 0x10FFFF);
  EXPECT_EQ(utf32ToUtf8(maxima).size(), 2800u);
}

TEST(UnicodeEncode, Utf16PairsAndUnpairedSurrogates) {
  struct Case {
    std::u16string units;
    std::string utf8;
  };
  const std::vector<Case> cases = {
      {u"A\u00E9\u20AC\uFFFF", bytes({'A', 0xC3, 0xA9, 0xE2, 0x82, 0xAC, 0xEF, 0xBF, 0xBF})},
      {{0xD83D, 0xDE00}, bytes({0xF0, 0x9F, 0x98, 0x80})},
      {{0xDBFF, 0xDFFF}, bytes({0xF4, 0x8F, 0xBF, 0xBF})},
      {{0xD83D, 0x0041}, "A"},  // high surrogate then a non-surrogate
      {{0xDE00}, ""},           // lone low surrogate
      {{0x0041, 0xD83D}, "A"},  // high surrogate at the end
      {{0xDE00, 0xD83D}, ""},   // reversed pair
      {{0xD83D, 0xD83D, 0xDE00}, bytes({0xF0, 0x9F, 0x98, 0x80})},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(utf16ToUtf8(c.units), c.utf8);
    EXPECT_EQ(utf16ToUtf8Length(c.units), c.utf8.size());
  }
}

// Each case is also run inside ASCII padding of many lengths, so that it lands
// at every position of the block-wise fast paths; the padding never changes
// how the case itself is read.
TEST(UnicodeDecode, ReplacementAndDroppingRules) {
  struct Case {
    std::string utf8;
    std::u16string utf16;
    std::u32string utf32;
    bool valid;
  };
  const std::vector<Case> cases = {
      {"", u"", U"", true},
      {bytes({0xC3, 0xA9}), u"\u00E9", U"\u00E9", true},
      {bytes({0xC0, 0x80}), u"?", U"?", false},  // overlong NUL
      {bytes({0xC1, 0xBF}), u"?", U"?", false},  // overlong 0x7F
      {bytes({0xC3}), u"?", U"?", false},        // cut off
      {bytes({0xC3, 0x41}), u"?A", U"?A", false},
      {bytes({0x80}), u"", U"", true},  // stray continuation
      {bytes({0xC2, 0x80, 0xBF}), u"\u0080", U"\u0080", true},
      {bytes({0xE2, 0x82, 0xAC}), u"\u20AC", U"\u20AC", true},
      {bytes({0xE2, 0x82}), u"?", U"?", false},  // cut off, 0x82 then skipped
      {bytes({0xE2, 0x82, 0x41}), u"?A", U"?A", false},
      {bytes({0xE0, 0x9F, 0xBF}), u"?", U"?", false},  // overlong 0x7FF
      {bytes({0xE0, 0xA0, 0x80}), u"\u0800", U"\u0800", true},
      {bytes({0xED, 0xA0, 0x80}), std::u16string{0xD800}, std::u32string{0xD800}, true},
      {bytes({0xF0, 0x9F, 0x98, 0x80}), u"\U0001F600", U"\U0001F600", true},
      {bytes({0xF4, 0x8F, 0xBF, 0xBF}), u"\U0010FFFF", U"\U0010FFFF", true},
      {bytes({0xF4, 0x90, 0x80, 0x80}), u"??", U"?", false},  // past 0x10FFFF
      {bytes({0xF5, 0x80, 0x80, 0x80}), u"??", U"?", false},
      {bytes({0xF0, 0x8F, 0xBF, 0xBF}), u"??", U"?", false},  // overlong
      {bytes({0xF0, 0x9F, 0x98}), u"??", U"?", false},        // cut off
      {bytes({0xF0, 0x9F, 0x41}), u"??A", U"?A", false},
      {bytes({0xF8, 0x88, 0x80, 0x80, 0x80}), u"??", U"?", false},
      {bytes({0xFF, 0x41}), u"??A", U"?A", false},
      {bytes({0xE2, 0xF0, 0x9F, 0x98, 0x80}), u"?\U0001F600", U"?\U0001F600", false},
  };
  for (const Case& c : cases) {
    for (size_t pad : {0, 1, 3, 13, 15, 16, 17, 31, 40}) {
      const std::string padding(pad, 'a');
      const std::string input = padding + c.utf8 + padding;
      const std::u16string pad16(pad, u'a');
      const std::u32string pad32(pad, U'a');
      SCOPED_TRACE(testing::PrintToString(input));
      EXPECT_EQ(utf8ToUtf16(input), pad16 + c.utf16 + pad16);
      EXPECT_EQ(utf8ToUtf32(input), pad32 + c.utf32 + pad32);
      EXPECT_EQ(isValidUtf8(input), c.valid);
      EXPECT_EQ(unicoderef::onEveryPath([&] {
                  return unicoderef::checkDirection(unicoderef::kUtf8ToUtf16, input) +
                         unicoderef::checkDirection(unicoderef::kUtf8ToUtf32, input);
                }),
                "");
    }
  }
}

}  // namespace
