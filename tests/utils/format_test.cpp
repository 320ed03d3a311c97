#include "qta/utils/format.h"

#include <gtest/gtest.h>

#include <string>

namespace qta {
namespace {

TEST(FormatString, FormatsLikePrintf) {
  EXPECT_EQ(formatString("%d-%s", 42, "x"), "42-x");
  EXPECT_EQ(formatString("\\u%04X", 31), "\\u001F");
  EXPECT_EQ(formatString("%s", ""), "");
}

TEST(FormatString, GrowsPastTheFirstBuffer) {
  // Lengths around the 512-byte start size: the text must fit exactly.
  for (size_t length : {510u, 511u, 512u, 513u, 100000u}) {
    const std::string text(length, 'x');
    const std::string result = formatString("<%s>", text.c_str());
    ASSERT_EQ(result.size(), length + 2);
    EXPECT_EQ(result, "<" + text + ">");
  }
}

TEST(FormatString, KeepsEmbeddedNul) {
  const std::string result = formatString("a%cb", 0);
  ASSERT_EQ(result.size(), 3u);
  EXPECT_EQ(result[1], '\0');
}

}  // namespace
}  // namespace qta
