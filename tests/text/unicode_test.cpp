#include "qta/text/unicode.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "text/unicode_checks.h"

namespace {

using namespace qta::text;

TEST(UnicodeEncode, CodePointsAndTheirDroppedValues) {
  const std::vector<std::pair<char32_t, std::string>> cases = {
      {0x7F, "\x7F"},
      {0x80, "\xC2\x80"},
      {0x7FF, "\xDF\xBF"},
      {0x800, "\xE0\xA0\x80"},
      {0xD7FF, "\xED\x9F\xBF"},
      {0xD800, ""},
      {0xDFFF, ""},
      {0xE000, "\xEE\x80\x80"},
      {0xFFFF, "\xEF\xBF\xBF"},
      {0x10000, "\xF0\x90\x80\x80"},
      {0x10FFFF, "\xF4\x8F\xBF\xBF"},
      {0x110000, ""},
      {0xFFFFFFFF, ""},
  };
  for (const auto& [codePoint, utf8] : cases) {
    std::string out = "x";
    appendUtf8(out, codePoint);
    EXPECT_EQ(out, "x" + utf8) << std::hex << static_cast<uint32_t>(codePoint);
    EXPECT_EQ(utf32ToUtf8(std::u32string(1, codePoint)), utf8);
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
  const std::vector<std::pair<std::u16string, std::string>> cases = {
      {u"A\u00E9\u20AC\uFFFF", "A\xC3\xA9\xE2\x82\xAC\xEF\xBF\xBF"},
      {{0xD83D, 0xDE00}, "\xF0\x9F\x98\x80"},
      {{0xDBFF, 0xDFFF}, "\xF4\x8F\xBF\xBF"},
      {{0xD83D, 0x0041}, "A"},  // high surrogate then a non-surrogate
      {{0xDE00}, ""},           // lone low surrogate
      {{0x0041, 0xD83D}, "A"},  // high surrogate at the end
      {{0xD83D, 0xD83D, 0xDE00}, "\xF0\x9F\x98\x80"},
  };
  for (const auto& [units, utf8] : cases) {
    EXPECT_EQ(utf16ToUtf8(units), utf8);
    EXPECT_EQ(utf16ToUtf8Length(units), utf8.size());
  }
}

// Runs of one shape of text (what the vector kernels handle in one step) with
// an odd unit at every position, so that it lands at every place of a block and
// of the units looked at ahead of one; each input on every code path, in every
// form, with exactly sized buffers. Short runs go through the steps for short
// texts, the longest one through the kernels.
TEST(UnicodeEncode, OddUnitsInRunsOnEveryPath) {
  const std::u16string runs[] = {
      u"a",
      u"\u00E9",
      u"\u0416 ",
      u"\u4E2D",
      u"\U0001F600",
      u"a\u00E9\u4E2D",
      u"\u07FF\u0800\u007F\u0080\uFFFF",
      u"\u05D0\u05D1 abcdefghijk"};  // words of two-byte letters with ASCII-only blocks
  const std::u16string odd16[] = {{0xD800}, {0xDC00}, u"\U0001F600", {0xFFFF},
                                  u"a",     {0xE9},   {0x4E2D},      {0xDBFF, 0xDBFF}};
  const std::u32string odd32[] = {{0xD800},   {0xDFFF},     {0x10041}, {0x10FFFF},
                                  {0x110000}, {0xFFFF0041}, {0x4E2D},  {0x41}};
  for (const size_t runUnits : {7, 8, 15, 16, 23, 56}) {
    for (const std::u16string& run : runs) {
      std::u16string base;
      while (base.size() < runUnits) base += run;
      base.resize(runUnits);
      std::u32string base32(base.begin(), base.end());  // surrogates read as code points
      for (size_t at = 0; at <= runUnits; ++at) {
        for (const std::u16string& odd : odd16) {
          const std::u16string input = base.substr(0, at) + odd + base.substr(at);
          const auto check = [&] {
            return unicoderef::checkDirection(unicoderef::kUtf16ToUtf8, input);
          };
          EXPECT_EQ(unicoderef::onEveryPath(check), "") << testing::PrintToString(input);
        }
        for (const std::u32string& odd : odd32) {
          const std::u32string input = base32.substr(0, at) + odd + base32.substr(at);
          const auto check = [&] {
            return unicoderef::checkDirection(unicoderef::kUtf32ToUtf8, input);
          };
          EXPECT_EQ(unicoderef::onEveryPath(check), "")
              << at << " " << static_cast<uint32_t>(odd[0]);
        }
      }
    }
  }
}

// Texts that change shape between and inside blocks: every ordered pair of
// runs of each shape, at lengths that end a run anywhere in a block, so the
// kernels hand over between their steps, their ASCII loop and the scalar code.
TEST(UnicodeEncode, ShapeChangesOnEveryPath) {
  const std::u16string shapes[] = {u"a",          u"\u0416",        u"\u4E2D",
                                   u"\U0001F600", u"\u0416 \u4E2D", std::u16string{0xDC00}};
  for (const std::u16string& first : shapes) {
    for (const std::u16string& second : shapes) {
      for (size_t firstUnits : {7, 24, 41}) {
        std::u16string input;
        while (input.size() < firstUnits) input += first;
        while (input.size() < firstUnits + 70) input += second;
        const std::u32string input32(input.begin(), input.end());
        const auto check = [&] {
          return unicoderef::checkDirection(unicoderef::kUtf16ToUtf8, input) +
                 unicoderef::checkDirection(unicoderef::kUtf32ToUtf8, input32);
        };
        EXPECT_EQ(unicoderef::onEveryPath(check), "") << testing::PrintToString(input);
      }
    }
  }
}

// Short texts of every length up to where the kernels take over and past it,
// each shape started at every place of its pattern: the steps for short texts
// convert them whole or in part, with overlapping blocks whose exact-size
// stores must land inside an exactly sized buffer.
TEST(UnicodeEncode, ShortTextsOfEveryLength) {
  const std::u16string patterns[] = {
      u"\u041B\u043E\u0440\u0435\u043C ",    // words of two-byte letters
      u"\u05D0",                             // two-byte letters only
      std::u16string{0x80, 0x7FF, 0x7F, 0},  // the ends of the one- and two-byte ranges
      u"abc\u00E9defgh",                     // accented letters in ASCII
      u"\u0416\u0416\u0416\u0416\u0416\u0416\u0416\u0416\u0416\u0416\u0800",  // one three-byte unit
      u"\u0416\u0416\u0416\u0416\u0416\u0416\u0416\u0416\u0416\U0001F600"};   // a pair
  for (const std::u16string& pattern : patterns) {
    for (size_t start = 0; start < pattern.size(); ++start) {
      for (size_t units = 1; units <= 40; ++units) {
        std::u16string input;
        for (size_t i = 0; i < units; ++i) input += pattern[(start + i) % pattern.size()];
        const auto check = [&] {
          return unicoderef::checkDirection(unicoderef::kUtf16ToUtf8, input);
        };
        EXPECT_EQ(unicoderef::onEveryPath(check), "") << testing::PrintToString(input);
      }
    }
  }
}

// ASCII text long enough for the wide ASCII steps with a few other units at
// every position: the steps convert runs with such units themselves, hand
// longer text of another script to the block kernels, and leave surrogates and
// the text's end to the scalar code.
TEST(UnicodeEncode, OtherUnitsInLongAsciiText) {
  const std::u16string clusters[] = {
      u"\u00E9",
      u"\u2013",
      u"\u0416\u0436",
      u"\u4E2D\u6587 \u00B0",
      u"\U0001F600",
      std::u16string{0xD800},
      std::u16string(40, u'\u0416'),  // three blocks or more of Cyrillic
      u"\u00E9 and \u2013 then \u0416 at \uFFFF"};
  const std::u16string ascii(150, u'a');
  for (const std::u16string& cluster : clusters) {
    for (size_t at = 0; at <= ascii.size(); ++at) {
      // The same cluster again 70 units on, when the text reaches that far.
      std::u16string input = ascii.substr(0, at) + cluster + ascii.substr(at);
      if (at + cluster.size() + 70 < input.size()) input.insert(at + cluster.size() + 70, cluster);
      const auto check = [&] {
        return unicoderef::checkDirection(unicoderef::kUtf16ToUtf8, input);
      };
      EXPECT_EQ(unicoderef::onEveryPath(check), "") << testing::PrintToString(input);
    }
  }
}

// The table holds the reference model to the rules; the library is held to the
// model with each case inside ASCII padding of many lengths, so that it lands at
// every position of the block-wise fast paths (padding never changes how the
// case itself is read).
TEST(UnicodeDecode, ReplacementAndDroppingRules) {
  struct Case {
    std::string utf8;
    std::u16string utf16;
    std::u32string utf32;
    bool valid;
  };
  const std::vector<Case> cases = {
      {"\xC0\x80", u"?", U"?", false},  // overlong NUL
      {"\xC1\xBF", u"?", U"?", false},  // overlong 0x7F
      {"\xC3", u"?", U"?", false},      // cut off
      {"\xC3\x41", u"?A", U"?A", false},
      {"\x80", u"", U"", true},  // stray continuation
      {"\xE2\x82\xAC", u"\u20AC", U"\u20AC", true},
      {"\xE2\x82", u"?", U"?", false},  // cut off, 0x82 then skipped
      {"\xE2\x82\x41", u"?A", U"?A", false},
      {"\xE0\x9F\xBF", u"?", U"?", false},  // overlong 0x7FF
      {"\xE0\xA0\x80", u"\u0800", U"\u0800", true},
      {"\xED\xA0\x80", std::u16string{0xD800}, std::u32string{0xD800}, true},
      {"\xF4\x8F\xBF\xBF", u"\U0010FFFF", U"\U0010FFFF", true},
      {"\xF4\x90\x80\x80", u"??", U"?", false},  // past 0x10FFFF
      {"\xF5\x80\x80\x80", u"??", U"?", false},
      {"\xF0\x8F\xBF\xBF", u"??", U"?", false},  // overlong
      {"\xF0\x9F\x98", u"??", U"?", false},      // cut off
      {"\xF0\x9F\x41", u"??A", U"?A", false},
      {"\xF8\x88\x80\x80\x80", u"??", U"?", false},
      {"\xFF\x41", u"??A", U"?A", false},
      {"\xE2\xF0\x9F\x98\x80", u"?\U0001F600", U"?\U0001F600", false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.utf8));
    EXPECT_EQ(unicoderef::utf8ToUtf16(c.utf8), c.utf16);
    EXPECT_EQ(unicoderef::utf8ToUtf32(c.utf8), c.utf32);
    EXPECT_EQ(unicoderef::isValidUtf8(c.utf8), c.valid);
    for (size_t pad : {0, 1, 3, 13, 15, 16, 17, 31, 40}) {
      const std::string input = std::string(pad, 'a') + c.utf8 + std::string(pad, 'a');
      const auto check = [&] {
        return unicoderef::checkDirection(unicoderef::kUtf8ToUtf16, input) +
               unicoderef::checkDirection(unicoderef::kUtf8ToUtf32, input) +
               unicoderef::checkValidity(input);
      };
      EXPECT_EQ(unicoderef::onEveryPath(check), "") << pad;
    }
  }
}

}  // namespace
