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

// Broken sequences count as one '?' each and stray continuation bytes as
// nothing; the fuzz harness holds every other input to the reference.
TEST(ShortenForMessage, AcceptsAnyBytes) {
  EXPECT_EQ(shortenForMessage(repeat("\xFF", 101)), repeat("?", 50) + "..." + repeat("?", 50));
  EXPECT_EQ(shortenForMessage(repeat("\x80", 300)), repeat("\x80", 300));
  const std::string mixed = repeat("a\xC3\xED\xA0\x80", 60) + std::string(3, '\0');
  EXPECT_EQ(qtatest::checkShortened(mixed, shortenForMessage(mixed), kMessageTextLimit), "");
}

}  // namespace
}  // namespace qta::errors
