#include "qta/utils/format.h"

#include <gtest/gtest.h>

#include <string>

namespace qta {
namespace {

TEST(FormatString, FormatsLikePrintfAtAnyLength) {
  EXPECT_EQ(formatString("%d-%s\\u%04X", 42, "x", 31), "42-x\\u001F");
  EXPECT_EQ(formatString("a%cb", 0), std::string("a\0b", 3));
  // Lengths around the 512-byte start size: the text must fit exactly.
  for (size_t length : {510u, 511u, 512u, 513u, 100000u}) {
    const std::string text(length, 'x');
    EXPECT_EQ(formatString("<%s>", text.c_str()), "<" + text + ">");
  }
}

}  // namespace
}  // namespace qta
