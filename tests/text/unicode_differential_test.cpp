// The fast converters against the plain reference model, on random texts built
// to hit the block-wise paths: long ASCII runs cut by multi-byte sequences,
// broken sequences, stray bytes and surrogates at every offset.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "qta/text/unicode.h"
#include "text/unicode_checks.h"

namespace {

using unicoderef::checkDirection;

class RandomText {
 public:
  explicit RandomText(unsigned seed) : rng_(seed) {}

  std::string utf8() {
    std::string s;
    const size_t pieces = pick(40);
    for (size_t i = 0; i < pieces; ++i) {
      switch (pick(6)) {
        case 0:
          s.append(pick(40), static_cast<char>('a' + pick(26)));
          break;
        case 1:
          unicoderef::encode(s, static_cast<uint32_t>(0x80 + pick(0x780)));
          break;
        case 2:
          unicoderef::encode(s, static_cast<uint32_t>(0x800 + pick(0xF800)));
          break;
        case 3:
          unicoderef::encode(s, static_cast<uint32_t>(0x10000 + pick(0x100000)));
          break;
        case 4:
          s.push_back(static_cast<char>(0x80 + pick(0x80)));
          break;    // any high byte
        default: {  // a valid sequence cut short
          std::string seq;
          unicoderef::encode(seq, static_cast<uint32_t>(0x80 + pick(0x10FF80)));
          s += seq.substr(0, seq.empty() ? 0 : pick(seq.size()));
        }
      }
    }
    return s;
  }

  template <typename Unit>
  std::basic_string<Unit> units() {
    std::basic_string<Unit> s;
    const size_t pieces = pick(40);
    for (size_t i = 0; i < pieces; ++i) {
      switch (pick(5)) {
        case 0:
          s.append(pick(40), static_cast<Unit>('a' + pick(26)));
          break;
        case 1:
          s.push_back(static_cast<Unit>(pick(0x800)));
          break;
        case 2:
          s.push_back(static_cast<Unit>(0xD800 + pick(0x800)));
          break;  // surrogates
        case 3:
          s.push_back(static_cast<Unit>(pick(0x10000)));
          break;
        default:
          s.push_back(static_cast<Unit>(sizeof(Unit) == 2 ? pick(0x10000) : pick(0x120000)));
          break;
      }
    }
    return s;
  }

 private:
  size_t pick(size_t bound) { return std::uniform_int_distribution<size_t>(0, bound - 1)(rng_); }
  std::mt19937 rng_;
};

TEST(UnicodeDifferential, EveryFormMatchesTheReference) {
  RandomText random(20261121);
  for (int i = 0; i < 1500; ++i) {
    const std::string utf8 = random.utf8();
    SCOPED_TRACE(testing::PrintToString(utf8));
    ASSERT_EQ(checkDirection(unicoderef::kUtf8ToUtf16, std::string_view(utf8), 24), "");
    ASSERT_EQ(checkDirection(unicoderef::kUtf8ToUtf32, std::string_view(utf8), 24), "");
    ASSERT_EQ(unicoderef::checkValidity(utf8), "");
    const std::u16string utf16 = random.units<char16_t>();
    ASSERT_EQ(checkDirection(unicoderef::kUtf16ToUtf8, std::u16string_view(utf16), 24), "");
    const std::u32string utf32 = random.units<char32_t>();
    ASSERT_EQ(checkDirection(unicoderef::kUtf32ToUtf8, std::u32string_view(utf32), 24), "");
  }
}

TEST(UnicodeDifferential, ValidTextRoundTrips) {
  RandomText random(7);
  for (int i = 0; i < 500; ++i) {
    // UTF-16 without unpaired surrogates, through UTF-8 and back.
    const std::u16string utf16 =
        qta::text::utf8ToUtf16(qta::text::utf16ToUtf8(random.units<char16_t>()));
    const std::string utf8 = qta::text::utf16ToUtf8(utf16);
    ASSERT_TRUE(qta::text::isValidUtf8(utf8));
    EXPECT_EQ(qta::text::utf8ToUtf16(utf8), utf16);
    EXPECT_EQ(qta::text::utf32ToUtf8(qta::text::utf8ToUtf32(utf8)), utf8);
  }
}

}  // namespace
