#include "qta/errors/catalogue.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>

#include "errors/shorten_reference.h"

namespace qta::errors {
namespace {

TEST(ErrorCatalogue, HoldsEveryCodeInItsGroupAndFallsBackToCodeZero) {
  // The group of each code; 53 and 54 are empty slots.
  const std::string groups = "0000000000000000111111111112222222222222222223333335600";
  ASSERT_EQ(catalogue().size(), groups.size());
  for (uint32_t code = 0; code < groups.size(); ++code) {
    EXPECT_EQ(errorGroup(code), static_cast<uint32_t>(groups[code] - '0')) << code;
    EXPECT_EQ(errorMessage(code).empty(), code >= 53) << code;
  }
  // The first code of a group is its generic error.
  const std::pair<uint32_t, const char*> generics[] = {
      {0, "Network Error"}, {16, "System Error"},     {27, "File Error"},
      {45, "Input Error"},  {51, "Canceled by user"}, {52, "Unknown Network Error"},
  };
  for (const auto& [code, message] : generics) EXPECT_EQ(errorMessage(code), message);
  EXPECT_EQ(errorMessage(kEmptyInput), "Empthy input string not allowed");
  EXPECT_EQ(errorMessage(kFileNotSupported), "Not Supported");
  EXPECT_EQ(errorMessage(kWrongState), "The operation cannot be executed in the current state");
  // Codes beyond the table fall back to code 0.
  for (uint32_t code : {55u, 1000u, UINT32_MAX}) {
    EXPECT_EQ(errorMessage(code), "Network Error") << code;
    EXPECT_EQ(errorGroup(code), 0u) << code;
  }
  const Catalogue table = {{7, "zero"}, {3, "one"}};
  EXPECT_EQ(errorGroup(table, 1), 3u);
  EXPECT_EQ(errorGroup(table, 2), 7u);
  EXPECT_EQ(errorGroup(Catalogue{}, 0), 0u);
  // A detail loses its trailing line breaks only.
  EXPECT_EQ(errorMessage(kFileNotFound, "a\r\nb\r\n\r\n"), "File not found : a\r\nb");
  EXPECT_EQ(errorMessage(kFileNotFound, "\r\n\n\r"), "File not found");
  EXPECT_EQ(errorMessage(kFileNotFound, ""), "File not found");
  EXPECT_EQ(errorMessage(99, " "), "Network Error :  ");
}

std::string repeat(const std::string& piece, size_t times) {
  std::string out;
  while (times-- > 0) out += piece;
  return out;
}

// Broken sequences count as one '?' each and stray continuation bytes as
// nothing; the fuzz harness holds every other input to the reference.
TEST(ShortenForMessage, KeepsFiftyCodePointsAtEachEnd) {
  const std::string head = repeat("h\xC3\xA9", 25);          // 50 code points
  const std::string tail = repeat("\xF0\x9F\x98\x80t", 25);  // 50 code points
  EXPECT_EQ(shortenForMessage(head + "m" + tail), head + "..." + tail);
  EXPECT_EQ(shortenForMessage(head + tail), head + tail);
  EXPECT_EQ(shortenForMessage("abcde", 3), "a...e");
  EXPECT_EQ(shortenForMessage(repeat("\xFF", 101)), repeat("?", 50) + "..." + repeat("?", 50));
  EXPECT_EQ(shortenForMessage(repeat("\x80", 300)), repeat("\x80", 300));
  const std::string mixed = repeat("a\xC3\xED\xA0\x80", 60) + std::string(3, '\0');
  EXPECT_EQ(qtatest::checkShortened(mixed, shortenForMessage(mixed), kMessageTextLimit), "");
}

}  // namespace
}  // namespace qta::errors
