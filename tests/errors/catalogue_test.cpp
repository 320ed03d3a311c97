#include "qta/errors/catalogue.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace qta::errors {
namespace {

// The groups run in blocks; the first code of a block is its generic error.
struct GroupBlock {
  uint32_t first;
  uint32_t last;
  uint32_t group;
  const char* generic;
};
constexpr GroupBlock kBlocks[] = {
    {0, 15, 0, "Network Error"},     {16, 26, 1, "System Error"},
    {27, 44, 2, "File Error"},       {45, 50, 3, "Input Error"},
    {51, 51, 5, "Canceled by user"}, {52, 52, 6, "Unknown Network Error"},
};

TEST(ErrorCatalogue, HoldsEveryCodeInItsGroupAndTwoEmptySlots) {
  ASSERT_EQ(catalogue().size(), 55u);
  for (const GroupBlock& block : kBlocks) {
    EXPECT_EQ(errorMessage(block.first), block.generic);
    for (uint32_t code = block.first; code <= block.last; ++code) {
      EXPECT_EQ(errorGroup(code), block.group) << code;
      EXPECT_FALSE(errorMessage(code).empty()) << code;
    }
  }
  for (uint32_t code : {53u, 54u}) {
    EXPECT_EQ(errorGroup(code), 0u);
    EXPECT_EQ(errorMessage(code), "");
  }
  EXPECT_EQ(errorMessage(kEmptyInput), "Empthy input string not allowed");
  EXPECT_EQ(errorMessage(kFileNotSupported), "Not Supported");
  EXPECT_EQ(errorMessage(kWrongState), "The operation cannot be executed in the current state");
}

TEST(ErrorCatalogue, CodesBeyondTheTableFallBackToCodeZero) {
  for (uint32_t code : {55u, 1000u, UINT32_MAX}) {
    EXPECT_EQ(errorMessage(code), "Network Error") << code;
    EXPECT_EQ(errorGroup(code), 0u) << code;
  }
  const Catalogue table = {{7, "zero"}, {3, "one"}};
  EXPECT_EQ(errorGroup(table, 1), 3u);
  EXPECT_EQ(errorGroup(table, 2), 7u);
  EXPECT_EQ(errorGroup(Catalogue{}, 0), 0u);
}

TEST(ErrorCatalogue, DetailLosesTrailingLineBreaksOnly) {
  EXPECT_EQ(errorMessage(kFileNotFound, "x\r\n\r\n"), "File not found : x");
  EXPECT_EQ(errorMessage(kFileNotFound, "a\r\nb\n"), "File not found : a\r\nb");
  EXPECT_EQ(errorMessage(kFileNotFound, "\r\n\n\r"), "File not found");
  EXPECT_EQ(errorMessage(kFileNotFound, ""), "File not found");
  EXPECT_EQ(errorMessage(99, " "), "Network Error :  ");
}

}  // namespace
}  // namespace qta::errors
