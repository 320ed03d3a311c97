#include <gtest/gtest.h>

#include <string>

#include "errors/shorten_reference.h"
#include "qta/errors/catalogue.h"

namespace qta::errors {
namespace {

std::string repeat(const std::string& piece, size_t times) {
  std::string out;
  for (size_t i = 0; i < times; ++i) out += piece;
  return out;
}

TEST(ShortenForMessage, KeepsFiftyCodePointsAtEachEnd) {
  const std::string head = repeat("h\xC3\xA9", 25);          // 50 code points
  const std::string tail = repeat("\xF0\x9F\x98\x80t", 25);  // 50 code points
  EXPECT_EQ(shortenForMessage(head + repeat("\xE2\x82\xAC", 50) + tail), head + "..." + tail);
  EXPECT_EQ(shortenForMessage(head + "m" + tail), head + "..." + tail);
  const std::string exactly100 = head + tail;
  EXPECT_EQ(shortenForMessage(exactly100), exactly100);
  EXPECT_EQ(shortenForMessage("abcdefgh", 4), "ab...gh");
  EXPECT_EQ(shortenForMessage("abcde", 3), "a...e");
}

// Texts with broken sequences, stray continuation bytes, surrogates and NUL
// bytes are shortened (or kept) without failing, as the reference allows.
TEST(ShortenForMessage, AcceptsAnyBytes) {
  const std::string cases[] = {
      repeat("\xFF", 300),
      repeat("\x80", 300),
      repeat("a\xC3", 120),
      repeat("\xED\xA0\x80", 120),
      repeat(std::string(1, '\0'), 101),
      repeat("\xF0\x9F\x98", 60) + "\xF0",
      repeat("\x80", 99) + "ab",
  };
  for (const std::string& text : cases) {
    const std::string result = shortenForMessage(text);
    EXPECT_EQ(qtatest::checkShortened(text, result, kMessageTextLimit), "") << text.size();
  }
  EXPECT_EQ(shortenForMessage(repeat("\xFF", 101)), repeat("?", 50) + "..." + repeat("?", 50));
  EXPECT_EQ(shortenForMessage(repeat("\x80", 300)), repeat("\x80", 300));  // no code point at all
}

}  // namespace
}  // namespace qta::errors
